// A web process that is started before the page that needs it is there.
#pragma once

#include <webkit/webkit.h>

#include "platform/base/GObjectPtr.h"

namespace valdren::platform {

/// Starts one unless one is ready already. Not taken within some seconds, it ends.
void startSpareProcess();

/// An empty view of the spare process, to which the next view can be related; null when there is
/// none. The process lives on as long as either view does.
GObjectPtr<WebKitWebView> takeSpareProcess();

}  // namespace valdren::platform
