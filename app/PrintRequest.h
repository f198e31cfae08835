// What an ad request from this machine would tell, for whoever wants to know before it does.
#pragma once

#include "platform/application/ApplicationMain.h"

namespace platform = valdren::platform;

namespace quorbel {

/// Writes the parameters of the next ad request to standard output, as indented JSON. Opens the
/// window for a moment, for what desktops make of it, where there is a display. Sends nothing, and
/// leaves everything that is kept as it was: nothing is counted, nothing reported is forgotten.
/// Gives the exit status.
int printRequest(const platform::ApplicationDescription& description);

}  // namespace quorbel
