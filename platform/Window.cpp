#include "platform/Window.h"

#include <algorithm>

#include "platform/RunLoop.h"
#include "platform/gtk/LeavingKeys.h"
#include "platform/gtk/NativeView.h"
#include "platform/gtk/NativeWindow.h"

namespace platform {
namespace {

constexpr double kTransitionSeconds = 0.25;

WeakPtr<Window> theKeyWindow;

double easedOut(double progress) {
  const double left = 1 - progress;
  return 1 - left * left * left;
}

}  // namespace

/// The outermost view: the screens are its subviews, the topmost screen last.
class Window::Stage final : public View {
 public:
  Stage(Window& window, const Rect& frame) : View(frame), window_(window) {
    setClipsToBounds(true);
  }

 protected:
  void layoutSubviews() override { window_.orientationMayHaveChanged(); }

 private:
  Window& window_;
};

/// One screen on its way in or out over another.
struct Window::Transition {
  bool appearing;
  std::shared_ptr<ViewController> moving;
  std::shared_ptr<ViewController> underneath;
  bool animated;
};

Window::Window(Size size) : stage_(std::make_shared<Stage>(*this, Rect{})) {
  native_ = std::make_unique<NativeWindow>(size, *stage_);
  stage_->owner_ = this;
  stage_->setFrame({0, 0, size.width, size.height - native_->statusBarHeight()});
  lastOrientation_ = orientation();
  watchLeavingKeys(native_->window(), [this](LeavingKey key) {
    ViewController* const top = topViewController();
    if (!top) return false;
    const std::shared_ptr<ViewController> keptUntilReturn = top->shared_from_this();
    return key == LeavingKey::Cancel ? top->cancelPressed() : top->backPressed();
  });
}

Window::~Window() {
  invalidateWeakReferences();
  if (transition_) native_->stopAnimation();
  stage_->owner_ = nullptr;
  while (!stage_->subviews().empty()) stage_->subviews().back()->removeFromSuperview();
  native_.reset();
}

Window* Window::keyWindow() {
  return theKeyWindow.get();
}

void Window::setRootViewController(std::shared_ptr<ViewController> controller) {
  finishTransition();
  if (root_) {
    if (root_->modal_) dismiss(*root_, false);
    if (visible_) root_->viewWillDisappear(false);
    if (root_->isViewLoaded()) root_->view()->removeFromSuperview();
    if (visible_) root_->viewDidDisappear(false);
    root_->window_ = nullptr;
  }
  root_ = std::move(controller);
  if (!root_) return;
  root_->window_ = this;
  root_->setInitialFrame(stage_->bounds());
  const std::shared_ptr<View> view = root_->view();
  view->setAutoresizingMask(kFlexibleWidth | kFlexibleHeight);
  view->setFrame(stage_->bounds());
  if (visible_) root_->viewWillAppear(false);
  stage_->addSubview(view);
  if (visible_) root_->viewDidAppear(false);
}

void Window::makeKey() {
  theKeyWindow = this;
}

void Window::makeKeyAndVisible() {
  makeKey();
  const bool first = !visible_;
  visible_ = true;
  if (first && root_) root_->viewWillAppear(false);
  native_->show();
  if (first && root_) root_->viewDidAppear(false);
}

ViewController* Window::topViewController() const {
  ViewController* top = root_.get();
  while (top && top->modal_) top = top->modal_.get();
  return top;
}

void Window::present(ViewController& presenter, std::shared_ptr<ViewController> controller,
                     bool animated) {
  const std::shared_ptr<ViewController> underneath = presenter.shared_from_this();
  finishTransition();
  // What the finished transition called may have presented a screen, or this was its end.
  if (presenter.modal_ || presenter.window_.get() != this) return;
  if (shownForModalsOnly_ && !visible_) makeKeyAndVisible();
  presenter.modal_ = controller;
  controller->presenting_ = &presenter;
  controller->window_ = this;
  controller->setInitialFrame(stage_->bounds());
  const std::shared_ptr<View> view = controller->view();
  view->setAutoresizingMask(kFlexibleWidth | kFlexibleHeight);
  view->setFrame(stage_->bounds());
  turnFor(*controller);
  presenter.viewWillDisappear(animated);
  controller->viewWillAppear(animated);
  stage_->addSubview(view);
  run(std::make_unique<Transition>(Transition{true, std::move(controller), underneath, animated}),
      animated);
}

void Window::dismiss(ViewController& presenter, bool animated) {
  finishTransition();
  if (!presenter.modal_) return;
  const std::shared_ptr<ViewController> underneath = presenter.shared_from_this();
  std::shared_ptr<ViewController> top = presenter.modal_;
  // Screens between the presenter and the top one are covered; they go without a word.
  while (top->modal_) {
    top->view()->removeFromSuperview();
    top->window_ = nullptr;
    std::shared_ptr<ViewController> next = std::move(top->modal_);
    top = std::move(next);
  }
  presenter.modal_.reset();
  top->viewWillDisappear(animated);
  presenter.viewWillAppear(animated);
  presenter.view()->native().setCovered(false);
  run(std::make_unique<Transition>(Transition{false, top, underneath, animated}), animated);
}

void Window::run(std::unique_ptr<Transition> transition, bool animated) {
  // A hook of the screens may have begun, or needs, another transition: that one waits its turn.
  finishTransition();
  transition_ = std::move(transition);
  if (!animated || shownForModalsOnly_) {
    finishTransition();
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
}

void Window::place(Transition& transition, double progress) {
  const Rect bounds = stage_->bounds();
  const double shown = transition.appearing ? progress : 1 - progress;
  transition.moving->view()->setFrame(
      {0, bounds.height * (1 - shown), bounds.width, bounds.height});
}

void Window::finishTransition() {
  if (!transition_) return;
  const std::unique_ptr<Transition> done = std::move(transition_);
  native_->stopAnimation();
  const std::shared_ptr<Window> keptAlive = weak_from_this().lock();
  place(*done, 1);
  if (done->appearing) {
    done->underneath->view()->native().setCovered(true);
    done->moving->view()->native().focus();
    done->underneath->viewDidDisappear(done->animated);
    done->moving->viewDidAppear(done->animated);
    return;
  }
  done->moving->view()->removeFromSuperview();
  if (turnedFor_ == done->moving.get()) turnBack();
  done->underneath->view()->native().focus();
  done->moving->viewDidDisappear(done->animated);
  done->moving->presenting_ = nullptr;
  done->moving->window_ = nullptr;
  done->underneath->viewDidAppear(done->animated);
  if (shownForModalsOnly_ && root_ && !root_->modal_) hide();
}

void Window::hide() {
  visible_ = false;
  native_->hide();
}

void Window::turnFor(ViewController& controller) {
  if (turnedFor_ || controller.shouldAutorotateToInterfaceOrientation(orientation())) return;
  turnedFor_ = &controller;
  const Size before = size();
  resize({before.height, before.width});
}

void Window::turnBack() {
  turnedFor_ = nullptr;
  const Size before = size();
  resize({before.height, before.width});
}

void Window::orientationMayHaveChanged() {
  const InterfaceOrientation before = lastOrientation_;
  const InterfaceOrientation now = orientation();
  if (now == before) return;
  lastOrientation_ = now;
  ViewController* top = topViewController();
  if (before == InterfaceOrientation::Unknown || !top) return;
  // After the layout that is going on, so that the screen may change its views.
  RunLoop::shared().performAfterDelay(*top, 0, [top, now, before] {
    if (top->shouldAutorotateToInterfaceOrientation(now)) {
      top->didRotateFromInterfaceOrientation(before);
    }
  });
}

InterfaceOrientation Window::orientation() const {
  const Rect bounds = stage_->bounds();
  const double height = bounds.height + statusBarHeight();
  return bounds.width > height ? InterfaceOrientation::LandscapeRight
                               : InterfaceOrientation::Portrait;
}

Rect Window::contentBounds() const {
  return stage_->bounds();
}
void Window::setTitle(const std::string& title) {
  native_->setTitle(title);
}
void Window::resize(Size size) {
  native_->resize(size);
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
bool Window::savePicture(const std::string& path) {
  return native_->savePicture(path);
}

}  // namespace platform
