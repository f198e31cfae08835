// What the tour looks at.
#pragma once

#include <memory>
#include <string>

#include "app/SoundScreen.h"
#include "platform/ui/Window.h"

namespace platform = valdren::platform;

namespace quorbel {

/// The soundboard, also while a screen covers it; null when there is none.
SoundScreen* soundScreen();
/// The screen on top; null when it is of another kind.
template <class Screen>
Screen* topScreen() {
  platform::Window* const window = platform::Window::keyWindow();
  return window ? dynamic_cast<Screen*>(window->topViewController()) : nullptr;
}

/// Why the banner is not one with an ad that can be seen; empty when it is.
std::string bannerProblem();

/// Taps the middle of a view that is on the screen.
void tap(const platform::View& view);

}  // namespace quorbel
