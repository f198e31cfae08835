// A web process that is started before the page that needs it.
#pragma once

#include "platform/base/GObjectPtr.h"
#include "platform/web/WebEngineLibrary.h"

namespace valdren::platform {

/// Starts one unless one is ready. It ends if it is not taken within some seconds.
void startSpareProcess();
/// The same, but it stays until it is taken. Nothing happens when the machine is short of memory.
void keepSpareProcess();
void endSpareProcess();

/// An empty view of the spare process, to which the next view can be related; null when there is
/// none. The process lives as long as either view.
GObjectPtr<WebKitWebView> takeSpareProcess();

}  // namespace valdren::platform
