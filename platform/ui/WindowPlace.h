// Where a window lies on the desktop, as far as the desktop tells.
#pragma once

#include <optional>

#include "platform/ui/Geometry.h"

typedef struct _GtkWindow GtkWindow;

namespace valdren::platform {

/// Whether the desktop tells windows their place and takes another; none on Wayland do.
bool tellsPlace(GtkWindow* window);
/// The window's area on the desktop, in points; none where that is not told, and before the window
/// is laid out for the first time.
std::optional<Rect> placeOf(GtkWindow* window);
/// The part of the window's monitor that panels leave to applications, or the whole monitor where
/// that is not told. On Wayland, with the monitor's upper left corner for its origin.
std::optional<Rect> workAreaOf(GtkWindow* window);
/// Whether the window's size is its own matter: it is neither tiled nor maximised nor full screen.
bool isFree(GtkWindow* window);
/// Asks for another place and size; nothing where `placeOf` is none.
void moveTo(GtkWindow* window, const Rect& place);

}  // namespace valdren::platform
