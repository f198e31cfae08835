// Light and dark, and high contrast, as the desktop asks for them.
#pragma once

namespace platform {

/// Follows the desktop's wishes from now on: the settings portal's colour scheme and contrast,
/// where there is one, and the toolkit's own theme.
void followAppearance();

}  // namespace platform
