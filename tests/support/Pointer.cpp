#include "tests/support/Pointer.h"

#include <dlfcn.h>
#include <gdk/x11/gdkx.h>

#include <cmath>

#include "tests/support/Loop.h"

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

/// The X extension for simulated input, loaded only when it is used.
struct XTest {
  using Motion = int (*)(Display*, int screen, int x, int y, unsigned long delay);
  using Button = int (*)(Display*, unsigned button, int pressed, unsigned long delay);

  XTest() {
    void* const library = dlopen("libXtst.so.6", RTLD_NOW);
    if (!library) return;
    move = reinterpret_cast<Motion>(dlsym(library, "XTestFakeMotionEvent"));
    button = reinterpret_cast<Button>(dlsym(library, "XTestFakeButtonEvent"));
    key = reinterpret_cast<Button>(dlsym(library, "XTestFakeKeyEvent"));
  }

  Motion move = nullptr;
  Button button = nullptr;
  Button key = nullptr;
};

XTest& xTest() {
  static XTest loaded;
  return loaded;
}

Display* displayOf(GtkWidget* widget) {
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  return gdk_x11_display_get_xdisplay(gtk_widget_get_display(widget));
  G_GNUC_END_IGNORE_DEPRECATIONS
}

}  // namespace

bool hasPointer() {
  return GDK_IS_X11_DISPLAY(gdk_display_get_default()) && xTest().move;
}

void clickWidget(GtkWidget* widget, platform::Point point) {
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
  xTest().move(display, -1, rootX + 1, rootY, 0);
  xTest().move(display, -1, rootX, rootY, 0);
  XFlush(display);
  runFor(0.1);
  xTest().button(display, 1, 1, 0);
  XFlush(display);
  runFor(0.05);
  xTest().button(display, 1, 0, 0);
  XFlush(display);
  runFor(0.1);
}

void typeKey(GtkWidget* widget, const char* name, const char* with) {
  typeKey(widget, XKeysymToKeycode(displayOf(widget), XStringToKeysym(name)), with);
}

void typeKey(GtkWidget* widget, unsigned code, const char* with) {
  Display* const display = displayOf(widget);
  const unsigned held = with ? XKeysymToKeycode(display, XStringToKeysym(with)) : 0;
  if (held) xTest().key(display, held, 1, 0);
  xTest().key(display, code, 1, 0);
  xTest().key(display, code, 0, 0);
  if (held) xTest().key(display, held, 0, 0);
  XFlush(display);
  runFor(0.1);
}

}  // namespace quorbel_tests
