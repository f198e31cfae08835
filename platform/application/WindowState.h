// Foreground and background by the visibility of the application's windows.
#pragma once

typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

/// While this window exists, moves the application to the background when none of its windows is
/// visible, and back when one is. Not visible are windows that are minimised, unmapped, suspended
/// by the desktop, on another workspace, covered on a desktop that shows one window at a time, or
/// behind the lock screen. A change is noticed within two seconds. Nothing happens before the first
/// window is mapped.
void followWindowState(GtkWindow* window);

}  // namespace valdren::platform
