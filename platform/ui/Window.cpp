#include "platform/ui/Window.h"

#include <algorithm>

#include "platform/base/KeptUntilReturn.h"
#include "platform/base/MainThread.h"
#include "platform/base/RunLoop.h"
#include "platform/ui/LeavingKeys.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/NativeWindow.h"
#include "platform/ui/ViewControllerMembers.h"

namespace valdren::platform {
namespace {

constexpr Seconds kTransitionSeconds{0.25};
/// The time that a desktop gets to turn the window.
constexpr Seconds kTurnSeconds{2};

WeakPtr<Window> theKeyWindow;

double easedOut(double progress) {
  const double left = 1 - progress;
  return 1 - left * left * left;
}

}  // namespace

/// The outermost view. The screens are its subviews, the topmost screen last.
class Window::ScreenStack final : public View {
 public:
  ScreenStack() { setClipsToBounds(true); }

 protected:
  void layoutSubviews() override {
    if (window()) window()->orientationMayHaveChanged();
  }
};

/// One screen that appears or disappears over another.
struct Window::Transition {
  bool appearing;
  std::shared_ptr<ViewController> moving;
  std::shared_ptr<ViewController> underneath;
  bool animated;
};

Window::Window(Size size) : screenStack_(std::make_shared<ScreenStack>()) {
  assertMainThread();
  native_ = std::make_unique<NativeWindow>(size, *screenStack_);
  screenStack_->setOwner(this);
  screenStack_->setFrame({0, 0, size.width, size.height - native_->statusBarHeight()});
  lastOrientation_ = orientation();
  watchLeavingKeys(native_->window(), [this](LeavingKey key) {
    ViewController* const top = topViewController();
    if (!top) return false;
    const KeptUntilReturn kept(*top);
    return key == LeavingKey::Cancel ? top->cancelPressed() : top->backPressed();
  });
}

Window::~Window() {
  assertMainThread();
  invalidateWeakReferences();
  if (transition_) native_->stopAnimation();
  screenStack_->setOwner(nullptr);
  while (!screenStack_->subviews().empty()) screenStack_->subviews().back()->removeFromSuperview();
  native_.reset();
}

Window* Window::keyWindow() {
  assertMainThread();
  return theKeyWindow.get();
}

/// Runs a change of the screens. Changes that the screens' hooks ask for in the meantime wait, so
/// that each screen gets its hooks completely and in order.
void Window::change(std::function<void()> change) {
  assertMainThread();
  waiting_.push_back(std::move(change));
  if (changing_) return;
  const KeptUntilReturn kept(*this);
  changing_ = true;
  while (!waiting_.empty()) {
    const std::function<void()> next = std::move(waiting_.front());
    waiting_.pop_front();
    next();
  }
  changing_ = false;
}

void Window::setRootViewController(std::shared_ptr<ViewController> controller) {
  change([this, controller = std::move(controller)] { replaceRoot(controller); });
}

void Window::replaceRoot(std::shared_ptr<ViewController> controller) {
  endTransition();
  if (root_) {
    if (root_->members_->modal) {
      dismiss(*root_, false);
      change([this, controller = std::move(controller)] { replaceRoot(controller); });
      return;
    }
    if (visible_) root_->viewWillDisappear(false);
    if (root_->isViewLoaded()) root_->view()->removeFromSuperview();
    if (visible_) root_->viewDidDisappear(false);
    root_->members_->window = nullptr;
  }
  root_ = std::move(controller);
  if (!root_) return;
  root_->members_->window = this;
  root_->setInitialFrame(screenStack_->bounds());
  const std::shared_ptr<View> view = root_->view();
  view->setAutoresizingMask(kFlexibleWidth | kFlexibleHeight);
  view->setFrame(screenStack_->bounds());
  if (visible_) root_->viewWillAppear(false);
  screenStack_->addSubview(view);
  if (visible_) root_->viewDidAppear(false);
}

void Window::makeKey() {
  theKeyWindow = this;
}

void Window::makeKeyAndVisible() {
  makeKey();
  const bool first = !visible_;
  visible_ = true;
  change([this, first] {
    if (first && root_) root_->viewWillAppear(false);
    native_->show();
    if (first && root_) root_->viewDidAppear(false);
  });
}

ViewController* Window::topViewController() const {
  ViewController* top = root_.get();
  while (top && top->members_->modal) top = top->members_->modal.get();
  return top;
}

// The links between the screens change at once, so that the caller sees the new order. The display
// follows in turn.

void Window::present(ViewController& presenter, std::shared_ptr<ViewController> controller,
                     bool animated) {
  if (shownForModalsOnly_ && !visible_) makeKeyAndVisible();
  presenter.members_->modal = controller;
  controller->members_->presenting = &presenter;
  controller->members_->window = this;
  change([this, controller = std::move(controller), over = presenter.shared_from_this(), animated] {
    // It may have been dismissed while it waited.
    if (over->members_->modal == controller) show(controller, over, animated);
  });
}

void Window::show(const std::shared_ptr<ViewController>& controller,
                  const std::shared_ptr<ViewController>& over, bool animated) {
  endTransition();
  controller->setInitialFrame(screenStack_->bounds());
  const std::shared_ptr<View> view = controller->view();
  view->setAutoresizingMask(kFlexibleWidth | kFlexibleHeight);
  view->setFrame(screenStack_->bounds());
  turnFor(controller);
  over->viewWillDisappear(animated);
  controller->viewWillAppear(animated);
  screenStack_->addSubview(view);
  run({true, controller, over, animated});
}

void Window::dismiss(ViewController& presenter, bool animated) {
  const std::shared_ptr<ViewController> over = presenter.shared_from_this();
  std::vector<std::shared_ptr<ViewController>> leaving;
  for (ViewController* screen = over.get(); screen->members_->modal;
       screen = leaving.back().get()) {
    leaving.push_back(std::move(screen->members_->modal));
  }
  change([this, over, leaving, animated] {
    endTransition();
    // Only the topmost visible screen leaves with its hooks and animation. The screens below it are
    // covered, and those above were never shown: they are removed without hooks.
    std::shared_ptr<ViewController> top;
    for (const auto& screen : leaving) {
      if (isInStack(*screen)) top = screen;
    }
    bool isCovered = top != nullptr;
    for (const auto& screen : leaving) {
      if (screen == top) {
        isCovered = false;
        continue;
      }
      if (isInStack(*screen)) screen->view()->removeFromSuperview();
      screen->members_->window = nullptr;
      // The topmost one may tell those below that they are gone.
      if (!isCovered) screen->members_->presenting = nullptr;
    }
    if (top) hide(top, over, animated);
  });
}

bool Window::isInStack(ViewController& screen) const {
  return screen.isViewLoaded() && screen.view()->superview() == screenStack_.get();
}

void Window::hide(const std::shared_ptr<ViewController>& controller,
                  const std::shared_ptr<ViewController>& over, bool animated) {
  controller->viewWillDisappear(animated);
  over->viewWillAppear(animated);
  over->view()->native().setCovered(false);
  run({false, controller, over, animated});
}

void Window::run(Transition transition) {
  transition_ = std::make_shared<Transition>(std::move(transition));
  if (!transition_->animated || shownForModalsOnly_) {
    endTransition();
    return;
  }
  place(*transition_, 0);
  native_->animate(kTransitionSeconds, [this](double progress) {
    if (!transition_) return;
    if (progress < 1) {
      place(*transition_, easedOut(progress));
    } else {
      finishTransition();
    }
  });
  // A window that is not drawn gets no frames for an animation.
  RunLoop::shared().performAfterDelay(*this, 4 * kTransitionSeconds,
                                      [this, begun = std::weak_ptr(transition_)] {
                                        if (!begun.expired()) finishTransition();
                                      });
}

void Window::place(const Transition& transition, double progress) {
  const Rect bounds = screenStack_->bounds();
  const double shown = transition.appearing ? progress : 1 - progress;
  transition.moving->view()->setFrame(
      {0, bounds.height * (1 - shown), bounds.width, bounds.height});
}

void Window::finishTransition() {
  if (transition_) change([this] { endTransition(); });
}

void Window::endTransition() {
  if (!transition_) return;
  const std::shared_ptr<Transition> done = std::move(transition_);
  native_->stopAnimation();
  place(*done, 1);
  if (done->appearing) {
    done->underneath->view()->native().setCovered(true);
    done->moving->view()->native().focus();
    done->underneath->viewDidDisappear(done->animated);
    done->moving->viewDidAppear(done->animated);
    return;
  }
  done->moving->view()->removeFromSuperview();
  turnBack();
  done->underneath->view()->native().focus();
  done->moving->viewDidDisappear(done->animated);
  done->moving->members_->window = nullptr;
  for (ViewController* gone = done->moving.get();
       gone && gone != done->underneath.get() && !gone->members_->window;) {
    gone = std::exchange(gone->members_->presenting, nullptr).get();
  }
  done->underneath->viewDidAppear(done->animated);
  if (shownForModalsOnly_ && root_ && !root_->members_->modal) hide();
}

void Window::hide() {
  visible_ = false;
  native_->hide();
}

/// Without `canTurn`, the screen is shown in the window's present shape.
void Window::turnFor(const std::shared_ptr<ViewController>& controller) {
  if (!turnedFor_.expired()) return;
  if (controller->shouldAutorotateToInterfaceOrientation(orientation())) return;
  if (!canTurn()) return;
  turnedFor_ = controller;
  sizeBeforeTurn_ = size();
  native_->turn({sizeBeforeTurn_.height, sizeBeforeTurn_.width});
  turnCheck_ = RunLoop::shared().scheduleTimer(kTurnSeconds, [this] { checkTurn(); });
}

bool Window::canTurn() const {
  const Size present = size();
  return !refusesToTurn_ && native_->canTurn({present.height, present.width});
}

/// The desktop decides. If it did not turn the window, it is not asked again. If the turned window
/// is partly off the monitor, the turn is undone.
void Window::checkTurn() {
  if (sizeBeforeTurn_ == Size{}) return;
  const bool wasWide = sizeBeforeTurn_.width > sizeBeforeTurn_.height;
  refusesToTurn_ = wasWide == isLandscape(orientation());
  if (!refusesToTurn_ && isOnScreen(contentBounds())) return;
  native_->turnBack(sizeBeforeTurn_);
  turnedFor_.reset();
  sizeBeforeTurn_ = {};
}

/// Turns the window back once the screen that needed it is gone. Nothing when the window has its
/// former shape already.
void Window::turnBack() {
  if (sizeBeforeTurn_ == Size{}) return;
  const std::shared_ptr<ViewController> turned = turnedFor_.lock();
  for (const ViewController* screen = root_.get(); screen; screen = screen->members_->modal.get()) {
    if (screen == turned.get()) return;
  }
  turnCheck_.reset();
  const bool wasWide = sizeBeforeTurn_.width > sizeBeforeTurn_.height;
  if (wasWide != isLandscape(orientation())) native_->turnBack(sizeBeforeTurn_);
  turnedFor_.reset();
  sizeBeforeTurn_ = {};
}

void Window::didReceiveMemoryWarning() {
  std::vector<std::shared_ptr<ViewController>> screens;
  for (std::shared_ptr<ViewController> screen = root_; screen; screen = screen->members_->modal) {
    screens.push_back(screen);
  }
  for (const auto& screen : screens) screen->didReceiveMemoryWarning();
}

void Window::orientationMayHaveChanged() {
  const InterfaceOrientation before = lastOrientation_;
  const InterfaceOrientation now = orientation();
  if (now == before) return;
  lastOrientation_ = now;
  ViewController* const top = topViewController();
  if (before == InterfaceOrientation::Unknown || !top) return;
  // After the present layout, so that the screen may change its views. The call is cancelled when
  // the screen is destroyed.
  RunLoop::shared().performAfterDelay(*top, kNextTurn, [top, now, before] {
    if (top->window() && top->shouldAutorotateToInterfaceOrientation(now)) {
      top->didRotateFromInterfaceOrientation(before);
    }
  });
}

InterfaceOrientation Window::orientation() const {
  const Rect bounds = screenStack_->bounds();
  const double height = bounds.height + statusBarHeight();
  return bounds.width > height ? InterfaceOrientation::LandscapeRight
                               : InterfaceOrientation::Portrait;
}

Rect Window::contentBounds() const {
  return screenStack_->bounds();
}
void Window::setTitle(const std::string& title) {
  native_->setTitle(title);
}
void Window::resize(Size size) {
  native_->resize(size);
  if (visible_) return;
  // An invisible window gets no layout that would set the frame.
  screenStack_->setFrame({0, 0, size.width, size.height - statusBarHeight()});
}
Size Window::size() const {
  return native_->size();
}
bool Window::isStatusBarHidden() const {
  return native_->isStatusBarHidden();
}
void Window::setStatusBarHidden(bool hidden) {
  native_->setStatusBarHidden(hidden);
}
double Window::statusBarHeight() const {
  return native_->statusBarHeight();
}
bool Window::isOnScreen(const Rect& area) const {
  return native_->isOnScreen({area.x, area.y + statusBarHeight(), area.width, area.height});
}

}  // namespace valdren::platform
