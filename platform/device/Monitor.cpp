#include "platform/device/Monitor.h"

#include "platform/base/RunLoop.h"
#include "platform/device/Device.h"
#include "platform/ui/Settling.h"
#include "platform/ui/Window.h"

// Included after Window.h, because X11 defines the same name.
#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

namespace valdren::platform {
namespace {

class GtkScreen final : public Screen {
 public:
  std::optional<double> scale() const override {
    const auto monitor = primaryMonitor();
    return monitor ? std::optional(monitor->scale) : std::nullopt;
  }

  Rect applicationFrame() const override {
    if (const Window* const window = Window::keyWindow()) {
      const Rect content = window->contentBounds();
      return {0, window->statusBarHeight(), content.width, content.height};
    }
    const auto monitor = primaryMonitor();
    return monitor ? Rect{0, 0, monitor->size.width, monitor->size.height} : Rect{};
  }

  std::unique_ptr<Timer> whenSettled(std::function<void()> task) override {
    return whenKeyWindowHasSettled(std::move(task));
  }
};

}  // namespace

std::optional<Monitor> primaryMonitor() {
  GdkDisplay* const display = gtk_is_initialized() ? gdk_display_get_default() : nullptr;
  if (!display) return std::nullopt;
  GListModel* const monitors = gdk_display_get_monitors(display);
  auto* const first = static_cast<GdkMonitor*>(g_list_model_get_item(monitors, 0));
  if (!first) return std::nullopt;
  GdkRectangle area;
  gdk_monitor_get_geometry(first, &area);
  GdkRectangle room = area;
  if (GDK_IS_X11_MONITOR(first)) gdk_x11_monitor_get_workarea(first, &room);
  const Monitor monitor{{double(area.width), double(area.height)},
                        {double(room.width), double(room.height)},
                        double(gdk_monitor_get_scale_factor(first))};
  g_object_unref(first);
  return monitor;
}

Screen& Screen::standard() {
  static GtkScreen screen;
  return screen;
}

}  // namespace valdren::platform
