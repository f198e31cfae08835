// A running application without a window. A test sets its state and reads the recorded calls.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/application/Application.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// Replaces the application while it exists.
class FakeApplication final : public platform::Application {
 public:
  platform::ApplicationState state = platform::ApplicationState::Active;
  platform::InterfaceOrientation orientation = platform::InterfaceOrientation::Portrait;
  /// Height of the status bar while it shows, in points.
  double barHeight = 20;
  /// The URLs for which `canOpenURL` is true.
  std::set<std::string> openableURLs;
  /// The schemes for which `canOpenURL` is true, in lower case.
  std::set<std::string> openableSchemes;
  /// The opened URLs, in order.
  std::vector<std::string> openedURLs;
  /// Whether background tasks are granted.
  bool grantsBackgroundTasks = true;
  /// Every change of the status bar, in order.
  std::vector<bool> statusBarChanges;

  platform::ApplicationState applicationState() const override { return state; }

  bool isStatusBarHidden() const override { return statusBarHidden_; }
  void setStatusBarHidden(bool hidden) override;
  double statusBarHeight() const override { return statusBarHidden_ ? 0 : barHeight; }
  platform::InterfaceOrientation statusBarOrientation() const override { return orientation; }

  bool isIdleTimerDisabled() const override { return idleTimerDisabled_; }
  void setIdleTimerDisabled(bool disabled) override { idleTimerDisabled_ = disabled; }

  void openURL(const platform::URL& url) override;
  bool canOpenURL(const platform::URL& url) const override;

  platform::BackgroundTaskID beginBackgroundTask(std::function<void()> expired) override;
  void endBackgroundTask(platform::BackgroundTaskID task) override;

  /// The number of running background tasks.
  std::size_t runningTasks() const { return tasks_.size(); }
  /// Ends all running tasks, as the system does when their time is over.
  void expireBackgroundTasks();

  /// Posts one of the application's notices, with this application as the object.
  void post(const char* notice);
  /// Changes the state and posts the system's notices.
  void enterBackground();
  void enterForeground();

 private:
  bool statusBarHidden_ = false;
  bool idleTimerDisabled_ = false;
  platform::BackgroundTaskID lastTask_ = 0;
  std::map<platform::BackgroundTaskID, std::function<void()>> tasks_;
  platform::Application::Replacement replacement_{*this};
};

}  // namespace quorbel_tests
