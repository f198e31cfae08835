// The keys that press a screen's controls.
#pragma once

#include <gtk/gtk.h>

namespace valdren::platform {

/// Lets the shortcuts of `screen` hear every key of their window that its focused control or page
/// has no use for, such as a field that is typed in, for as long as the screen is shown. A key acts
/// by what it prints, and if that is none of the shortcuts, by what its place bears on an American
/// keyboard: the digits of a French one need Shift, and a Russian one prints no Latin letter. With
/// Control, Alt or Super held, none acts.
void pressByKeys(GtkWidget* screen);

}  // namespace valdren::platform
