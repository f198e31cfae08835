#include "platform/ui/ViewController.h"

#include "platform/base/Log.h"
#include "platform/base/MainThread.h"
#include "platform/ui/InterfaceView.h"
#include "platform/ui/Window.h"

namespace valdren::platform {

ViewController::ViewController() {
  assertMainThread();
}

ViewController::~ViewController() {
  assertMainThread();
  invalidateWeakReferences();
}

const std::shared_ptr<View>& ViewController::view() {
  assertMainThread();
  if (!view_) {
    loadView();
    if (!view_) view_ = std::make_shared<View>(initialFrame_);
    viewDidLoad();
  }
  return view_;
}

void ViewController::loadView() {
  if (interfaceName_.empty()) return;
  // The view may outlive this screen.
  InterfaceView::Actions actions;
  for (const auto& [name, action] : actions_) actions[name] = whileAlive(*this, action);
  auto loaded = InterfaceView::load(interfaceName_, interfaceObject_, initialFrame_, actions);
  if (loaded) {
    view_ = std::move(*loaded);
  } else {
    logWarning("A screen is empty: " + loaded.error().message + ".");
  }
}

void ViewController::setInterface(std::string name, std::string object) {
  interfaceName_ = std::move(name);
  interfaceObject_ = std::move(object);
}

void ViewController::setAction(std::string name, std::function<void()> action) {
  actions_[std::move(name)] = std::move(action);
}

void ViewController::viewWillAppear(bool) {}
void ViewController::viewDidAppear(bool) {}
void ViewController::viewWillDisappear(bool) {}
void ViewController::viewDidDisappear(bool) {}

bool ViewController::shouldAutorotateToInterfaceOrientation(InterfaceOrientation orientation) {
  return orientation == InterfaceOrientation::Portrait;
}

void ViewController::didRotateFromInterfaceOrientation(InterfaceOrientation) {}

InterfaceOrientation ViewController::interfaceOrientation() const {
  return window_ ? window_->orientation() : InterfaceOrientation::Portrait;
}

void ViewController::presentModalViewController(std::shared_ptr<ViewController> controller,
                                                bool animated) {
  assertMainThread();
  if (!controller || controller.get() == this || controller->window_ || modal_ || !window_) return;
  window_->present(*this, std::move(controller), animated);
}

void ViewController::dismissModalViewControllerAnimated(bool animated) {
  assertMainThread();
  if (modal_ && window_) window_->dismiss(*this, animated);
}

void ViewController::becomeFirstResponder() {
  if (view_) view_->becomeFirstResponder();
}

}  // namespace valdren::platform
