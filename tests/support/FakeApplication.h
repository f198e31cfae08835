// A running application without a window: its state is what a test sets, and what it is asked to do
// is recorded.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/application/Application.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// In force from its construction to its destruction.
class FakeApplication final : public platform::Application {
 public:
  platform::ApplicationState state = platform::ApplicationState::Active;
  platform::InterfaceOrientation orientation = platform::InterfaceOrientation::Portrait;
  /// Height of the status bar while it shows, in points.
  double barHeight = 20;
  /// Exactly the URLs that `canOpenURL` says yes to.
  std::set<std::string> openableURLs;
  /// The schemes that `canOpenURL` says yes to, in lower case.
  std::set<std::string> openableSchemes;
  /// The URLs that were to be opened, in order.
  std::vector<std::string> openedURLs;
  /// Whether the system holds an application open for its background tasks.
  bool grantsBackgroundTasks = true;
  /// Called from `openURL`, after it is recorded.
  std::function<void(const platform::URL&)> onOpen;
  /// Every change of the idle timer and of the status bar, in order.
  std::vector<bool> idleTimerChanges;
  std::vector<bool> statusBarChanges;

  platform::ApplicationState applicationState() const override { return state; }

  bool isStatusBarHidden() const override { return statusBarHidden_; }
  void setStatusBarHidden(bool hidden) override;
  double statusBarHeight() const override { return statusBarHidden_ ? 0 : barHeight; }
  platform::InterfaceOrientation statusBarOrientation() const override { return orientation; }

  bool isIdleTimerDisabled() const override { return idleTimerDisabled_; }
  void setIdleTimerDisabled(bool disabled) override;

  void openURL(const platform::URL& url) override;
  bool canOpenURL(const platform::URL& url) const override;

  platform::BackgroundTaskID beginBackgroundTask(std::function<void()> expired) override;
  void endBackgroundTask(platform::BackgroundTaskID task) override;

  /// How many background tasks run; how many were ever begun.
  std::size_t runningTasks() const { return tasks_.size(); }
  std::size_t begunTasks() const { return lastTask_; }
  /// The system's patience ends: every running task ends by itself and is told so.
  void expireBackgroundTasks();

  /// Posts one of the application's notices, with this application as the object.
  void post(const char* notice);
  /// Changes the state and posts what the system posts on the way.
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
