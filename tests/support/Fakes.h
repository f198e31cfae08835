// Stand-ins for the platform's clock and run loop, so that a test says when time passes.
#pragma once

#include <map>

#include "platform/base/Clock.h"
#include "platform/base/RunLoop.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// A clock that stands still until it is told to move. Begins at 1 January 2020 UTC, 1000 seconds
/// after the machine's start.
class FakeClock final : public platform::Clock {
 public:
  platform::Date now() const override { return platform::Date(seconds_); }
  double monotonicSeconds() const override { return monotonic_; }

  void advance(double seconds) {
    seconds_ += seconds;
    monotonic_ += seconds;
  }
  void setNow(double secondsSince1970) { seconds_ = secondsSince1970; }

 private:
  double seconds_ = 1577836800.0;
  double monotonic_ = 1000.0;
  platform::Clock::Replacement replacement_{*this};
};

/// A run loop that turns only when it is told to. With a clock, moves that clock along.
class FakeRunLoop final : public platform::RunLoop {
 public:
  explicit FakeRunLoop(FakeClock* clock = nullptr) : clock_(clock) {}

  bool isMainThread() const override { return true; }
  void performOnMainThreadAndWait(const Task& task) override { task(); }

  /// Lets `seconds` pass, running what falls due, in the order of due times. 0 is one turn: calls
  /// that a turn adds with delay 0 wait for the next.
  void advance(double seconds);
  /// The calls that wait.
  std::size_t pendingCount() const { return sources_.size(); }

 protected:
  SourceID addSource(double seconds, Task task) override;
  void removeSource(SourceID source) override;

 private:
  struct Source {
    double due;
    Task task;
  };

  FakeClock* clock_;
  double now_ = 0;
  SourceID next_ = 1;
  std::map<SourceID, Source> sources_;
  platform::RunLoop::Replacement replacement_{*this};
};

}  // namespace quorbel_tests
