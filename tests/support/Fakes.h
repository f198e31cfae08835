// A clock and a run loop that a test controls.
#pragma once

#include <map>

#include "platform/base/Clock.h"
#include "platform/base/RunLoop.h"

namespace platform = valdren::platform;

namespace quorbel_tests {

/// A clock that only moves on request. It starts at 1 January 2020 UTC, 1000 seconds after the
/// machine's start.
class FakeClock final : public platform::Clock {
 public:
  platform::Date now() const override { return platform::Date(seconds_); }
  platform::Seconds monotonicTime() const override { return platform::Seconds(monotonic_); }

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

/// A run loop that only turns on request. It moves the clock along, if there is one.
class FakeRunLoop final : public platform::RunLoop {
 public:
  explicit FakeRunLoop(FakeClock* clock = nullptr) : clock_(clock) {}

  bool isMainThread() const override { return true; }
  void performOnMainThreadAndWait(const Task& task) override { task(); }

  /// Lets `seconds` pass and runs what is due, in the order of due times. 0 is one turn: calls that
  /// are added with delay 0 during a turn wait for the next.
  void advance(double seconds);
  /// The number of waiting calls.
  std::size_t pendingCount() const { return sources_.size(); }

 protected:
  SourceID addSource(platform::Seconds delay, Task task) override;
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
