// A real pointer and keyboard on an X display.
#pragma once

#include <gtk/gtk.h>

#include "platform/ui/Geometry.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Whether the display has a pointer that a test can move.
bool hasPointer();
/// Moves the pointer to this point of the widget, presses a button of it and releases it.
void clickWidget(GtkWidget* widget, platform::Point point, unsigned button = 1);
/// Presses and releases a key, by its X name such as "Return" or by its key code; `with` names a
/// key that is held meanwhile.
void typeKey(GtkWidget* widget, const char* name, const char* with = nullptr);
void typeKey(GtkWidget* widget, unsigned code, const char* with = nullptr);

}  // namespace quorbel_tests
