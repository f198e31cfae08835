#include "platform/ui/Button.h"

#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include "platform/base/KeptUntilReturn.h"
#include "platform/ui/LaunchPermit.h"
#include "platform/ui/NativeImage.h"
#include "platform/ui/NativeView.h"

namespace valdren::platform {
namespace {

constexpr int kSymbolPoints = 20;

}  // namespace

struct Button::Native {
  Gtk::Button button;
  std::unique_ptr<Gtk::Widget> content;

  void show(std::unique_ptr<Gtk::Widget> widget) {
    button.set_child(*widget);
    content = std::move(widget);
  }
};

Button::Button(ButtonStyle style, const Rect& frame)
    : View(frame), native_(std::make_unique<Native>()) {
  loadWidgetStyle();
  Gtk::Button& button = native_->button;
  button.add_css_class("platform-button");
  if (style != ButtonStyle::Custom) button.add_css_class("bar");
  if (style == ButtonStyle::Done) button.add_css_class("done");
  button.signal_clicked().connect([this] {
    LaunchPermit::shared().activated();
    clicked();
  });
  native().setContent(&button);
}

Button::~Button() {
  invalidateWeakReferences();
  native().setContent(nullptr);
}

void Button::setImage(std::shared_ptr<Image> image) {
  image_ = std::move(image);
  if (image_) native_->show(std::make_unique<ImageWidget>(image_));
}

void Button::setSymbol(Symbol symbol) {
  native_->show(std::make_unique<SymbolWidget>(symbol, kSymbolPoints));
}

void Button::setTitle(const std::string& title) {
  title_ = title;
  auto label = std::make_unique<Gtk::Label>(title);
  label->set_valign(Gtk::Align::CENTER);
  label->set_halign(Gtk::Align::CENTER);
  native_->show(std::move(label));
}

double Button::naturalWidth() const {
  int minimum = 0;
  int natural = 0;
  int ignored = 0;
  native_->button.measure(Gtk::Orientation::HORIZONTAL, -1, minimum, natural, ignored, ignored);
  return natural;
}

void Button::setShowsTouchWhenHighlighted(bool shows) {
  if (shows) {
    native_->button.add_css_class("glows");
  } else {
    native_->button.remove_css_class("glows");
  }
}

void Button::setEnabled(bool enabled) {
  enabled_ = enabled;
  native_->button.set_sensitive(enabled);
}

void Button::clicked() {
  const KeptUntilReturn kept(*this);
  if (const std::function<void()> action = action_) action();
}

}  // namespace valdren::platform
