// The machine that the application runs on.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/base/Shared.h"
#include "platform/ui/Geometry.h"

namespace valdren::platform {

class Timer;

enum class InterfaceIdiom : int { Phone = 0, Tablet = 1 };

class Device : public Shared<Device> {
 public:
  static Device& standard();
  virtual ~Device() = default;

  /// The product's name, from the device tree or the firmware; "Linux" when neither has one.
  virtual std::string model() const = 0;
  /// Dotted numbers: the version in os-release if it is 3 or above, else the kernel's.
  virtual std::string systemVersion() const = 0;
  /// Stable for this machine, user and application, different for any other, and not traceable to
  /// any of them. The machine's own id never leaves this class.
  virtual std::string uniqueIdentifier() const = 0;
  /// The hardware name that `uname` gives, such as x86_64.
  virtual std::string machine() const = 0;
  /// None when it is unknown.
  virtual std::optional<InterfaceIdiom> userInterfaceIdiom() const = 0;
  /// The user's languages, preferred first, as "en" or "pt-PT"; empty when none is set.
  virtual std::vector<std::string> preferredLanguages() const = 0;
  /// Whether this process runs as the superuser.
  virtual bool hasSuperuserRights() const { return false; }
};

class Screen : public Shared<Screen> {
 public:
  static Screen& standard();
  virtual ~Screen() = default;

  /// Pixels per point; none when it is unknown.
  virtual std::optional<double> scale() const = 0;
  /// The application's part of the screen: the window's content without the status bar.
  virtual Rect applicationFrame() const = 0;
  /// Calls `task` once the window has its final size, so that this class reports what the user
  /// sees: at once if it has, else later, at most one second after the launch. Destroying the timer
  /// cancels the call. The timer is null when the call was made at once.
  virtual std::unique_ptr<Timer> whenSettled(std::function<void()> task) = 0;
};

}  // namespace valdren::platform
