// The soundboard as an application.
#pragma once

#include "app/Options.h"
#include "platform/application/ApplicationMain.h"

namespace platform = valdren::platform;

namespace quorbel {

/// What it is made of.
platform::ApplicationDescription describe(const Options& options);

/// Runs it to its end, with its sounds and its ad network, and gives the exit status.
int runSoundboard(platform::ApplicationDescription description, const Options& options);

}  // namespace quorbel
