#include "platform/storage/AtomicFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "platform/base/Descriptor.h"

namespace valdren::platform {
namespace {

constexpr std::string_view kTemporaryMark = ".new-";
constexpr std::size_t kRandomLetters = 6;

/// A temporary file that is older than this was abandoned.
constexpr auto kAbandonedAfter = std::chrono::seconds(60);

bool isTemporary(std::string_view name) {
  if (name.size() <= kTemporaryMark.size() + kRandomLetters) return false;
  name.remove_suffix(kRandomLetters);
  return name.ends_with(kTemporaryMark);
}

Error errorAt(const std::string& path, std::error_code code) {
  return {kPOSIXErrorDomain, code.value(), "\"" + path + "\": " + code.message()};
}

Error lastError(const std::string& path) {
  return errorAt(path, {errno, std::generic_category()});
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
  if (descriptor.isOpen()) ::fsync(descriptor.number());
}

}  // namespace

Result<> writeFileAtomically(const std::string& path, std::string_view content, Sync sync) {
  const std::string folder = std::filesystem::path(path).parent_path().string();
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) return errorAt(folder, error);

  std::string temporary = path + std::string(kTemporaryMark) + "XXXXXX";
  {
    const Descriptor descriptor(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!descriptor.isOpen()) return lastError(path);
    const bool written = writeAll(descriptor.number(), content) &&
                         (sync == Sync::No || ::fsync(descriptor.number()) == 0);
    if (!written) {
      Error problem = lastError(path);
      ::unlink(temporary.c_str());
      return problem;
    }
  }
  if (::rename(temporary.c_str(), path.c_str()) != 0) {
    Error problem = lastError(path);
    ::unlink(temporary.c_str());
    return problem;
  }
  if (sync == Sync::Yes) syncFolder(folder);
  return {};
}

Result<> removeFileDurably(const std::string& path) {
  if (::unlink(path.c_str()) != 0) {
    if (errno == ENOENT) return {};
    return lastError(path);
  }
  syncFolder(std::filesystem::path(path).parent_path().string());
  return {};
}

bool removeIfAbandoned(const std::string& path) {
  namespace fs = std::filesystem;
  if (!isTemporary(fs::path(path).filename().string())) return false;
  std::error_code error;
  const auto age = fs::file_time_type::clock::now() - fs::last_write_time(path, error);
  // A time in the future means that the clock was set back.
  if (error || std::chrono::abs(age) < kAbandonedAfter) return false;
  return fs::remove(path, error);
}

void removeAbandonedFiles(const std::string& folder) {
  namespace fs = std::filesystem;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    removeIfAbandoned(entry->path().string());
  }
}

}  // namespace valdren::platform
