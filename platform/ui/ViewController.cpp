#include "platform/ui/ViewController.h"

#include "platform/base/Log.h"
#include "platform/base/MainThread.h"
#include "platform/ui/InterfaceView.h"
#include "platform/ui/ViewControllerMembers.h"
#include "platform/ui/Window.h"

namespace valdren::platform {

ViewController::ViewController() : members_(std::make_unique<Members>()) {
  assertMainThread();
}

ViewController::~ViewController() {
  assertMainThread();
  invalidateWeakReferences();
}

const std::shared_ptr<View>& ViewController::view() {
  assertMainThread();
  if (!members_->view) {
    loadView();
    if (!members_->view) members_->view = std::make_shared<View>(members_->initialFrame);
    viewDidLoad();
  }
  return members_->view;
}

bool ViewController::isViewLoaded() const {
  return members_->view != nullptr;
}

void ViewController::setView(std::shared_ptr<View> view) {
  members_->view = std::move(view);
}

void ViewController::setInitialFrame(const Rect& frame) {
  members_->initialFrame = frame;
}

ModalTransitionStyle ViewController::modalTransitionStyle() const {
  return members_->transitionStyle;
}

void ViewController::setModalTransitionStyle(ModalTransitionStyle style) {
  members_->transitionStyle = style;
}

ModalPresentationStyle ViewController::modalPresentationStyle() const {
  return members_->presentationStyle;
}

void ViewController::setModalPresentationStyle(ModalPresentationStyle style) {
  members_->presentationStyle = style;
}

const std::shared_ptr<ViewController>& ViewController::modalViewController() const {
  return members_->modal;
}

ViewController* ViewController::presentingViewController() const {
  return members_->presenting.get();
}

Window* ViewController::window() const {
  return members_->window.get();
}

void ViewController::loadView() {
  if (members_->interfaceName.empty()) return;
  // The view may outlive this screen.
  InterfaceView::Actions actions;
  for (const auto& [name, action] : members_->actions) actions[name] = whileAlive(*this, action);
  auto loaded = InterfaceView::load(members_->interfaceName, members_->interfaceObject,
                                    members_->initialFrame, actions);
  if (loaded) {
    members_->view = std::move(*loaded);
  } else {
    logWarning("A screen is empty: " + loaded.error().message + ".");
  }
}

void ViewController::setInterface(std::string name, std::string object) {
  members_->interfaceName = std::move(name);
  members_->interfaceObject = std::move(object);
}

void ViewController::setAction(std::string name, std::function<void()> action) {
  members_->actions[std::move(name)] = std::move(action);
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
  return members_->window ? members_->window->orientation() : InterfaceOrientation::Portrait;
}

void ViewController::presentModalViewController(std::shared_ptr<ViewController> controller,
                                                bool animated) {
  assertMainThread();
  if (!controller || controller.get() == this || controller->members_->window || members_->modal ||
      !members_->window)
    return;
  members_->window->present(*this, std::move(controller), animated);
}

void ViewController::dismissModalViewControllerAnimated(bool animated) {
  assertMainThread();
  if (members_->modal && members_->window) members_->window->dismiss(*this, animated);
}

void ViewController::becomeFirstResponder() {
  if (members_->view) members_->view->becomeFirstResponder();
}

}  // namespace valdren::platform
