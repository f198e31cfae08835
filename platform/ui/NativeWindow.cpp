#include "platform/ui/NativeWindow.h"

#include <gdkmm/frameclock.h>
#include <gtk/gtk.h>
#include <gtkmm/headerbar.h>
#include <gtkmm/settings.h>
#include <gtkmm/stylecontext.h>
#include <gtkmm/window.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "platform/ui/NativeView.h"
#include "platform/ui/Settling.h"
#include "platform/ui/Touches.h"
#include "platform/ui/View.h"
#include "platform/ui/WindowPlace.h"

namespace valdren::platform {
namespace {

constexpr int kNarrowest = 280;
constexpr int kLowest = 200;

/// The part of a window's size that the toolkit uses for its own frame, which it draws without a
/// compositor. Known once the window is realized.
Size frameOf(Gtk::Window& window) {
  if (!window.has_css_class("solid-csd")) return {};
  const auto style = window.get_style_context();
  const Gtk::Border border = style->get_border();
  const Gtk::Border padding = style->get_padding();
  return {
      double(border.get_left() + border.get_right() + padding.get_left() + padding.get_right()),
      double(border.get_top() + border.get_bottom() + padding.get_top() + padding.get_bottom())};
}

}  // namespace

struct NativeWindow::Widgets {
  Gtk::Window window;
  Gtk::HeaderBar statusBar;
  Size wanted;
  std::optional<Point> placeBeforeTurn;
  guint animation = 0;
};

NativeWindow::NativeWindow(Size size, View& content) : widgets_(std::make_unique<Widgets>()) {
  Gtk::Window& window = widgets_->window;
  window.set_titlebar(widgets_->statusBar);
  resize(size);
  window.signal_realize().connect([this] { resize(widgets_->wanted); });
  window.set_size_request(kNarrowest, kLowest);
  window.set_child(content.native().widget());
  watchTouches(window, content);
  followSettling(window.gobj());
}

NativeWindow::~NativeWindow() {
  stopAnimation();
  widgets_->window.unset_child();
}

Gtk::Window& NativeWindow::window() {
  return widgets_->window;
}

void NativeWindow::show() {
  Gtk::Window& window = widgets_->window;
  // Without a keyboard or pointer, the toolkit crashes when a window requests the focus.
  if (!window.get_display()->get_default_seat()) return window.set_visible(true);
  window.present();
}

void NativeWindow::hide() {
  widgets_->window.set_visible(false);
}

void NativeWindow::setTitle(const std::string& title) {
  widgets_->window.set_title(title);
}

void NativeWindow::resize(Size size) {
  widgets_->wanted = {std::max<double>(kNarrowest, std::lround(size.width)),
                      std::max<double>(kLowest, std::lround(size.height))};
  const Size frame = frameOf(widgets_->window);
  widgets_->window.set_default_size(static_cast<int>(widgets_->wanted.width + frame.width),
                                    static_cast<int>(widgets_->wanted.height + frame.height));
}

bool NativeWindow::canTurn(Size size) const {
  GtkWindow* const window = widgets_->window.gobj();
  const auto room = workAreaOf(window);
  return isFree(window) && tellsPlace(window) && room && size.width <= room->width &&
         size.height <= room->height;
}

void NativeWindow::turn(Size size) {
  if (!canTurn(size)) return;
  resize(size);
  GtkWindow* const window = widgets_->window.gobj();
  const auto present = placeOf(window);
  const auto room = workAreaOf(window);
  widgets_->placeBeforeTurn.reset();
  if (!present || !room) return;
  widgets_->placeBeforeTurn = Point{present->x, present->y};
  const auto within = [](double start, double length, double from, double all) {
    return std::clamp(start, from, from + all - length);
  };
  moveTo(window, {within(present->x, size.width, room->x, room->width),
                  within(present->y, size.height, room->y, room->height), size.width, size.height});
}

void NativeWindow::turnBack(Size size) {
  resize(size);
  const auto before = std::exchange(widgets_->placeBeforeTurn, std::nullopt);
  if (before) moveTo(widgets_->window.gobj(), {before->x, before->y, size.width, size.height});
}

bool NativeWindow::isOnScreen(const Rect& area) const {
  GtkWindow* const window = widgets_->window.gobj();
  const auto room = workAreaOf(window);
  if (!room) return false;
  const Rect place = placeOf(window).value_or(*room);
  const double x = place.x + area.x;
  const double y = place.y + area.y;
  return x >= room->x && y >= room->y && x + area.width <= room->x + room->width &&
         y + area.height <= room->y + room->height;
}

Size NativeWindow::size() const {
  Gtk::Window& window = widgets_->window;
  if (window.get_width() <= 0) return widgets_->wanted;
  return {double(window.get_width()), double(window.get_height())};
}

bool NativeWindow::isStatusBarHidden() const {
  return !widgets_->statusBar.get_visible();
}

void NativeWindow::setStatusBarHidden(bool hidden) {
  widgets_->statusBar.set_visible(!hidden);
}

double NativeWindow::statusBarHeight() const {
  if (isStatusBarHidden()) return 0;
  // A full-screen window shows no header bar, although it has one.
  graphene_point_t origin = GRAPHENE_POINT_INIT(0, 0);
  if (widgets_->window.get_width() > 0 &&
      gtk_widget_compute_point(gtk_window_get_child(widgets_->window.gobj()),
                               GTK_WIDGET(widgets_->window.gobj()), &origin, &origin)) {
    return origin.y;
  }
  int minimum = 0;
  int natural = 0;
  int ignored = 0;
  widgets_->statusBar.measure(Gtk::Orientation::VERTICAL, -1, minimum, natural, ignored, ignored);
  return natural;
}

void NativeWindow::animate(Seconds duration, std::function<void(double progress)> step) {
  stopAnimation();
  const auto settings = Gtk::Settings::get_for_display(widgets_->window.get_display());
  if (!settings->property_gtk_enable_animations() || !widgets_->window.get_mapped()) {
    step(1);
    return;
  }
  const auto begun = std::make_shared<gint64>(0);
  widgets_->animation = widgets_->window.add_tick_callback(
      [this, duration, begun, step = std::move(step)](const Glib::RefPtr<Gdk::FrameClock>& clock) {
        if (*begun == 0) *begun = clock->get_frame_time();
        const double passed = static_cast<double>(clock->get_frame_time() - *begun) / 1e6;
        const double progress = std::min(1.0, passed / duration.count());
        if (progress >= 1) widgets_->animation = 0;
        step(progress);
        return progress < 1;
      });
}

void NativeWindow::stopAnimation() {
  if (widgets_->animation) widgets_->window.remove_tick_callback(widgets_->animation);
  widgets_->animation = 0;
}

}  // namespace valdren::platform
