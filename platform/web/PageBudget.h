// Limits how often a page may ask the application for something.
#pragma once

#include <cstddef>

namespace valdren::platform {

/// Each message costs the application time, and a long one costs more. A burst is free; after it
/// the rate is limited.
class PageBudget {
 public:
  static constexpr double kBurst = 500;
  static constexpr double kPerSecond = 200;
  /// This many bytes cost as much as one more message.
  static constexpr std::size_t kBytesOfOne = 8192;
  /// Above this many refusals the page is considered hostile.
  static constexpr double kPatience = 5000;

  /// Whether one more message of this size is within the limits. Its bytes are charged in any case,
  /// because they were already received.
  bool take(std::size_t bytes);
  /// The refusals since the page was last well within the limits.
  double refused() const { return refused_; }

 private:
  double left_ = kBurst;  // below 0 while the page is over its limit
  double since_ = -1;     // monotonic time; below 0 before the first message
  double refused_ = 0;
};

}  // namespace valdren::platform
