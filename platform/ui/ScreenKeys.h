// Keys that press a screen's controls.
#pragma once

#include <gtk/gtk.h>

namespace valdren::platform {

/// While the screen is shown, gives its shortcuts every key of the window that the focused control
/// or page does not use, as a text field does. A shortcut matches the printed character or, failing
/// that, the key's character on an American keyboard: a French keyboard needs Shift for digits, and
/// a Russian one prints no Latin letters. Ignored while Control, Alt or Super is held.
void pressByKeys(GtkWidget* screen);

}  // namespace valdren::platform
