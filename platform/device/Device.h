// The machine that this runs on.
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

  /// The product's name, from the device tree or the firmware; "Linux" when neither tells.
  virtual std::string model() const = 0;
  /// Dotted numbers, from os-release when they are those of a whole system (3 and above), or else
  /// the kernel's.
  virtual std::string systemVersion() const = 0;
  /// Stable for this machine, user and application, different for any other; it reveals none of
  /// them. The machine's own id never leaves this class.
  virtual std::string uniqueIdentifier() const = 0;
  /// The hardware name that `uname` gives, such as x86_64.
  virtual std::string machine() const = 0;
  /// None when it cannot be told.
  virtual std::optional<InterfaceIdiom> userInterfaceIdiom() const = 0;
  /// The person's languages, most wanted first, as "en" or "pt-PT"; empty when none is set.
  virtual std::vector<std::string> preferredLanguages() const = 0;
  /// Whether this process has the superuser's rights, so that nothing on the machine is out of its
  /// reach.
  virtual bool hasSuperuserRights() const { return false; }
};

class Screen : public Shared<Screen> {
 public:
  static Screen& standard();
  virtual ~Screen() = default;

  /// Pixels a point; none when it cannot be told.
  virtual std::optional<double> scale() const = 0;
  /// The part of the screen that is the application's: the window's content without the status bar.
  virtual Rect applicationFrame() const = 0;
  /// Calls `task` once the window has got the size that it keeps, so that what is asked here tells
  /// what the person sees: at once where it has, else later, one second after its launch at most.
  /// Destroying the timer cancels the call; it is null where the call was made at once.
  virtual std::unique_ptr<Timer> whenSettled(std::function<void()> task) = 0;
};

}  // namespace valdren::platform
