// Time of day and elapsed time.
#pragma once

#include "platform/base/Date.h"
#include "platform/base/Shared.h"

namespace valdren::platform {

class Clock : public Shared<Clock> {
 public:
  static Clock& standard();
  virtual ~Clock() = default;

  /// The time of day. May jump when the person or the network sets the clock.
  virtual Date now() const = 0;

  /// The time on a clock that never goes back, counted from the machine's start; greater than 0.
  virtual Seconds monotonicTime() const = 0;
};

}  // namespace valdren::platform
