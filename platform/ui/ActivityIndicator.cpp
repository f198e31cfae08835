#include "platform/ui/ActivityIndicator.h"

#include <gtkmm/spinner.h>

#include "platform/ui/NativeImage.h"
#include "platform/ui/NativeView.h"

namespace valdren::platform {

struct ActivityIndicator::Native {
  Gtk::Spinner spinner;
};

ActivityIndicator::ActivityIndicator(ActivityIndicatorStyle style, const Rect& frame)
    : View(frame), native_(std::make_unique<Native>()) {
  loadWidgetStyle();
  if (style != ActivityIndicatorStyle::Gray) native_->spinner.add_css_class("white");
  native().widget().set_can_target(false);
  native().setContent(&native_->spinner);
}

ActivityIndicator::~ActivityIndicator() {
  invalidateWeakReferences();
  native().setContent(nullptr);
}

void ActivityIndicator::startAnimating() {
  native_->spinner.start();
}
void ActivityIndicator::stopAnimating() {
  native_->spinner.stop();
}
bool ActivityIndicator::isAnimating() const {
  return native_->spinner.get_spinning();
}

View* ActivityIndicator::hitTest(Point, EventType) {
  return nullptr;
}

}  // namespace valdren::platform
