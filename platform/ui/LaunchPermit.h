// What the person's touches allow: pages ask for other programs, and only the person starts them.
#pragma once

#include <cstdint>
#include <string_view>

namespace valdren::platform {

/// A touch older than this, in seconds, allows nothing any more: long enough for a tap's way
/// through a few redirects.
inline constexpr double kTouchAllowsSeconds = 5;

/// Each touch or key of the person in this application allows one other program to be started, soon
/// after it. Seconds are those of the monotonic clock.
class LaunchPermit {
 public:
  /// Names the touch that allowed a launch; 0 is none.
  using Touch = std::uint64_t;

  static LaunchPermit& shared();

  /// A finger, a button or a key has gone down.
  void touched();
  /// It has come up again. Holding it does not use up its time.
  void released();
  /// A control has been activated: by the touch or key just told, or by none, as assistive programs
  /// do, which counts as a touch of its own.
  void activated();

  /// Whether there is a touch of late that no launch has used.
  bool isGiven() const;
  /// Uses up the latest touch. Gives 0 when nothing is allowed; the first time after a touch, one
  /// line then says that `wanted` was not opened.
  Touch use(std::string_view wanted);
  /// The launch came to nothing: its touch allows another, unless a later one has come.
  void giveBack(Touch touch);

 private:
  Touch latest_ = 0;
  double touchedAt_ = 0;
  bool isUsed_ = true;
  bool hasRefused_ = false;
};

}  // namespace valdren::platform
