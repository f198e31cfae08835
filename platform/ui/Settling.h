// When a window has got the size that it keeps: desktops give it one only once it is shown.
#pragma once

#include <functional>
#include <memory>

typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

class Timer;

/// Posted when a followed window has settled. The object is its `GtkWindow`.
inline constexpr const char* kWindowDidSettle = "WindowDidSettle";

/// Looks from now on whether the window has settled: whether it is shown and was drawn in one size
/// for some frames since.
void followSettling(GtkWindow* window);
bool hasSettled(GtkWindow* window);

/// See `Screen::whenSettled`.
std::unique_ptr<Timer> whenKeyWindowHasSettled(std::function<void()> task);

}  // namespace valdren::platform
