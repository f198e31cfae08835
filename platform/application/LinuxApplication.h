// The running application on a Linux desktop or phone.
#pragma once

#include <map>
#include <memory>

#include "platform/application/Application.h"
#include "platform/application/MemoryWarnings.h"
#include "platform/base/RunLoop.h"

namespace valdren::platform {

/// The toolkit's application around the state: the product's own, or one that hosts the client.
class ApplicationAdapter {
 public:
  virtual ~ApplicationAdapter() = default;
  /// Keeps the process running without a window, or no longer. Called only when it changes.
  virtual void setHeld(bool held) = 0;
  /// Keeps the session from dimming and locking, or no longer. Called only when it changes.
  virtual void setIdleInhibited(bool inhibited) = 0;
};

/// The one owner of the application's state, its notices, its background tasks and its idle timer.
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

  /// Begins the life of an application; null ends it. The adapter is not owned. It is told at once
  /// what is in force.
  void setAdapter(ApplicationAdapter* adapter);

  /// Posts that the application has started, and from now on the system's memory warnings.
  void finishLaunching();
  /// Changes the state and posts the notices of the change. Nothing when the state is already in
  /// force.
  void enterBackground();
  void enterForeground();
  /// Goes to the background, posts that the application ends, and saves. Nothing the second time.
  void terminate();
  /// From now on the application stays in the background.
  void beginToEnd();
  /// Goes to the background, where background tasks get the time of an application without a
  /// window.
  void loseLastWindow();

  std::size_t backgroundTaskCount() const { return tasks_.size(); }

 private:
  LinuxApplication();
  void expireTasksAfter(Seconds delay);
  void expireTasks();

  void hold();
  void releaseWhenIdle();

  ApplicationAdapter* adapter_ = nullptr;
  ApplicationState state_ = ApplicationState::Active;
  bool isEnding_ = false;
  bool toldOfTheEnd_ = false;
  bool held_ = false;
  bool idleTimerDisabled_ = false;
  BackgroundTaskID lastTask_ = 0;
  std::map<BackgroundTaskID, std::function<void()>> tasks_;
  /// Runs while the application is in the background.
  std::unique_ptr<Timer> grant_;
  std::unique_ptr<MemoryWarnings> memory_;
};

}  // namespace valdren::platform
