// How often a page may ask the application for something.
#pragma once

namespace platform {

/// A page may send message after message, and each costs the application's time. A burst is free;
/// after it only so many a second.
class PageBudget {
 public:
  static constexpr double kBurst = 500;
  static constexpr double kPerSecond = 200;
  /// A page that goes on for so long means harm.
  static constexpr unsigned kPatience = 5000;

  /// Whether one more is within bounds now.
  bool take();
  /// How many were refused since the page last kept well within bounds.
  unsigned refused() const { return refused_; }

 private:
  double left_ = kBurst;
  double since_ = -1;  // monotonic; below 0 before the first
  unsigned refused_ = 0;
};

}  // namespace platform
