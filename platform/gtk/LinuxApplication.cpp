#include "platform/gtk/LinuxApplication.h"

#include <gio/gio.h>

#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/RunLoop.h"
#include "platform/Window.h"

namespace platform {
namespace {

/// What the system grants a background task.
constexpr double kBackgroundSeconds = 10;

void post(const char* name) {
  NotificationCenter::defaultCenter().postNotificationName(name, &Application::shared());
}

void opened(GObject*, GAsyncResult* result, gpointer) {
  GError* error = nullptr;
  if (g_app_info_launch_default_for_uri_finish(result, &error)) return;
  logDebug(std::string("Nothing opened the URL: ") + error->message);
  g_error_free(error);
}

}  // namespace

struct LinuxApplication::Task {
  std::function<void()> expired;
  std::unique_ptr<Timer> timer;
};

Application& Application::standard() {
  return LinuxApplication::instance();
}

LinuxApplication::LinuxApplication() = default;

LinuxApplication& LinuxApplication::instance() {
  // Never destroyed: background tasks may end while the process does.
  static auto* const application = new LinuxApplication;
  return *application;
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
  if (inhibitor_) inhibitor_(disabled);
}

void LinuxApplication::setInhibitor(std::function<void(bool)> inhibitor) {
  inhibitor_ = std::move(inhibitor);
  if (inhibitor_ && idleTimerDisabled_) inhibitor_(true);
}

void LinuxApplication::openURL(const URL& url) {
  g_app_info_launch_default_for_uri_async(url.absoluteString().c_str(), nullptr, nullptr, opened,
                                          nullptr);
}

bool LinuxApplication::canOpenURL(const URL& url) const {
  const std::string scheme = url.lowercaseScheme();
  if (scheme.empty()) return false;
  GAppInfo* const handler = g_app_info_get_default_for_uri_scheme(scheme.c_str());
  if (handler) g_object_unref(handler);
  return handler != nullptr;
}

BackgroundTaskID LinuxApplication::beginBackgroundTask(std::function<void()> expired) {
  const BackgroundTaskID id = ++lastTask_;
  auto task = std::make_shared<Task>();
  task->expired = std::move(expired);
  task->timer = RunLoop::shared().scheduleTimer(kBackgroundSeconds, [this, id] {
    const auto found = tasks_.find(id);
    if (found == tasks_.end()) return;
    const std::shared_ptr<Task> keptUntilReturn = found->second;
    if (keptUntilReturn->expired) keptUntilReturn->expired();
    endBackgroundTask(id);
  });
  tasks_[id] = std::move(task);
  if (tasks_.size() == 1 && holder_) holder_(true);
  return id;
}

void LinuxApplication::endBackgroundTask(BackgroundTaskID task) {
  const auto found = tasks_.find(task);
  if (found == tasks_.end()) return;
  const std::shared_ptr<Task> keptUntilReturn = found->second;
  tasks_.erase(found);
  if (tasks_.empty() && holder_) holder_(false);
  if (tasks_.empty() && idle_)
    RunLoop::shared().performAfterDelay(*this, 0, [this] {
      if (tasks_.empty() && idle_) idle_();
    });
}

void LinuxApplication::enterBackground() {
  if (state_ == ApplicationState::Background) return;
  post(kApplicationWillResignActive);
  state_ = ApplicationState::Background;
  post(kApplicationDidEnterBackground);
}

void LinuxApplication::enterForeground() {
  if (state_ != ApplicationState::Background) return;
  post(kApplicationWillEnterForeground);
  state_ = ApplicationState::Active;
  post(kApplicationDidBecomeActive);
}

}  // namespace platform
