// How often a page may ask the application for something.
#pragma once

#include <cstddef>

namespace valdren::platform {

/// A page may send message after message, and each costs the application's time, a long one more
/// than a short one. A burst is free; after it only so much a second.
class PageBudget {
 public:
  static constexpr double kBurst = 500;
  static constexpr double kPerSecond = 200;
  /// So many bytes cost as much as one message more.
  static constexpr std::size_t kBytesOfOne = 8192;
  /// A page that goes on for so long means harm.
  static constexpr double kPatience = 5000;

  /// Whether one more of so many bytes is within bounds now. Its bytes are paid for in any case:
  /// they had to be carried here.
  bool take(std::size_t bytes);
  /// What was refused since the page last kept well within bounds.
  double refused() const { return refused_; }

 private:
  double left_ = kBurst;  // below 0 while the page pays for what it sent
  double since_ = -1;     // monotonic; below 0 before the first
  double refused_ = 0;
};

}  // namespace valdren::platform
