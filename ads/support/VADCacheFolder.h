// Where local copies of HTTP resources live: a folder for each host, a file for each URL.
#pragma once

#include <optional>
#include <string>

#include "platform/URL.h"

namespace valdren {

/// Where the copy of the URL lives: its host, "/" and a hash of its whole text, inside the user's
/// caches folder; none when there is none. Always the same for the same URL. A host that would be
/// no folder of its own (empty, ".", "..", too long for a file name) goes by its hash instead.
std::optional<std::string> cachePathForURL(const platform::URL& url);

/// Removes what earlier runs may have left behind: files that a power cut emptied, halves that a
/// kill kept from being finished, and the oldest copies when there are over 200. Looks at no other
/// file than copies, and at 5000 entries at most.
void trimCacheFolder();

}  // namespace valdren
