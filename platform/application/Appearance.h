// The application's style sheet; light, dark and high contrast as the desktop asks for them.
#pragma once

#include <string>

namespace Gtk {
class Window;
}

namespace valdren::platform {

/// Follows the desktop's wishes from now on: the settings portal's colour scheme and contrast,
/// where there is one, and the toolkit's own theme. Reads "style.css" from the resources, if there
/// is one.
void followAppearance(const std::string& resourceBase);

/// Gives the window the style class "high-contrast" whenever the theme is one of high contrast.
void markHighContrast(Gtk::Window& window);

}  // namespace valdren::platform
