// Starting other programs.
#pragma once

#include "platform/base/URL.h"
#include "platform/ui/LaunchPermit.h"

namespace valdren::platform {

/// Whether the handlers outside cannot be seen from here, so that only a portal finds them.
bool isInSandbox();

/// Whether something on this system handles the URL's scheme.
bool hasHandler(const URL& url);

/// Has the system's handler open the URL, away from the main thread: looking for it and starting it
/// may take long. `touch` is what allowed it, and is given back when nothing opened.
void launch(const URL& url, LaunchPermit::Touch touch);

}  // namespace valdren::platform
