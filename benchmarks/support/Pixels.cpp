#include "benchmarks/support/Pixels.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <gdk/x11/gdkx.h>

#include "benchmarks/Figures.h"

namespace benchmarks {

std::vector<std::uint32_t> pixelsOf(GtkWidget* widget, int x, int y, int width, int height) {
  std::vector<std::uint32_t> pixels;
  GtkNative* const native = gtk_widget_get_native(widget);
  GdkSurface* const surface = native ? gtk_native_get_surface(native) : nullptr;
  if (!surface || !GDK_IS_X11_SURFACE(surface) || !gdk_surface_get_mapped(surface)) return pixels;
  double nativeX = 0;
  double nativeY = 0;
  gtk_native_get_surface_transform(native, &nativeX, &nativeY);
  graphene_point_t place{};
  const graphene_point_t corner = GRAPHENE_POINT_INIT(float(x), float(y));
  if (!gtk_widget_compute_point(widget, GTK_WIDGET(native), &corner, &place)) return pixels;
  const int left = int(place.x + nativeX);
  const int top = int(place.y + nativeY);
  if (left < 0 || top < 0 || left + width > gdk_surface_get_width(surface) ||
      top + height > gdk_surface_get_height(surface)) {
    return pixels;
  }
  Display* const display = gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface));
  gdk_x11_display_error_trap_push(gdk_surface_get_display(surface));
  XImage* const image = XGetImage(display, gdk_x11_surface_get_xid(surface), left, top,
                                  unsigned(width), unsigned(height), AllPlanes, ZPixmap);
  gdk_x11_display_error_trap_pop_ignored(gdk_surface_get_display(surface));
  if (!image) return pixels;
  pixels.reserve(std::size_t(width) * std::size_t(height));
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      pixels.push_back(std::uint32_t(XGetPixel(image, column, row) & 0xffffff));
    }
  }
  XDestroyImage(image);
  return pixels;
}

Paint::Paint(GtkWidget* widget, std::function<bool()> seen)
    : clock_(gtk_widget_get_frame_clock(widget)), seen_(std::move(seen)) {
  g_object_ref(clock_);
  handler_ = g_signal_connect(
      clock_, "after-paint",
      G_CALLBACK(+[](GdkFrameClock*, gpointer self) { static_cast<Paint*>(self)->look(); }), this);
}

Paint::~Paint() {
  g_signal_handler_disconnect(clock_, handler_);
  g_object_unref(clock_);
}

void Paint::look() {
  if (at_ == 0 && seen_()) at_ = seconds();
}

}  // namespace benchmarks
