// Starts other programs.
#pragma once

#include "platform/base/URL.h"
#include "platform/ui/LaunchPermit.h"

namespace valdren::platform {

/// Whether this process runs in a sandbox, where only a portal can find handlers.
bool isInSandbox();

/// Whether something on this system handles the URL's scheme.
bool hasHandler(const URL& url);

/// Opens the URL with the system's handler, on another thread, because finding and starting it may
/// take long. `touch` is the touch that allowed the launch; it is given back when nothing opened.
void launch(const URL& url, LaunchPermit::Touch touch);

}  // namespace valdren::platform
