#include "platform/application/LinuxApplication.h"

#include <utility>

#include "platform/base/Log.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/RunLoop.h"
#include "platform/device/Launches.h"
#include "platform/storage/UserDefaults.h"
#include "platform/ui/LaunchPermit.h"
#include "platform/ui/Window.h"

namespace valdren::platform {
namespace {

// The time that background tasks are granted: while the application is in the background, and at
// its end.
constexpr Seconds kSecondsOutOfSight{180};
constexpr Seconds kSecondsAtTheEnd{10};

void post(const char* name) {
  NotificationCenter::defaultCenter().postNotificationName(name, &Application::shared());
}

/// Whether the URL may be given to another program: it has a scheme and names no local file.
bool isForOthers(const URL& url) {
  const std::string scheme = url.lowercaseScheme();
  return !scheme.empty() && scheme != "file";
}

}  // namespace

Application& Application::standard() {
  return LinuxApplication::instance();
}

LinuxApplication::LinuxApplication() = default;

LinuxApplication& LinuxApplication::instance() {
  // Never destroyed: background tasks may end while the process ends.
  static auto* const application = new LinuxApplication;
  return *application;
}

void LinuxApplication::setAdapter(ApplicationAdapter* adapter) {
  adapter_ = adapter;
  if (!adapter) {
    memory_.reset();
    held_ = false;
    return;
  }
  isEnding_ = toldOfTheEnd_ = false;
  held_ = !tasks_.empty();
  if (held_) adapter_->setHeld(true);
  if (idleTimerDisabled_) adapter_->setIdleInhibited(true);
}

void LinuxApplication::finishLaunching() {
  memory_ = std::make_unique<MemoryWarnings>([] { post(kApplicationDidReceiveMemoryWarning); });
  post(kApplicationDidFinishLaunching);
}

void LinuxApplication::terminate() {
  if (std::exchange(toldOfTheEnd_, true)) return;
  enterBackground();
  post(kApplicationWillTerminate);
  UserDefaults::shared().flush();
}

bool LinuxApplication::isStatusBarHidden() const {
  const Window* window = Window::keyWindow();
  return !window || window->isStatusBarHidden();
}

void LinuxApplication::setStatusBarHidden(bool hidden) {
  if (Window* window = Window::keyWindow()) window->setStatusBarHidden(hidden);
}

double LinuxApplication::statusBarHeight() const {
  const Window* window = Window::keyWindow();
  return window ? window->statusBarHeight() : 0;
}

InterfaceOrientation LinuxApplication::statusBarOrientation() const {
  const Window* window = Window::keyWindow();
  return window ? window->orientation() : InterfaceOrientation::Portrait;
}

void LinuxApplication::setIdleTimerDisabled(bool disabled) {
  if (idleTimerDisabled_ == disabled) return;
  idleTimerDisabled_ = disabled;
  if (adapter_) adapter_->setIdleInhibited(disabled);
}

void LinuxApplication::openURL(const URL& url) {
  if (!isForOthers(url)) return logDebug("Not opened: " + url.absoluteString());
  // A URL without a handler does not use the touch, so that a page may try another one.
  auto& permit = LaunchPermit::shared();
  if (permit.isGiven() && !isInSandbox() && !hasHandler(url)) {
    return logDebug("Nothing opens the URL: " + url.absoluteString());
  }
  if (const LaunchPermit::Touch touch = permit.use(url.absoluteString())) launch(url, touch);
}

bool LinuxApplication::canOpenURL(const URL& url) const {
  return isForOthers(url) && hasHandler(url);
}

BackgroundTaskID LinuxApplication::beginBackgroundTask(std::function<void()> expired) {
  const BackgroundTaskID id = ++lastTask_;
  tasks_[id] = std::move(expired);
  hold();
  // A task that begins after the granted time gets the time of an ending application.
  if (state_ == ApplicationState::Background && !(grant_ && grant_->isValid())) {
    expireTasksAfter(kSecondsAtTheEnd);
  }
  return id;
}

void LinuxApplication::endBackgroundTask(BackgroundTaskID task) {
  const auto found = tasks_.find(task);
  if (found == tasks_.end()) return;
  // Destroying the closure may destroy other objects, which end other tasks.
  const std::function<void()> keptUntilReturn = std::move(found->second);
  tasks_.erase(found);
  if (tasks_.empty())
    RunLoop::shared().performAfterDelay(*this, kNextTurn, [this] { releaseWhenIdle(); });
}

void LinuxApplication::hold() {
  if (!held_ && adapter_) {
    held_ = true;
    adapter_->setHeld(true);
  }
}

void LinuxApplication::releaseWhenIdle() {
  if (held_ && tasks_.empty() && adapter_) {
    held_ = false;
    adapter_->setHeld(false);
  }
}

void LinuxApplication::beginToEnd() {
  isEnding_ = true;
  loseLastWindow();
}

void LinuxApplication::loseLastWindow() {
  enterBackground();
  expireTasksAfter(kSecondsAtTheEnd);
}

void LinuxApplication::expireTasksAfter(Seconds delay) {
  grant_ = RunLoop::shared().scheduleTimer(delay, [this] { expireTasks(); });
}

void LinuxApplication::expireTasks() {
  const BackgroundTaskID last = lastTask_;
  while (!tasks_.empty() && tasks_.begin()->first <= last) {
    const auto& [id, expired] = *tasks_.begin();
    const BackgroundTaskID task = id;
    const std::function<void()> keptUntilReturn = expired;
    if (keptUntilReturn) keptUntilReturn();
    endBackgroundTask(task);
  }
}

void LinuxApplication::enterBackground() {
  if (state_ == ApplicationState::Background) return;
  post(kApplicationWillResignActive);
  state_ = ApplicationState::Background;
  expireTasksAfter(kSecondsOutOfSight);
  post(kApplicationDidEnterBackground);
  // The system may stop applications in the background.
  UserDefaults::shared().synchronize();
  UserDefaults::shared().hasten();
}

void LinuxApplication::enterForeground() {
  if (state_ != ApplicationState::Background || isEnding_) return;
  grant_.reset();
  post(kApplicationWillEnterForeground);
  state_ = ApplicationState::Active;
  post(kApplicationDidBecomeActive);
}

}  // namespace valdren::platform
