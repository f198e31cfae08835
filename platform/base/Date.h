// A point in time, as applications pass it on and store it.
#pragma once

#include <compare>

#include "platform/base/Export.h"
#include "platform/base/Seconds.h"

namespace valdren::platform {

/// Seconds between 1 January 1970 and 1 January 2001, both UTC.
inline constexpr double kSecondsFrom1970To2001 = 978307200.0;

/// An instant, in seconds since 1 January 1970 UTC.
class VALDREN_EXPORT Date {
 public:
  Date() = default;
  explicit constexpr Date(double secondsSince1970) : seconds_(secondsSince1970) {}

  /// The present instant by `Clock::shared()`.
  static Date now();

  constexpr double secondsSince1970() const { return seconds_; }
  constexpr double secondsSince2001() const { return seconds_ - kSecondsFrom1970To2001; }
  constexpr Date after(Seconds span) const { return Date(seconds_ + span.count()); }

  auto operator<=>(const Date&) const = default;

 private:
  double seconds_ = 0;
};

}  // namespace valdren::platform
