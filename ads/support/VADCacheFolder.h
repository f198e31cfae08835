// Where local copies of HTTP resources live: a folder for each host, a file for each URL.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/base/URL.h"

namespace valdren {

/// Where the copy of the URL lives: its host, "/" and a hash of its whole text, inside the user's
/// caches folder; none when there is none. Always the same for the same URL. A host that would be
/// no folder of its own (empty, ".", "..", too long for a file name) goes by its hash instead.
std::optional<std::string> cachePathForURL(const platform::URL& url);

/// No larger copy is ever read: a fetch brings no more.
inline constexpr std::size_t kVADLargestCopy = 16 * 1024 * 1024;

/// While it exists, the copy under its path is not cleared away for want of room.
class VADCopyInUse {
 public:
  explicit VADCopyInUse(std::string path);
  ~VADCopyInUse();
  VADCopyInUse(const VADCopyInUse&) = delete;
  VADCopyInUse& operator=(const VADCopyInUse&) = delete;

 private:
  std::string path_;
};

/// Removes what is no copy under a copy's name (empty, too large, no file), what a killed writer
/// has left, and the oldest copies when there are over 200 or over 64 MiB in all; never one in use.
/// Looks at no other file than these, and at 5000 entries at most.
void trimCacheFolder();

/// A copy of so many bytes was written: trims the folder when it may have become too large.
void didWriteCopy(std::size_t bytes);

}  // namespace valdren
