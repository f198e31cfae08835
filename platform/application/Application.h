// The running application: state, notices, status bar, and requests to the system.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/base/Shared.h"
#include "platform/base/URL.h"
#include "platform/ui/ViewController.h"

namespace valdren::platform {

// Posted on `NotificationCenter::defaultCenter()` with the application as object.
inline constexpr const char* kApplicationDidFinishLaunching = "ApplicationDidFinishLaunching";
inline constexpr const char* kApplicationWillResignActive = "ApplicationWillResignActive";
inline constexpr const char* kApplicationDidBecomeActive = "ApplicationDidBecomeActive";
inline constexpr const char* kApplicationDidEnterBackground = "ApplicationDidEnterBackground";
inline constexpr const char* kApplicationWillEnterForeground = "ApplicationWillEnterForeground";
inline constexpr const char* kApplicationWillTerminate = "ApplicationWillTerminate";
inline constexpr const char* kApplicationDidReceiveMemoryWarning =
    "ApplicationDidReceiveMemoryWarning";

enum class ApplicationState : int { Active = 0, Inactive = 1, Background = 2 };

/// Names a background task; 0 is none.
using BackgroundTaskID = std::uint64_t;

class Application : public Shared<Application> {
 public:
  static Application& standard();
  virtual ~Application() = default;

  virtual ApplicationState applicationState() const = 0;

  virtual bool isStatusBarHidden() const = 0;
  virtual void setStatusBarHidden(bool hidden) = 0;
  /// Points; 0 while hidden.
  virtual double statusBarHeight() const = 0;
  virtual InterfaceOrientation statusBarOrientation() const = 0;

  /// While disabled, the session neither dims nor locks when there is no input.
  virtual bool isIdleTimerDisabled() const = 0;
  virtual void setIdleTimerDisabled(bool disabled) = 0;

  /// Asks the system to open the URL with the handler of its scheme, never through a shell and
  /// without waiting. One debug line when nothing does. Local files are never opened, and nothing
  /// is opened without a recent touch or key of the user that no other launch has used (see
  /// `LaunchPermit`).
  virtual void openURL(const URL& url) = 0;
  /// Whether something on this system handles the URL's scheme. Blocks only for a look-up in the
  /// local database.
  virtual bool canOpenURL(const URL& url) const = 0;

  /// Keeps the application running until the task is ended, even when its last window is closed. In
  /// the background the system grants a task three minutes (ten seconds when the window was
  /// closed); then `expired` is called once and the task ends. In the foreground there is no limit.
  /// An application that is told to quit ends at once.
  virtual BackgroundTaskID beginBackgroundTask(std::function<void()> expired) = 0;
  /// Ends a task; 0 and ended ones are ignored.
  virtual void endBackgroundTask(BackgroundTaskID task) = 0;
};

}  // namespace valdren::platform
