// The process's connections to servers, kept open and shared by all fetches.
#pragma once

#include <libsoup/soup.h>

namespace valdren::platform {

/// Nothing is stored on disk, and no header is added but what HTTP needs. Cookies live in memory,
/// at most some hundreds of them. Main thread only.
SoupSession* sharedHTTPSession();

}  // namespace valdren::platform
