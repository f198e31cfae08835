#include "ads/screens/VADViewController.h"

#include "ads/protocol/Messages.h"
#include "ads/request/VADIdentifierUtilities.h"
#include "ads/screens/VADViewControllerPrivate.h"
#include "ads/support/VADPrivateUtilities.h"
#include "ads/telemetry/VADStatistics.h"
#include "ads/web/VADAdEvents.h"
#include "ads/web/VADNotificationCenter.h"
#include "platform/application/Application.h"
#include "platform/base/KeptUntilReturn.h"
#include "platform/base/Log.h"
#include "platform/base/MainThread.h"
#include "platform/base/RunLoop.h"
#include "platform/ui/Window.h"

namespace valdren {
namespace {

/// When the appearance is reported after presenting over a screen in a window without a root.
constexpr platform::Seconds kAppearanceSeconds{0.6};
/// A chain of pages that open each other must end somewhere.
constexpr int kMostNestedScreens = 16;

bool isVADViewController(const platform::ViewController* controller) {
  return dynamic_cast<const VADViewController*>(controller) != nullptr;
}

int screensUpTo(const platform::ViewController& top) {
  int count = 0;
  for (const platform::ViewController* each = &top; each; each = each->presentingViewController()) {
    count += isVADViewController(each);
  }
  return count;
}

/// Screens that do not fill the display leave the status bar alone, on systems that know such.
bool controlsStatusBar(const VADViewController& screen) {
  return !VADIdentifierUtilities::isOSAtLeastMajor(3, 2, 0) ||
         screen.modalPresentationStyle() == platform::ModalPresentationStyle::FullScreen;
}

void post(const char* name, const VADViewController& screen) {
  const platform::ViewController& object = screen;
  platform::NotificationCenter::defaultCenter().postNotificationName(name, &object);
}

platform::ViewController* keyRootViewController() {
  platform::Window* const window = platform::Window::keyWindow();
  return window ? window->rootViewController().get() : nullptr;
}

bool isFree(const platform::ViewController& controller) {
  return controller.window() && !controller.modalViewController();
}

/// Whether whoever presented the screen still does; one that is only covered is not gone.
bool isPresented(const platform::ViewController& screen) {
  const platform::ViewController* const presenter = screen.presentingViewController();
  return presenter && presenter->modalViewController().get() == &screen;
}

}  // namespace

std::shared_ptr<VADViewController> VADViewController::create() {
  return initialized(std::shared_ptr<VADViewController>(new VADViewController));
}

VADViewController::VADViewController() = default;

VADViewController::~VADViewController() {
  invalidateWeakReferences();
  if (!private_) return;
  const auto manager = private_->delegateManager;
  if (isFirstVADViewController() && !private_->refused && manager) manager->didDismissScreen();
  VADNotificationCenter::defaultCenter().removeObserver(*this);
  VADPrivateUtilities::removePrivateObjectForKey(this);
}

std::shared_ptr<VADViewControllerPrivate> VADViewController::createPrivateData() {
  return std::make_shared<VADViewControllerPrivate>();
}

void VADViewController::init() {
  const std::shared_ptr<VADViewControllerPrivate> companion = createPrivateData();
  private_ = companion.get();
  VADPrivateUtilities::setPrivateObject(companion, this);
  private_->supportedOrientations = kVADOrientationAny;

  const std::shared_ptr<platform::View> view = this->view();
  view->setAutoresizingMask(platform::kFlexibleWidth | platform::kFlexibleHeight);
  view->setOpaque(true);
  view->setBackgroundColor(platform::Color::black());
  view->setClipsToBounds(true);
  setModalTransitionStyle(platform::ModalTransitionStyle::CoverVertical);
  VADNotificationCenter::defaultCenter().addObserver(
      *this, kVADMessageSettings,
      [this](const platform::Notification& note) { settingsChanged(note); }, view.get());
}

void VADViewController::settingsChanged(const platform::Notification& notification) {
  std::string orientations;
  if (notification.userInfo) {
    const std::string* const text =
        notification.userInfo->text(kVADMessageKeySupportedOrientations);
    if (text) orientations = *text;
  }
  setSupportedOrientations(orientationFromString(orientations));
}

VADOrientationCode VADViewController::orientationFromString(std::string_view text) {
  if (text == "any") return kVADOrientationAny;
  if (text == "portrait") return kVADOrientationPortrait;
  if (text == "landscape") return kVADOrientationLandscape;
  return kVADOrientationUnknown;
}

void VADViewController::presentFromViewController(platform::ViewController* host) {
  platform::assertMainThread();
  if (!host) {
    platform::log("<Valdren> No UIViewController supplied to the ad.  Cannot continue.");
    return;
  }
  if (private_->retained) return;
  private_->first = !isVADViewController(host);
  // Of several windows, it is the ad's own that counts from here on.
  if (platform::Window* const own = private_->first ? host->window() : nullptr) own->makeKey();
  private_->refused = !canPresentOver(*host);
  if (private_->refused) {
    platform::logDebug("A full-screen ad could not be shown over the present screen.");
    return;
  }
  const platform::WeakPtr<platform::ViewController> weakHost = host;
  view()->setUserInteractionEnabled(false);
  private_->retained = std::static_pointer_cast<VADViewController>(shared_from_this());
  const platform::KeptUntilReturn kept(*this);
  post(kVADViewControllerWillPresentFullScreen, *this);
  if (private_->first) {
    private_->interactingWithParent = true;
    if (const auto manager = private_->delegateManager) manager->willPresentScreen();
    takeOverDisplay();
    if (weakHost) presentSelfFrom(*weakHost.get());
  } else {
    private_->interactingWithParent = false;
    if (weakHost) weakHost->presentModalViewController(shared_from_this(), true);
  }
  // What was told may have taken the host away, or shown something else.
  if (!presentingViewController()) relinquishScreen();
}

void VADViewController::presentSelfFrom(platform::ViewController& host) {
  platform::ViewController* const root = keyRootViewController();
  if (root && isFree(*root)) {
    root->presentModalViewController(shared_from_this(), true);
    return;
  }
  host.presentModalViewController(shared_from_this(), true);
  platform::RunLoop::shared().performAfterDelay(*this, kAppearanceSeconds,
                                                [this] { viewDidAppear(false); });
}

bool VADViewController::canPresentOver(platform::ViewController& host) const {
  if (screensUpTo(host) >= kMostNestedScreens) return false;
  if (const auto* const screen = dynamic_cast<const VADViewController*>(&host)) {
    // One on its way out still has its window.
    return isFree(host) && screen->private_->retained;
  }
  const platform::ViewController* const root = keyRootViewController();
  return (root && isFree(*root)) || isFree(host);
}

void VADViewController::takeOverDisplay() {
  platform::Application& application = platform::Application::shared();
  if (controlsStatusBar(*this)) {
    private_->statusBarWasHidden = application.isStatusBarHidden();
    if (!private_->statusBarWasHidden) application.setStatusBarHidden(true);
  }
  private_->publisherIdleTimerDisabled = application.isIdleTimerDisabled();
  application.setIdleTimerDisabled(true);
}

void VADViewController::giveDisplayBack() {
  platform::Application& application = platform::Application::shared();
  if (controlsStatusBar(*this) && !private_->statusBarWasHidden) {
    application.setStatusBarHidden(false);
  }
  application.setIdleTimerDisabled(private_->publisherIdleTimerDisabled);
}

void VADViewController::relinquishScreen() {
  platform::assertMainThread();
  if (!private_->retained) return;
  const platform::KeptUntilReturn kept(*this);
  letGo();
  const platform::WeakPtr<platform::ViewController> presenter = presentingViewController();
  if (isFirstVADViewController()) {
    private_->interactingWithParent = true;
    if (const auto manager = private_->delegateManager) manager->willDismissScreen();
    giveDisplayBack();
  } else {
    private_->interactingWithParent = false;
  }
  endNestedScreens();
  if (presenter) presenter->dismissModalViewControllerAnimated(true);
  post(kVADViewControllerDidRelinquishFullScreen, *this);
}

/// Balances the reference of presenting; the screen lives on until it is off the display.
void VADViewController::letGo() {
  view()->setUserInteractionEnabled(false);
  platform::RunLoop::shared().cancelPerformRequests(*this);
  platform::RunLoop::shared().autorelease(std::move(private_->retained));
}

/// Those above this one go with it.
void VADViewController::endNestedScreens() {
  for (auto above = modalViewController(); above; above = above->modalViewController()) {
    auto* const screen = dynamic_cast<VADViewController*>(above.get());
    if (!screen || !screen->private_->retained) continue;
    screen->letGo();
    post(kVADViewControllerDidRelinquishFullScreen, *screen);
  }
}

/// For a screen that somebody else took off the display, and for the covered ones below it that
/// went along.
void VADViewController::endRemovedScreen() {
  const platform::KeptUntilReturn kept(*this);
  letGo();
  if (isFirstVADViewController()) {
    private_->interactingWithParent = true;
    if (const auto manager = private_->delegateManager) manager->willDismissScreen();
    giveDisplayBack();
  }
  post(kVADViewControllerDidRelinquishFullScreen, *this);
  auto* const below = dynamic_cast<VADViewController*>(presentingViewController());
  if (below && !below->window() && below->private_->retained) below->endRemovedScreen();
}

bool VADViewController::isFirstVADViewController() const {
  if (const platform::ViewController* presenter = presentingViewController()) {
    return !isVADViewController(presenter);
  }
  return private_->first;
}

int VADViewController::supportedOrientations() const {
  return private_->supportedOrientations;
}
void VADViewController::setSupportedOrientations(int code) {
  private_->supportedOrientations = code;
}
platform::WebView* VADViewController::openingWebView() const {
  return private_->openingWebView.get();
}
void VADViewController::setOpeningWebView(platform::WeakPtr<platform::WebView> webView) {
  private_->openingWebView = webView;
}
const std::shared_ptr<VADAdEvents>& VADViewController::delegateManager() const {
  return private_->delegateManager;
}
void VADViewController::setDelegateManager(std::shared_ptr<VADAdEvents> manager) {
  private_->delegateManager = std::move(manager);
}
bool VADViewController::statusBarWasHidden() const {
  return private_->statusBarWasHidden;
}
void VADViewController::setStatusBarWasHidden(bool hidden) {
  private_->statusBarWasHidden = hidden;
}

bool VADViewController::shouldAutorotateToInterfaceOrientation(
    platform::InterfaceOrientation orientation) {
  switch (private_->supportedOrientations) {
    case kVADOrientationPortrait:
      return orientation == platform::InterfaceOrientation::Portrait ||
             orientation == platform::InterfaceOrientation::PortraitUpsideDown;
    case kVADOrientationLandscape: return platform::isLandscape(orientation);
    default: return true;
  }
}

void VADViewController::viewDidAppear(bool animated) {
  // Once a presentation, and not when a screen that is being closed comes to the end of its rise.
  if (!private_->retained || view()->isUserInteractionEnabled()) return;
  ViewController::viewDidAppear(animated);
  view()->setUserInteractionEnabled(true);
  becomeFirstResponder();
  if (isFirstVADViewController()) private_->interactingWithParent = false;
}

void VADViewController::viewDidDisappear(bool animated) {
  ViewController::viewDidDisappear(animated);
  VADStatistics& statistics = VADStatistics::sharedStatistics();
  statistics.endTimingNamed(kVADParameterPriorLandingPageDuration);
  statistics.endTimingNamed(kVADParameterPriorClickLatency);
  if (private_->retained && !isPresented(*this)) endRemovedScreen();
  if (!isFirstVADViewController() || !private_->interactingWithParent) return;
  private_->interactingWithParent = false;
  const auto manager = private_->delegateManager;
  if (private_->appClosing && manager) manager->willLeaveApplication();
}

bool VADViewController::cancelPressed() {
  relinquishScreen();
  return true;
}

bool VADViewController::backPressed() {
  relinquishScreen();
  return true;
}

}  // namespace valdren
