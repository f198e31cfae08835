// The main thread's run loop: delayed calls that end with their target, one-shot timers, calls from
// other threads.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/base/Seconds.h"
#include "platform/base/Shared.h"
#include "platform/base/WeakPtr.h"

namespace valdren::platform {

/// The delay of a call on the next turn of the run loop.
inline constexpr Seconds kNextTurn{0};

/// A pending one-shot call. Destroying it cancels the call.
class Timer {
 public:
  virtual ~Timer() = default;
  /// False once the timer has fired.
  virtual bool isValid() const = 0;
};

class RunLoop : public Shared<RunLoop> {
 public:
  using Task = std::function<void()>;

  static RunLoop& standard();
  virtual ~RunLoop() = default;

  /// Runs `task` once after `delay` unless `target` is gone by then. `kNextTurn` runs it on the
  /// next turn, after the present call has returned; below 0 and NaN count as 0. Calls with equal
  /// delays run in the order in which they were asked for.
  void performAfterDelay(const WeakTarget& target, Seconds delay, Task task);

  /// The same without a target: the task owns whatever it needs.
  void performAfterDelay(Seconds delay, Task task);

  /// Drops every delayed call of `target` that has not run yet.
  void cancelPerformRequests(const WeakTarget& target);

  /// Runs `task` once after `delay` unless the timer is destroyed first. Bounds as above.
  std::unique_ptr<Timer> scheduleTimer(Seconds delay, Task task);

  /// For programs without an application: runs the loop until `done` returns true. False when
  /// `longest` passes first.
  static bool turnUntil(const std::function<bool()>& done, Seconds longest);

  /// Keeps `object` alive until the next turn of the loop.
  void autorelease(std::shared_ptr<void> object);

  virtual bool isMainThread() const = 0;

  /// Runs `task` on the main thread and returns when it is done; at once when called there. The
  /// caller must not hold a lock that the main thread may need.
  virtual void performOnMainThreadAndWait(const Task& task) = 0;

 protected:
  using SourceID = std::uint64_t;  // never 0

  /// Calls `task` once, on the main thread, after `delay` (0 or more, finite).
  virtual SourceID addSource(Seconds delay, Task task) = 0;
  /// Removes a source that has not been called yet.
  virtual void removeSource(SourceID source) = 0;

 private:
  class SourceTimer;
  struct Pending;

  std::shared_ptr<Pending> pending_;
};

}  // namespace valdren::platform
