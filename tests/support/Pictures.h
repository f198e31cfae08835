// What a window shows.
#pragma once

#include <string>

#include "platform/ui/Window.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Writes what the window shows now to a PNG file; false when it shows nothing or the file cannot
/// be written.
bool savePicture(const platform::Window& window, const std::string& path);

/// Whether this part of the screens (as in the window's `contentBounds`) is drawn in one colour
/// alone.
bool isBlank(const platform::Window& window, const platform::Rect& area);

/// The colour at a point of the window (its status bar included), as 0xRRGGBB; more than that when
/// the point is not shown.
unsigned colorAt(const platform::Window& window, platform::Point point);

}  // namespace quorbel_tests
