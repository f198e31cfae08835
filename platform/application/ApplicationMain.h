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

/// Receives the application's life. The window and the first screen are connected before
/// `applicationDidFinishLaunching`.
class ApplicationDelegate : public virtual Trackable {
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

/// What an application is made of.
struct ApplicationDescription {
  /// In reverse-domain form. A second instance with the same identifier brings the first to the
  /// front and ends.
  std::string identifier;
  std::string name;
  std::string version;
  /// Where "phone.ui", "tablet.ui", "style.css" and icons lie in the program's resources.
  std::string resourceBase;
  /// Called first of all, in the instance that is going to show a window; may be empty.
  std::function<void()> starting;
  /// Makes the delegate.
  std::function<std::unique_ptr<ApplicationDelegate>()> makeDelegate;
  /// Makes a screen by the class name that a main interface file gives as an object's id.
  std::map<std::string, std::function<std::shared_ptr<ViewController>()>> screens;

  /// The idiom to use; when absent, the device's.
  std::optional<InterfaceIdiom> idiom;
  /// The window is wider than high at first; when absent, as is usual for the idiom.
  std::optional<bool> landscape;
  /// Runs as an instance of its own, whatever else is running.
  bool alone = false;
  /// Called once the window is on the screen.
  std::function<void()> started;
};

/// Runs the application until its window is closed or it is told to end. Gives the exit status: 0
/// after an ordinary end, 1 when there is no display or the interface files are broken (one line on
/// standard error says which).
int applicationMain(const ApplicationDescription& description);

/// Ends the running application in order, with this exit status, once its background tasks are
/// done. Called again, it ends without waiting for them.
void terminateApplication(int status = 0);

/// Whether there is a display to open a window on.
bool hasDisplay();

}  // namespace valdren::platform
