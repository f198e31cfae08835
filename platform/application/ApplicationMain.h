// Starts an application: its loop, its main interface file, its delegate.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/device/Device.h"
#include "platform/ui/Window.h"

namespace valdren::platform {

/// Receives the application's events. The window and the first screen are connected before
/// `applicationDidFinishLaunching`.
class ApplicationDelegate : public virtual WeakTarget {
 public:
  virtual ~ApplicationDelegate() = default;

  virtual void setWindow(std::shared_ptr<Window> window) = 0;
  virtual void setViewController(std::shared_ptr<ViewController> viewController) = 0;

  /// False ends the application.
  virtual bool applicationDidFinishLaunching() = 0;
  virtual void applicationWillResignActive() {}
  virtual void applicationDidEnterBackground() {}
  virtual void applicationWillEnterForeground() {}
  virtual void applicationDidBecomeActive() {}
  virtual void applicationWillTerminate() {}
  virtual void applicationDidReceiveMemoryWarning() {}
};

/// Describes an application.
struct ApplicationDescription {
  /// In reverse-domain form. A second instance with the same identifier brings the first to the
  /// front and ends.
  std::string identifier;
  std::string name;
  std::string version;
  /// What people should know of it, for the window that tells about it.
  std::string about;
  /// The text of the link to the folder where it keeps what it stores.
  std::string storedLabel;
  /// The resource path of "phone.ui", "tablet.ui", "style.css" and the icons.
  std::string resourceBase;
  /// Called first, in the instance that will show a window; may be empty.
  std::function<void()> starting;
  /// Makes the delegate.
  std::function<std::unique_ptr<ApplicationDelegate>()> makeDelegate;
  /// Makes a screen, by the class name that a main interface file gives as an object's id.
  std::map<std::string, std::function<std::shared_ptr<ViewController>()>> screens;

  /// The idiom to use; when absent, the device's.
  std::optional<InterfaceIdiom> idiom;
  /// Whether the window is wider than high at first; when absent, as usual for the idiom.
  std::optional<bool> landscape;
  /// Runs as an instance of its own, even when another one is running.
  bool alone = false;
  /// Called once the window is on the screen.
  std::function<void()> started;
};

/// Runs the application until its window is closed or it is told to end. Returns the exit status: 0
/// after a normal end, 1 without a display or when the interface files are broken (one line on
/// standard error says which).
int applicationMain(const ApplicationDescription& description);

/// Ends the running application with this exit status, once its background tasks are done. A second
/// call does not wait for them.
void terminateApplication(int status = 0);

/// Whether there is a display to open a window on.
bool hasDisplay();

}  // namespace valdren::platform
