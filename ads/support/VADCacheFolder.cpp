#include "ads/support/VADCacheFolder.h"

#include <sys/stat.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <vector>

#include "platform/Crypto.h"
#include "platform/Folders.h"

namespace valdren {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostCopies = 200;
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
};

/// Whether the name is one of a copy, or of one that was being written: a hash, or a hash followed
/// by "." and six characters.
bool isCopyName(const std::string& name, bool& unfinished) {
  const std::size_t hash = name.find_first_not_of("0123456789abcdef");
  unfinished = hash != std::string::npos;
  if (!unfinished) return !name.empty() && name.size() <= kLongestHash;
  return hash > 0 && hash <= kLongestHash && name[hash] == '.' && name.size() == hash + 7;
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

/// The host's whole copies; the broken ones are removed on the way.
void collectCopies(const fs::path& folder, std::vector<Copy>& copies, int& entriesLeft) {
  constexpr time_t kLongestWrite = 60;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (--entriesLeft < 0) return;
    bool unfinished = false;
    if (!isCopyName(entry->path().filename().string(), unfinished)) continue;
    struct stat status {};
    if (::lstat(entry->path().c_str(), &status) != 0 || !S_ISREG(status.st_mode)) continue;
    const bool inUse = status.st_ctim.tv_sec + kLongestWrite > std::time(nullptr);
    if (unfinished ? !inUse : status.st_size == 0) {
      removeCopy(entry->path());
    } else if (!unfinished) {
      copies.push_back({entry->path(), status.st_ctim});
    }
  }
}

}  // namespace

std::optional<std::string> cachePathForURL(const platform::URL& url) {
  const std::optional<std::string> caches = platform::cachesFolder();
  if (!caches) return std::nullopt;
  return *caches + "/" + folderName(url.host()) + "/" + hashOf(url.absoluteString());
}

void trimCacheFolder() {
  const std::optional<std::string> caches = platform::cachesFolder();
  if (!caches) return;
  std::vector<Copy> copies;
  int entriesLeft = kMostEntries;
  std::error_code error;
  for (fs::directory_iterator host(*caches, error), end; !error && host != end;
       host.increment(error)) {
    if (--entriesLeft < 0) break;
    std::error_code notReadable;
    if (host->is_symlink(notReadable) || !host->is_directory(notReadable)) continue;
    collectCopies(host->path(), copies, entriesLeft);
  }
  if (copies.size() <= kMostCopies) return;
  std::sort(copies.begin(), copies.end(), wasWrittenLater);
  for (std::size_t old = kMostCopies; old < copies.size(); ++old) removeCopy(copies[old].path);
}

}  // namespace valdren
