#include "benchmarks/support/Family.h"

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/support/Process.h"

namespace benchmarks {
namespace {

double mebibytesIn(const std::string& folder, const std::string& key) {
  std::ifstream file(folder + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(key)) return std::stod(line.substr(key.size())) / 1024;
  }
  return 0;
}

}  // namespace

Family measureFamily() {
  Family family;
  family.resident = mebibytesIn("/proc/self", "VmRSS:");
  family.anonymous = mebibytesIn("/proc/self", "RssAnon:");
  for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++family.files;
  }
  for (const int member : quorbel_tests::processFamily()) {
    const std::string folder = "/proc/" + std::to_string(member);
    const std::string name = quorbel_tests::nameOfProcess(member);
    if (name.starts_with("WebKitWebProces")) {
      ++family.webProcesses;
      family.webResident += mebibytesIn(folder, "VmRSS:");
    } else if (name.starts_with("WebKitNetworkPr")) {
      family.helperResident += mebibytesIn(folder, "VmRSS:");
    }
  }
  return family;
}

}  // namespace benchmarks
