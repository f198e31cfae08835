// What the user's touches allow: pages may start other programs only after one.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/base/Seconds.h"

namespace valdren::platform {

/// An older touch allows nothing. The time covers a tap and a few redirects.
inline constexpr Seconds kTouchAllowsSeconds{5};

/// Each touch or key of the user in this application allows one launch of another program, soon
/// after it. Times are seconds of the monotonic clock.
class LaunchPermit {
 public:
  /// Names the touch that allowed a launch; 0 is none.
  using Touch = std::uint64_t;

  static LaunchPermit& shared();

  /// A finger, a mouse button or a key went down.
  void touched();
  /// It came up again. The time of a touch starts here, so holding does not use it up.
  void released();
  /// A control was activated. Without a recent touch or key, as with assistive programs, this
  /// counts as a touch.
  void activated();

  /// Whether there is a recent touch that no launch has used.
  bool isGiven() const;
  /// Uses the latest touch. Returns 0 when nothing is allowed; the first time after a touch, one
  /// log line then says that `wanted` was not opened.
  Touch use(std::string_view wanted);
  /// The launch failed: its touch allows another one, unless there was a later touch.
  void giveBack(Touch touch);

 private:
  Touch latest_ = 0;
  Seconds touchedAt_{0};
  bool isUsed_ = true;
  bool hasRefused_ = false;
};

}  // namespace valdren::platform
