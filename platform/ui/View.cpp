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

Rect usable(const Rect& frame) {
  return {usableOffset(frame.x), usableOffset(frame.y), usableLength(frame.width),
          usableLength(frame.height)};
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

struct View::Members {
  Rect frame;
  Window* owner = nullptr;  // set for a window's outermost view only
  unsigned autoresizingMask = kNoResizing;
  bool autoresizesSubviews = true;
  bool hidden = false;
  bool opaque = true;
  bool clipsToBounds = false;
  bool userInteractionEnabled = true;
  Color backgroundColor = Color::clear();
  std::string accessibilityLabel;
  View* superview = nullptr;
  std::vector<std::shared_ptr<View>> subviews;
  std::unique_ptr<NativeView> native;
};

View::View(const Rect& frame) : members_(std::make_unique<Members>()) {
  assertMainThread();
  members_->frame = usable(frame);
  members_->native = std::make_unique<NativeView>(*this);
}

View::~View() {
  assertMainThread();
  invalidateWeakReferences();
  for (const auto& subview : members_->subviews) {
    subview->members_->superview = nullptr;
    members_->native->remove(*subview->members_->native);
  }
}

const Rect& View::frame() const {
  return members_->frame;
}

Rect View::bounds() const {
  return {0, 0, members_->frame.width, members_->frame.height};
}

unsigned View::autoresizingMask() const {
  return members_->autoresizingMask;
}

void View::setAutoresizingMask(unsigned mask) {
  members_->autoresizingMask = mask;
}

void View::setAutoresizesSubviews(bool resizes) {
  members_->autoresizesSubviews = resizes;
}

const std::vector<std::shared_ptr<View>>& View::subviews() const {
  return members_->subviews;
}

View* View::superview() const {
  return members_->superview;
}

bool View::isHidden() const {
  return members_->hidden;
}

bool View::isOpaque() const {
  return members_->opaque;
}

void View::setOpaque(bool opaque) {
  members_->opaque = opaque;
}

Color View::backgroundColor() const {
  return members_->backgroundColor;
}

bool View::clipsToBounds() const {
  return members_->clipsToBounds;
}

bool View::isUserInteractionEnabled() const {
  return members_->userInteractionEnabled;
}

const std::string& View::accessibilityLabel() const {
  return members_->accessibilityLabel;
}

NativeView& View::native() const {
  return *members_->native;
}

void View::setFrame(const Rect& frame) {
  assertMainThread();
  const Rect wanted = usable(frame);
  if (wanted == members_->frame) return;
  const Size before = members_->frame.size();
  members_->frame = wanted;
  if (before != members_->frame.size()) {
    if (members_->autoresizesSubviews) resizeSubviews(before);
    layoutSubviews();
  }
  members_->native->frameChanged();
}

void View::resizeSubviews(Size before) {
  for (const auto& subview : std::vector(members_->subviews)) {
    const unsigned mask = subview->members_->autoresizingMask;
    Rect frame = subview->members_->frame;
    resizeAlongOneAxis(frame.x, frame.width, before.width, members_->frame.width,
                       mask & kFlexibleLeftMargin, mask & kFlexibleWidth,
                       mask & kFlexibleRightMargin);
    resizeAlongOneAxis(frame.y, frame.height, before.height, members_->frame.height,
                       mask & kFlexibleTopMargin, mask & kFlexibleHeight,
                       mask & kFlexibleBottomMargin);
    subview->setFrame(frame);
  }
}

void View::addSubview(std::shared_ptr<View> subview) {
  assertMainThread();
  for (const View* view = this; view; view = view->members_->superview) {
    if (!subview || view == subview.get()) return;
  }
  subview->removeFromSuperview();
  subview->members_->superview = this;
  members_->native->insertOnTop(*subview->members_->native);
  members_->subviews.push_back(std::move(subview));
}

void View::removeFromSuperview() {
  assertMainThread();
  if (!members_->superview) return;
  View& former = *members_->superview;
  members_->superview = nullptr;
  former.members_->native->remove(*members_->native);
  const auto place =
      std::find_if(former.members_->subviews.begin(), former.members_->subviews.end(),
                   [this](const auto& subview) { return subview.get() == this; });
  const std::shared_ptr<View> keptUntilReturn = *place;
  former.members_->subviews.erase(place);
}

Window* View::window() const {
  const View* outermost = this;
  while (outermost->members_->superview) outermost = outermost->members_->superview;
  return outermost->members_->owner;
}

void View::setOwner(Window* owner) {
  members_->owner = owner;
}

void View::setHidden(bool hidden) {
  members_->hidden = hidden;
  members_->native->appearanceChanged();
}

void View::setBackgroundColor(const Color& color) {
  members_->backgroundColor = color;
  members_->native->appearanceChanged();
}

void View::setClipsToBounds(bool clips) {
  members_->clipsToBounds = clips;
  members_->native->appearanceChanged();
}

void View::setUserInteractionEnabled(bool enabled) {
  members_->userInteractionEnabled = enabled;
  members_->native->appearanceChanged();
}

void View::setAccessibilityLabel(std::string label) {
  members_->accessibilityLabel = std::move(label);
  members_->native->appearanceChanged();
}

void View::becomeFirstResponder() {
  members_->native->focus();
}

bool View::isFirstResponder() const {
  return members_->native->isFocused();
}

View* View::hitTest(Point point, EventType type) {
  assertMainThread();
  if (members_->hidden || !members_->userInteractionEnabled || !bounds().contains(point))
    return nullptr;
  const KeptUntilReturn kept(*this);
  const std::vector<std::shared_ptr<View>> present = members_->subviews;
  for (auto subview = present.rbegin(); subview != present.rend(); ++subview) {
    const Rect& frame = (*subview)->members_->frame;
    if (View* hit = (*subview)->hitTest({point.x - frame.x, point.y - frame.y}, type)) return hit;
  }
  return this;
}

}  // namespace valdren::platform
