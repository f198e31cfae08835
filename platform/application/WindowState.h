// Foreground and background, as the desktop has the application's windows.
#pragma once

typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

/// Tells the application, for as long as this window exists, when none of the application's windows
/// can be seen any more and when one can again. Out of sight is what is minimised, not mapped,
/// suspended by the desktop, on another workspace, covered where the desktop shows one window at a
/// time, or behind a lock. Noticed within two seconds. Before the first window is mapped, nothing
/// is told.
void followWindowState(GtkWindow* window);

}  // namespace valdren::platform
