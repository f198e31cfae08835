// The position of a window on the desktop, if the desktop reports it.
#pragma once

#include <optional>

#include "platform/ui/Geometry.h"

typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

/// Whether the desktop reports and changes window positions. Wayland does neither.
bool tellsPlace(GtkWindow* window);
/// The window's area on the desktop, in points; none when the desktop does not report it, and
/// before the window's first layout.
std::optional<Rect> placeOf(GtkWindow* window);
/// The part of the window's monitor without panels, or the whole monitor if panels are unknown. On
/// Wayland the origin is the monitor's upper left corner.
std::optional<Rect> workAreaOf(GtkWindow* window);
/// Whether the window may choose its size: it is not tiled, maximised or full screen.
bool isFree(GtkWindow* window);
/// Asks for another position and size. Nothing when `placeOf` is none.
void moveTo(GtkWindow* window, const Rect& place);

}  // namespace valdren::platform
