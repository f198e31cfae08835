// Prints the parameters of an ad request.
#pragma once

#include "platform/application/ApplicationMain.h"

namespace platform = valdren::platform;

namespace quorbel {

/// Writes the parameters of the next ad request to standard output, as indented JSON. If there is a
/// display, it opens the window for a moment, because desktops change its size. Nothing is sent or
/// stored: counters and reports stay as they were. Returns the exit status.
int printRequest(const platform::ApplicationDescription& description);

}  // namespace quorbel
