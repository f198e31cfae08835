#include "platform/ui/View.h"

#include <algorithm>
#include <cmath>

#include "platform/base/KeptUntilReturn.h"
#include "platform/base/MainThread.h"
#include "platform/ui/NativeView.h"

namespace valdren::platform {
namespace {

double usableLength(double length) {
  return length > 0 ? length : 0;  // NaN is not above 0
}

double usableOffset(double offset) {
  return std::isfinite(offset) ? offset : 0;
}

/// Distributes the change of the superview's length over the flexible parts: in proportion to their
/// lengths, or evenly when their sum is 0.
void resizeAlongOneAxis(double& start, double& length, double before, double after, bool startGives,
                        bool lengthGives, bool endGives) {
  const double end = before - start - length;
  const double change = after - before;
  const double flexible =
      (startGives ? start : 0) + (lengthGives ? length : 0) + (endGives ? end : 0);
  const int parts = int{startGives} + int{lengthGives} + int{endGives};
  if (parts == 0) return;
  const auto share = [&](double part) {
    return parts == 1 ? change : flexible > 0 ? change * part / flexible : change / parts;
  };
  const double grownStart = startGives ? start + share(start) : start;
  if (lengthGives) length = usableLength(length + share(length));
  start = grownStart;
}

}  // namespace

View::View(const Rect& frame)
    : frame_{usableOffset(frame.x), usableOffset(frame.y), usableLength(frame.width),
             usableLength(frame.height)},
      native_(std::make_unique<NativeView>(*this)) {
  assertMainThread();
}

View::~View() {
  assertMainThread();
  invalidateWeakReferences();
  for (const auto& subview : subviews_) {
    subview->superview_ = nullptr;
    native_->remove(*subview->native_);
  }
}

void View::setFrame(const Rect& frame) {
  assertMainThread();
  const Rect usable{usableOffset(frame.x), usableOffset(frame.y), usableLength(frame.width),
                    usableLength(frame.height)};
  if (usable == frame_) return;
  const Size before = frame_.size();
  frame_ = usable;
  if (before != frame_.size()) {
    if (autoresizesSubviews_) resizeSubviews(before);
    layoutSubviews();
  }
  native_->frameChanged();
}

void View::resizeSubviews(Size before) {
  for (const auto& subview : std::vector(subviews_)) {
    const unsigned mask = subview->autoresizingMask_;
    Rect frame = subview->frame_;
    resizeAlongOneAxis(frame.x, frame.width, before.width, frame_.width, mask & kFlexibleLeftMargin,
                       mask & kFlexibleWidth, mask & kFlexibleRightMargin);
    resizeAlongOneAxis(frame.y, frame.height, before.height, frame_.height,
                       mask & kFlexibleTopMargin, mask & kFlexibleHeight,
                       mask & kFlexibleBottomMargin);
    subview->setFrame(frame);
  }
}

void View::addSubview(std::shared_ptr<View> subview) {
  assertMainThread();
  for (const View* view = this; view; view = view->superview_) {
    if (!subview || view == subview.get()) return;
  }
  subview->removeFromSuperview();
  subview->superview_ = this;
  native_->insertOnTop(*subview->native_);
  subviews_.push_back(std::move(subview));
}

void View::removeFromSuperview() {
  assertMainThread();
  if (!superview_) return;
  View& former = *superview_;
  superview_ = nullptr;
  former.native_->remove(*native_);
  const auto place = std::find_if(former.subviews_.begin(), former.subviews_.end(),
                                  [this](const auto& subview) { return subview.get() == this; });
  const std::shared_ptr<View> keptUntilReturn = *place;
  former.subviews_.erase(place);
}

Window* View::window() const {
  const View* outermost = this;
  while (outermost->superview_) outermost = outermost->superview_;
  return outermost->owner_;
}

void View::setHidden(bool hidden) {
  hidden_ = hidden;
  native_->appearanceChanged();
}

void View::setBackgroundColor(const Color& color) {
  backgroundColor_ = color;
  native_->appearanceChanged();
}

void View::setClipsToBounds(bool clips) {
  clipsToBounds_ = clips;
  native_->appearanceChanged();
}

void View::setUserInteractionEnabled(bool enabled) {
  userInteractionEnabled_ = enabled;
  native_->appearanceChanged();
}

void View::setAccessibilityLabel(std::string label) {
  accessibilityLabel_ = std::move(label);
  native_->appearanceChanged();
}

void View::becomeFirstResponder() {
  native_->focus();
}

bool View::isFirstResponder() const {
  return native_->isFocused();
}

View* View::hitTest(Point point, EventType type) {
  assertMainThread();
  if (hidden_ || !userInteractionEnabled_ || !bounds().contains(point)) return nullptr;
  const KeptUntilReturn kept(*this);
  const std::vector<std::shared_ptr<View>> present = subviews_;
  for (auto subview = present.rbegin(); subview != present.rend(); ++subview) {
    const Rect& frame = (*subview)->frame_;
    if (View* hit = (*subview)->hitTest({point.x - frame.x, point.y - frame.y}, type)) return hit;
  }
  return this;
}

}  // namespace valdren::platform
