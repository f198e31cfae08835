#include "platform/ui/NativeImage.h"

#include <gdkmm/display.h>
#include <gtkmm/cssprovider.h>
#include <gtkmm/snapshot.h>
#include <gtkmm/stylecontext.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace valdren::platform {
namespace {

constexpr double kPi = std::numbers::pi;

/// Strokes on a 16 by 16 grid, round at the ends.
void prepare(const Cairo::RefPtr<Cairo::Context>& context) {
  context->set_line_width(1.8);
  context->set_line_cap(Cairo::Context::LineCap::ROUND);
  context->set_line_join(Cairo::Context::LineJoin::ROUND);
}

void drawRefresh(const Cairo::RefPtr<Cairo::Context>& context) {
  constexpr double radius = 5.6;
  constexpr double end = -kPi / 5;
  context->arc(8, 8.4, radius, kPi / 8, 2 * kPi + end);
  context->stroke();
  const double x = 8 + radius * std::cos(end);
  const double y = 8.4 + radius * std::sin(end);
  context->move_to(x + 1.2, y - 4.1);
  context->line_to(x + 0.7, y + 0.5);
  context->line_to(x - 3.9, y + 0.3);
  context->stroke();
}

/// A box with an arrow pointing out of it.
void drawAction(const Cairo::RefPtr<Cairo::Context>& context) {
  context->move_to(7, 3.2);
  context->line_to(3.6, 3.2);
  context->arc_negative(3.6, 4.4, 1.2, -kPi / 2, kPi);
  context->line_to(2.4, 12.6);
  context->arc_negative(3.6, 12.6, 1.2, kPi, kPi / 2);
  context->line_to(11.6, 13.8);
  context->arc_negative(11.6, 12.6, 1.2, kPi / 2, 0);
  context->line_to(12.8, 9.2);
  context->stroke();
  context->move_to(7.6, 8.6);
  context->line_to(13.9, 2.2);
  context->move_to(9.9, 2.1);
  context->line_to(14, 2.1);
  context->line_to(14, 6.2);
  context->stroke();
}

void drawLock(const Cairo::RefPtr<Cairo::Context>& context, bool open) {
  context->rectangle(3, 7, 10, 7.5);
  context->fill();
  context->move_to(5, 7);
  context->line_to(5, open ? 4.6 : 5);
  context->arc(8, open ? 4.6 : 5, 3, kPi, 2 * kPi);
  if (!open) context->line_to(11, 7);
  context->stroke();
}

void draw(Symbol symbol, const Cairo::RefPtr<Cairo::Context>& context) {
  prepare(context);
  switch (symbol) {
    case Symbol::None: break;
    case Symbol::Refresh: drawRefresh(context); break;
    case Symbol::Action: drawAction(context); break;
    case Symbol::Secure: drawLock(context, false); break;
    case Symbol::NotSecure: drawLock(context, true); break;
  }
}

}  // namespace

ImageWidget::ImageWidget(std::shared_ptr<Image> image) : image_(std::move(image)) {
  set_can_target(false);
}

void ImageWidget::measure_vfunc(Gtk::Orientation orientation, int, int& minimum, int& natural,
                                int& minimumBaseline, int& naturalBaseline) const {
  const Size size = image_->size();
  minimum = 0;
  natural = static_cast<int>(
      std::ceil(orientation == Gtk::Orientation::HORIZONTAL ? size.width : size.height));
  minimumBaseline = naturalBaseline = -1;
}

void ImageWidget::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  const Size size = image_->size();
  const double shrink = std::min({1.0, get_width() / size.width, get_height() / size.height});
  const double width = size.width * shrink;
  const double height = size.height * shrink;
  graphene_rect_t area;
  graphene_rect_init(&area, float(std::floor((get_width() - width) / 2)),
                     float(std::floor((get_height() - height) / 2)), float(width), float(height));
  gtk_snapshot_append_texture(snapshot->gobj(), image_->native().texture->gobj(), &area);
}

SymbolWidget::SymbolWidget(Symbol symbol, int points) : symbol_(symbol), points_(points) {
  set_can_target(false);
}

void SymbolWidget::setSymbol(Symbol symbol) {
  symbol_ = symbol;
  queue_draw();
}

void SymbolWidget::measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural,
                                 int& minimumBaseline, int& naturalBaseline) const {
  minimum = natural = points_;
  minimumBaseline = naturalBaseline = -1;
}

void SymbolWidget::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  const auto context = snapshot->append_cairo(Gdk::Rectangle(0, 0, get_width(), get_height()));
  const Gdk::RGBA color = get_style_context()->get_color();
  context->set_source_rgba(color.get_red(), color.get_green(), color.get_blue(), color.get_alpha());
  context->translate((get_width() - points_) / 2.0, (get_height() - points_) / 2.0);
  context->scale(points_ / 16.0, points_ / 16.0);
  draw(symbol_, context);
}

void loadWidgetStyle() {
  static bool loaded = false;
  const auto display = Gdk::Display::get_default();
  if (loaded || !display) return;
  loaded = true;
  // The bar is black in light and dark themes, so its colours are fixed. Its text is sized in
  // points and follows the user's text size.
  const auto provider = Gtk::CssProvider::create();
  provider->load_from_data(R"(
button.platform-button {
  min-width: 0; min-height: 0; padding: 0; margin: 0;
  border: none; border-radius: 8px; background: none; box-shadow: none; text-shadow: none;
  color: white; outline-offset: -3px;
}
button.platform-button:disabled { background: none; opacity: 0.35; }
button.platform-button:focus-visible { outline: 2px solid #78aeed; }
button.platform-button.glows { border-radius: 100px; }
button.platform-button.glows:hover { background: alpha(white, 0.12); }
button.platform-button.glows:active {
  background: radial-gradient(circle, alpha(white, 0.75), alpha(white, 0.25) 60%, transparent);
}
button.platform-button.bar:hover { background: alpha(white, 0.10); }
button.platform-button.bar:active { background: alpha(white, 0.25); }
button.platform-button.done label {
  font-size: 9.75pt; font-weight: bold; padding: 3px 9px;
  background: #3d3d40; border-radius: 6px;
}
button.platform-button.done:hover, button.platform-button.done:active { background: none; }
button.platform-button.done:hover label { background: #4d4d51; }
button.platform-button.done:active label { background: #6a6a70; }
.platform-label { font-size: 7.5pt; color: #e3e3e6; }
.platform-label .detail { color: #9a9a9f; }
spinner.white { color: white; opacity: 1; }
spinner.white:not(:checked) { opacity: 0; }
)");
  Gtk::StyleContext::add_provider_for_display(display, provider,
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

}  // namespace valdren::platform
