// What every web view of the process shares: one context and one session that keep nothing.
#pragma once

#include <webkit/webkit.h>

namespace valdren::platform {

/// Bounds the memory of web processes and keeps none of them in reserve. Lives to the end.
WebKitWebContext* webContext();

/// Cookies, caches and storage live in memory alone; downloads and unverified TLS are refused. The
/// network process is ended and started anew when it takes more memory than its limit.
WebKitNetworkSession* webSession();

}  // namespace valdren::platform
