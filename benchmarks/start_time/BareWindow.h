// What stands in the bare window besides its label.
#pragma once

#include <gtk/gtk.h>

/// Adds to the box of the window, which is not shown yet.
void addTo(GtkWindow* window, GtkBox* box);
