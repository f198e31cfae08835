// The running application on a Linux desktop or phone.
#pragma once

#include <map>
#include <memory>

#include "platform/application/Application.h"
#include "platform/base/RunLoop.h"

namespace valdren::platform {

/// Works without a window and before the toolkit is started: then the state is active, there is no
/// status bar, and only questions to the system are answered.
class LinuxApplication final : public Application, public WeakTarget {
 public:
  static LinuxApplication& instance();

  ApplicationState applicationState() const override { return state_; }
  bool isStatusBarHidden() const override;
  void setStatusBarHidden(bool hidden) override;
  double statusBarHeight() const override;
  InterfaceOrientation statusBarOrientation() const override;
  bool isIdleTimerDisabled() const override { return idleTimerDisabled_; }
  void setIdleTimerDisabled(bool disabled) override;
  void openURL(const URL& url) override;
  bool canOpenURL(const URL& url) const override;
  BackgroundTaskID beginBackgroundTask(std::function<void()> expired) override;
  void endBackgroundTask(BackgroundTaskID task) override;

  /// Changes the state and posts the notices of the change. Nothing when the state is already in
  /// force.
  void enterBackground();
  void enterForeground();
  /// From now on the application stays in the background, and background tasks get the time of an
  /// ending application.
  void beginToEnd();

  std::size_t backgroundTaskCount() const { return tasks_.size(); }
  /// Called when the last background task has ended.
  void setIdleHandler(std::function<void()> idle) { idle_ = std::move(idle); }

  /// Called with true while the session may not dim and lock.
  void setInhibitor(std::function<void(bool inhibited)> inhibitor);

 private:
  LinuxApplication();
  void expireTasksAfter(Seconds delay);
  void expireTasks();

  ApplicationState state_ = ApplicationState::Active;
  bool isEnding_ = false;
  bool idleTimerDisabled_ = false;
  BackgroundTaskID lastTask_ = 0;
  std::map<BackgroundTaskID, std::function<void()>> tasks_;
  /// Runs while the application is in the background.
  std::unique_ptr<Timer> grant_;
  std::function<void()> idle_;
  std::function<void(bool)> inhibitor_;
};

}  // namespace valdren::platform
