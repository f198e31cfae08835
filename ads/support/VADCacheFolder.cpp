#include "ads/support/VADCacheFolder.h"

#include <sys/stat.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <set>
#include <vector>

#include "platform/base/Crypto.h"
#include "platform/storage/AtomicFile.h"
#include "platform/storage/Folders.h"

namespace valdren {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostCopies = 200;
constexpr std::uintmax_t kMostBytes = 64 * 1024 * 1024;
constexpr int kMostEntries = 5000;
constexpr std::size_t kLongestFileName = 255;
constexpr std::size_t kLongestHash = 16;

/// The first eight bytes of the text's SHA-256: the same in every run, and no server can make two
/// of its URLs share a file.
std::string hashOf(const std::string& text) {
  const auto digest = platform::sha256(text);
  std::uint64_t number = 0;
  for (int place = 0; place < 8; ++place) number = number << 8 | digest[place];
  char hash[kLongestHash + 1];
  std::snprintf(hash, sizeof hash, "%" PRIx64, number);
  return hash;
}

/// A URL's host has no "/" and no zero byte in it, and "%" in it begins an escape, so that the name
/// made from the hash is no other host's.
std::string folderName(const std::string& host) {
  const bool usable =
      !host.empty() && host != "." && host != ".." && host.size() <= kLongestFileName;
  return usable ? host : "%host-" + hashOf(host);
}

struct Copy {
  fs::path path;
  timespec written;
  std::uintmax_t bytes;
};

std::multiset<std::string>& copiesInUse() {
  // Never destroyed: files may go while the process ends.
  static auto* const paths = new std::multiset<std::string>;
  return *paths;
}

/// What may still be written before the folder has to be looked at again.
std::uintmax_t roomLeft = 0;

bool isCopyName(const std::string& name) {
  return !name.empty() && name.size() <= kLongestHash &&
         name.find_first_not_of("0123456789abcdef") == std::string::npos;
}

bool wasWrittenLater(const Copy& left, const Copy& right) {
  return left.written.tv_sec != right.written.tv_sec ? left.written.tv_sec > right.written.tv_sec
                                                     : left.written.tv_nsec > right.written.tv_nsec;
}

void removeCopy(const fs::path& path) {
  std::error_code ignored;
  fs::remove(path, ignored);
  fs::remove(path.parent_path(), ignored);  // fails unless it is empty
}

/// The host's whole copies; what is none is removed on the way, and the folder with its last file.
void collectCopies(const fs::path& folder, std::vector<Copy>& copies, int& entriesLeft) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (--entriesLeft < 0) return;
    const fs::path& path = entry->path();
    if (platform::removeIfAbandoned(path.string()) || !isCopyName(path.filename().string()))
      continue;
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) continue;
    const auto bytes = static_cast<std::uintmax_t>(status.st_size);
    std::error_code ignored;
    if (!S_ISREG(status.st_mode) || bytes == 0 || bytes > kVADLargestCopy) {
      fs::remove(path, ignored);
    } else {
      copies.push_back({path, status.st_ctim, bytes});
    }
  }
  std::error_code notEmpty;
  fs::remove(folder, notEmpty);
}

std::vector<Copy> copiesIn(const std::string& caches) {
  std::vector<Copy> copies;
  int entriesLeft = kMostEntries;
  std::error_code error;
  for (fs::directory_iterator host(caches, error), end; !error && host != end;
       host.increment(error)) {
    if (--entriesLeft < 0) break;
    std::error_code notReadable;
    if (host->is_symlink(notReadable) || !host->is_directory(notReadable)) continue;
    collectCopies(host->path(), copies, entriesLeft);
  }
  return copies;
}

}  // namespace

std::optional<std::string> cachePathForURL(const platform::URL& url) {
  const std::optional<std::string> caches = platform::cachesFolder();
  if (!caches) return std::nullopt;
  return *caches + "/" + folderName(url.host()) + "/" + hashOf(url.absoluteString());
}

VADCopyInUse::VADCopyInUse(std::string path) : path_(std::move(path)) {
  copiesInUse().insert(path_);
}

VADCopyInUse::~VADCopyInUse() {
  copiesInUse().erase(copiesInUse().find(path_));
}

void trimCacheFolder() {
  const std::optional<std::string> caches = platform::cachesFolder();
  if (!caches) return;
  std::vector<Copy> copies = copiesIn(*caches);
  // Those in use come first: the others share the room that these leave.
  const auto isInUse = [](const Copy& copy) { return copiesInUse().contains(copy.path.string()); };
  const auto others = std::partition(copies.begin(), copies.end(), isInUse);
  std::sort(others, copies.end(), wasWrittenLater);
  std::uintmax_t bytes = 0;
  std::size_t count = 0;
  bool full = false;
  for (auto copy = copies.begin(); copy != copies.end(); ++copy) {
    full = full || count >= kMostCopies || bytes + copy->bytes > kMostBytes;
    if (full && copy >= others) {
      removeCopy(copy->path);
    } else {
      ++count;
      bytes += copy->bytes;
    }
  }
  roomLeft = bytes < kMostBytes ? kMostBytes - bytes : 0;
}

void didWriteCopy(std::size_t bytes) {
  if (bytes > roomLeft) return trimCacheFolder();
  roomLeft -= bytes;
}

}  // namespace valdren
