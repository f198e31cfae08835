#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace platform {
namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number() const { return number_; }

 private:
  int number_;
};

std::string lastProblem(const std::string& path) {
  return "\"" + path + "\": " + std::generic_category().message(errno);
}

bool writeAll(int descriptor, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(descriptor, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

void syncFolder(const std::string& folder) {
  const Descriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (descriptor.number() >= 0) ::fsync(descriptor.number());
}

}  // namespace

std::string writeFileAtomically(const std::string& path, std::string_view content) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) return "\"" + folder + "\": " + error.message();

  std::string temporary = path + ".XXXXXX";
  {
    const Descriptor descriptor(::mkostemp(temporary.data(), O_CLOEXEC));
    if (descriptor.number() < 0) return lastProblem(path);
    if (!writeAll(descriptor.number(), content) || ::fsync(descriptor.number()) != 0) {
      const std::string problem = lastProblem(path);
      ::unlink(temporary.c_str());
      return problem;
    }
  }
  if (::rename(temporary.c_str(), path.c_str()) != 0) {
    const std::string problem = lastProblem(path);
    ::unlink(temporary.c_str());
    return problem;
  }
  syncFolder(folder);
  return "";
}

std::string removeFileDurably(const std::string& path) {
  if (::unlink(path.c_str()) != 0) return errno == ENOENT ? "" : lastProblem(path);
  syncFolder(std::filesystem::path(path).parent_path().string());
  return "";
}

}  // namespace platform
