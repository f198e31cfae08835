// What a person's finger does, where there is no pointer to move.
#pragma once

#include "platform/ui/Button.h"
#include "platform/ui/InterfaceView.h"
#include "platform/ui/Window.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Touches this point of the window's screens (as in its `contentBounds`) and leaves it again:
/// presses the button or clicks in the page there; false when nothing there reacts.
bool tap(platform::Window& window, platform::Point point);

/// Presses a button; false when people could not.
bool press(platform::Button& button);
/// Presses a control of an interface file; false when there is none or people could not press it.
bool press(platform::InterfaceView& view, std::string_view control);

/// Where the control is, in the view's coordinates; empty when it is not laid out.
platform::Rect frameOf(const platform::InterfaceView& view, std::string_view control);
/// Empty when there is none.
std::string tooltipOf(const platform::InterfaceView& view, std::string_view control);

}  // namespace quorbel_tests
