// Detects when a window has its final size, which desktops decide only once it is shown.
#pragma once

#include <functional>
#include <memory>

typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

class Timer;

/// Posted when a followed window has settled. The object is its `GtkWindow`.
inline constexpr const char* kWindowDidSettle = "WindowDidSettle";

/// Starts to watch whether the window has settled: it is shown and was drawn in one size for some
/// frames.
void followSettling(GtkWindow* window);
bool hasSettled(GtkWindow* window);

/// See `Screen::whenSettled`.
std::unique_ptr<Timer> whenKeyWindowHasSettled(std::function<void()> task);

}  // namespace valdren::platform
