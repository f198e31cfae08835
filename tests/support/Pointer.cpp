#include "tests/support/Pointer.h"

#include <dlfcn.h>
#include <gdk/x11/gdkx.h>

#include <cmath>

#include "tests/support/Loop.h"

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

/// Calls a function of the X extension for simulated input, which is loaded only when it is used.
template <typename... Arguments>
void simulate(const char* name, Arguments... arguments) {
  static void* const library = dlopen("libXtst.so.6", RTLD_NOW);
  if (!library) return;
  reinterpret_cast<int (*)(Arguments..., unsigned long delay)>(dlsym(library, name))(arguments...,
                                                                                     0);
}

Display* displayOf(GtkWidget* widget) {
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  return gdk_x11_display_get_xdisplay(gtk_widget_get_display(widget));
  G_GNUC_END_IGNORE_DEPRECATIONS
}

}  // namespace

bool hasPointer() {
  return GDK_IS_X11_DISPLAY(gdk_display_get_default()) && dlopen("libXtst.so.6", RTLD_NOW);
}

void clickWidget(GtkWidget* widget, platform::Point point, unsigned button) {
  GtkNative* const native = gtk_widget_get_native(widget);
  double x = 0;
  double y = 0;
  gtk_widget_translate_coordinates(widget, GTK_WIDGET(native), point.x, point.y, &x, &y);
  double shadowX = 0;
  double shadowY = 0;
  gtk_native_get_surface_transform(native, &shadowX, &shadowY);
  Display* const display = displayOf(widget);
  const Window surface = gdk_x11_surface_get_xid(gtk_native_get_surface(native));
  int rootX = 0;
  int rootY = 0;
  Window child = 0;
  XTranslateCoordinates(display, surface, DefaultRootWindow(display), int(std::lround(x + shadowX)),
                        int(std::lround(y + shadowY)), &rootX, &rootY, &child);
  // Two moves, so that one is a real move even if the pointer was already there.
  for (const int x : {rootX + 1, rootX}) simulate("XTestFakeMotionEvent", display, -1, x, rootY);
  XFlush(display);
  runFor(0.1);
  simulate("XTestFakeButtonEvent", display, button, 1);
  XFlush(display);
  runFor(0.05);
  simulate("XTestFakeButtonEvent", display, button, 0);
  XFlush(display);
  runFor(0.1);
}

void typeKey(GtkWidget* widget, const char* name, const char* with) {
  typeKey(widget, XKeysymToKeycode(displayOf(widget), XStringToKeysym(name)), with);
}

void typeKey(GtkWidget* widget, unsigned code, const char* with) {
  Display* const display = displayOf(widget);
  const unsigned held = with ? XKeysymToKeycode(display, XStringToKeysym(with)) : 0;
  if (held) simulate("XTestFakeKeyEvent", display, held, 1);
  for (const int down : {1, 0}) simulate("XTestFakeKeyEvent", display, code, down);
  if (held) simulate("XTestFakeKeyEvent", display, held, 0);
  XFlush(display);
  runFor(0.1);
}

}  // namespace quorbel_tests
