#include "benchmarks/support/Family.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace benchmarks {
namespace {

double mebibytesIn(const std::string& folder, const std::string& key) {
  std::ifstream file(folder + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(key)) return std::stod(line.substr(key.size())) / 1024;
  }
  return 0;
}

std::vector<pid_t> childrenOf(pid_t process) {
  std::vector<pid_t> children;
  std::error_code error;
  for (const auto& task :
       std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task", error)) {
    std::ifstream file(task.path() / "children");
    for (pid_t child = 0; file >> child;) children.push_back(child);
  }
  return children;
}

}  // namespace

Family measureFamily() {
  Family family;
  family.resident = mebibytesIn("/proc/self", "VmRSS:");
  family.anonymous = mebibytesIn("/proc/self", "RssAnon:");
  for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++family.files;
  }
  std::vector<pid_t> members{getpid()};
  for (std::size_t place = 0; place < members.size(); ++place) {
    for (const pid_t child : childrenOf(members[place])) members.push_back(child);
  }
  for (const pid_t member : members) {
    const std::string folder = "/proc/" + std::to_string(member);
    std::ifstream file(folder + "/comm");
    std::string name;
    std::getline(file, name);
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
