#include "platform/storage/RegularFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "platform/base/Descriptor.h"

namespace valdren::platform {
namespace {

constexpr std::size_t kFirstPiece = 4096;

/// Reads at most `mostBytes` + 1 bytes, so that the caller detects a longer file. False when
/// reading fails. The size is only a hint: files of the kernel report 0, and a file may grow
/// meanwhile.
bool readUpTo(int descriptor, std::size_t size, std::size_t mostBytes, std::string& bytes) {
  std::size_t filled = 0;
  bytes.resize(std::min(std::max(size + 1, kFirstPiece), mostBytes + 1));
  while (filled < bytes.size()) {
    const ssize_t count = ::read(descriptor, bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
    if (filled == bytes.size()) bytes.resize(std::min(filled * 2, mostBytes + 1));
  }
  bytes.resize(filled);
  return true;
}

const Error kAbsent{kFileErrorDomain, kFileErrorAbsent, "it cannot be read"};
const Error kUnusable{kFileErrorDomain, kFileErrorUnusable,
                      "it is not a regular file, or too large"};

}  // namespace

Result<std::string> readRegularFile(const std::string& path, std::size_t mostBytes) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.isOpen()) return errno == ENXIO ? kUnusable : kAbsent;
  struct stat status {};
  if (::fstat(file.number(), &status) != 0) return kAbsent;
  const auto size = static_cast<std::size_t>(status.st_size);
  if (!S_ISREG(status.st_mode) || size > mostBytes) return kUnusable;
  std::string bytes;
  if (!readUpTo(file.number(), size, mostBytes, bytes)) return kAbsent;
  if (bytes.size() > mostBytes) return kUnusable;
  return bytes;
}

}  // namespace valdren::platform
