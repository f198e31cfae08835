// Foreground and background, as a window's state on the desktop has it.
#pragma once

typedef struct _GtkWindow GtkWindow;

namespace platform {

/// Tells the application from now on when the window is minimised and when it returns.
void followWindowState(GtkWindow* window);

}  // namespace platform
