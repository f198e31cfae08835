#include "platform/ui/FrameProbe.h"

#include <gtk/gtk.h>

#include <utility>

#ifdef GDK_WINDOWING_WAYLAND
#include <gdk/wayland/gdkwayland.h>
#include <wayland-client.h>
#endif

namespace valdren::platform {
namespace {

GdkFrameClock* clockOf(GtkWindow* window) {
  return gtk_widget_get_frame_clock(GTK_WIDGET(window));
}

}  // namespace

FrameProbe::FrameProbe(GtkWindow* window, std::function<void()> answered)
    : window_(window), answered_(std::move(answered)) {}

FrameProbe::~FrameProbe() {
  drop();
}

void FrameProbe::ask() {
  if (isWaiting() || askCompositor()) return;
  GdkFrameClock* const clock = clockOf(window_);
  if (!clock) return;
  frame_ = gdk_frame_clock_get_frame_counter(clock);
  gdk_frame_clock_request_phase(clock, GDK_FRAME_CLOCK_PHASE_PAINT);
}

bool FrameProbe::isWaiting() const {
  if (callback_) return true;
  GdkFrameClock* const clock = clockOf(window_);
  return clock && frame_ >= 0 && gdk_frame_clock_get_frame_counter(clock) == frame_;
}

#ifdef GDK_WINDOWING_WAYLAND

/// The toolkit's frame clock waits for the compositor only after something was drawn. This asks
/// without drawing.
bool FrameProbe::askCompositor() {
  GdkSurface* const surface = gtk_native_get_surface(GTK_NATIVE(window_));
  if (!surface || !GDK_IS_WAYLAND_SURFACE(surface)) return false;
  wl_surface* const shown = gdk_wayland_surface_get_wl_surface(surface);
  if (!shown) return true;
  static constexpr wl_callback_listener kListener{[](void* data, wl_callback*, std::uint32_t) {
    auto* const probe = static_cast<FrameProbe*>(data);
    probe->drop();
    const auto answered = probe->answered_;  // may destroy the probe
    answered();
  }};
  callback_ = wl_surface_frame(shown);
  wl_callback_add_listener(callback_, &kListener, this);
  wl_surface_commit(shown);
  return true;
}

void FrameProbe::drop() {
  if (callback_) wl_callback_destroy(std::exchange(callback_, nullptr));
  frame_ = -1;
}

#else

bool FrameProbe::askCompositor() {
  return false;
}

void FrameProbe::drop() {
  frame_ = -1;
}

#endif

}  // namespace valdren::platform
