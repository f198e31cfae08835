#include "platform/ui/WindowPlace.h"

#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

#include <cmath>

namespace valdren::platform {
namespace {

GdkSurface* surfaceOf(GtkWindow* window) {
  return gtk_native_get_surface(GTK_NATIVE(window));
}

/// The surface's area including its shadow, in pixels of the X server.
std::optional<Rect> surfacePlace(GdkSurface* surface) {
  if (!surface || !GDK_IS_X11_SURFACE(surface)) return std::nullopt;
  Display* const display = GDK_SURFACE_XDISPLAY(surface);
  const ::Window id = GDK_SURFACE_XID(surface);
  int x = 0;
  int y = 0;
  ::Window child = 0;
  XTranslateCoordinates(display, id, DefaultRootWindow(display), 0, 0, &x, &y, &child);
  const double scale = gdk_surface_get_scale_factor(surface);
  return Rect{double(x), double(y), gdk_surface_get_width(surface) * scale,
              gdk_surface_get_height(surface) * scale};
}

}  // namespace

bool tellsPlace(GtkWindow* window) {
  return GDK_IS_X11_DISPLAY(gtk_widget_get_display(GTK_WIDGET(window)));
}

std::optional<Rect> placeOf(GtkWindow* window) {
  GdkSurface* const surface = surfaceOf(window);
  const auto pixels = surfacePlace(surface);
  if (!pixels || gtk_widget_get_width(GTK_WIDGET(window)) <= 0) return std::nullopt;
  const double scale = gdk_surface_get_scale_factor(surface);
  double left = 0;
  double top = 0;
  gtk_native_get_surface_transform(GTK_NATIVE(window), &left, &top);
  return Rect{pixels->x / scale + left, pixels->y / scale + top,
              double(gtk_widget_get_width(GTK_WIDGET(window))),
              double(gtk_widget_get_height(GTK_WIDGET(window)))};
}

std::optional<Rect> workAreaOf(GtkWindow* window) {
  GdkSurface* const surface = surfaceOf(window);
  if (!surface) return std::nullopt;
  GdkMonitor* const monitor =
      gdk_display_get_monitor_at_surface(gdk_surface_get_display(surface), surface);
  if (!monitor) return std::nullopt;
  GdkRectangle area;
  if (GDK_IS_X11_MONITOR(monitor)) {
    gdk_x11_monitor_get_workarea(monitor, &area);
  } else {
    gdk_monitor_get_geometry(monitor, &area);
    area.x = area.y = 0;
  }
  return Rect{double(area.x), double(area.y), double(area.width), double(area.height)};
}

bool isFree(GtkWindow* window) {
  GdkSurface* const surface = surfaceOf(window);
  if (!surface) return true;
  constexpr int bound = GDK_TOPLEVEL_STATE_MAXIMIZED | GDK_TOPLEVEL_STATE_FULLSCREEN |
                        GDK_TOPLEVEL_STATE_TILED | GDK_TOPLEVEL_STATE_TOP_TILED |
                        GDK_TOPLEVEL_STATE_RIGHT_TILED | GDK_TOPLEVEL_STATE_BOTTOM_TILED |
                        GDK_TOPLEVEL_STATE_LEFT_TILED;
  return (gdk_toplevel_get_state(GDK_TOPLEVEL(surface)) & bound) == 0;
}

void moveTo(GtkWindow* window, const Rect& place) {
  GdkSurface* const surface = surfaceOf(window);
  const auto present = placeOf(window);
  const auto pixels = surfacePlace(surface);
  if (!present || !pixels) return;
  const double scale = gdk_surface_get_scale_factor(surface);
  const auto moved = [scale](double pixel, double from, double to) {
    return static_cast<int>(std::lround(pixel + (to - from) * scale));
  };
  // One request for both: after the first of two, a window manager would correct the result.
  XMoveResizeWindow(GDK_SURFACE_XDISPLAY(surface), GDK_SURFACE_XID(surface),
                    moved(pixels->x, present->x, place.x), moved(pixels->y, present->y, place.y),
                    static_cast<unsigned>(moved(pixels->width, present->width, place.width)),
                    static_cast<unsigned>(moved(pixels->height, present->height, place.height)));
}

}  // namespace valdren::platform
