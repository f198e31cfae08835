// The application's style sheet, and the desktop's choice of light, dark or high contrast.
#pragma once

#include <string>

namespace Gtk {
class Window;
}

namespace valdren::platform {

/// Follows the settings portal's colour scheme and contrast, if there is a portal, and the
/// toolkit's own theme. Reads "style.css" from the resources, if there is one.
void followAppearance(const std::string& resourceBase);

/// Gives the window the style class "high-contrast" whenever the theme is one of high contrast.
void markHighContrast(Gtk::Window& window);

}  // namespace valdren::platform
