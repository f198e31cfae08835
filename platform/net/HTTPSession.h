// The process's connections to servers, kept open and shared by all fetches.
#pragma once

#include <libsoup/soup.h>

namespace valdren::platform {

/// Nothing is stored on disk, and only headers that HTTP needs are added. Cookies are kept in
/// memory, at most 500. Main thread only.
SoupSession* sharedHTTPSession();

}  // namespace valdren::platform
