#include "platform/base/RunLoop.h"

#include <glib.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>

#include "platform/base/Clock.h"
#include "platform/base/MainThread.h"

namespace valdren::platform {
namespace {

/// About three years. Longer waits would overflow the main context's counter.
constexpr Seconds kLongestWait{1e8};

Seconds boundedDelay(Seconds delay) {
  return delay > kNextTurn ? std::min(delay, kLongestWait) : kNextTurn;  // NaN is not above 0
}

class GLibRunLoop final : public RunLoop {
 public:
  bool isMainThread() const override { return platform::isMainThread(); }

  void performOnMainThreadAndWait(const Task& task) override {
    if (isMainThread()) {
      task();
      return;
    }
    Handover handover{task};
    // g_main_context_invoke would run the task on this thread while the main loop is not running.
    GSource* const source = g_idle_source_new();
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(source, runHandover, &handover, nullptr);
    g_source_attach(source, nullptr);
    g_source_unref(source);
    std::unique_lock lock(handover.mutex);
    handover.finished.wait(lock, [&] { return handover.done; });
  }

 protected:
  SourceID addSource(Seconds delay, Task task) override {
    auto* call = new Call{this, std::move(task), 0};
    const guint source = g_timeout_add_full(G_PRIORITY_DEFAULT, 0, runCall, call,
                                            [](gpointer data) { delete static_cast<Call*>(data); });
    call->source = source;
    g_source_set_ready_time(
        g_main_context_find_source_by_id(nullptr, source),
        delay > kNextTurn ? g_get_monotonic_time() + static_cast<gint64>(delay.count() * 1e6) : 0);
    return source;
  }

  void removeSource(SourceID source) override { g_source_remove(static_cast<guint>(source)); }

 private:
  struct Call {
    GLibRunLoop* loop;
    Task task;
    guint source;
  };

  struct Handover {
    const Task& task;
    std::mutex mutex = {};
    std::condition_variable finished = {};
    bool done = false;
  };

  static gboolean runCall(gpointer data) {
    static_cast<Call*>(data)->task();
    return G_SOURCE_REMOVE;
  }

  static gboolean runHandover(gpointer data) {
    auto& handover = *static_cast<Handover*>(data);
    handover.task();
    const std::lock_guard lock(handover.mutex);
    handover.done = true;
    handover.finished.notify_one();
    return G_SOURCE_REMOVE;
  }
};

}  // namespace

/// The delayed calls that have a target, so that they can be cancelled by it.
struct RunLoop::Pending {
  std::multimap<std::weak_ptr<const void>, SourceID, std::owner_less<>> calls;

  void forget(const std::weak_ptr<const void>& target, SourceID source) {
    const auto [first, last] = calls.equal_range(target);
    const auto found = std::find_if(first, last, [&](auto& call) { return call.second == source; });
    if (found != last) calls.erase(found);
  }
};

class RunLoop::SourceTimer final : public Timer {
 public:
  explicit SourceTimer(RunLoop& loop) : loop_(loop) {}
  ~SourceTimer() override {
    if (*source_) loop_.removeSource(*source_);
  }
  bool isValid() const override { return *source_ != 0; }

  void schedule(Seconds delay, Task task) {
    *source_ = loop_.addSource(delay, [source = source_, task = std::move(task)] {
      *source = 0;
      task();
    });
  }

 private:
  RunLoop& loop_;
  std::shared_ptr<SourceID> source_ = std::make_shared<SourceID>(0);
};

RunLoop& RunLoop::standard() {
  static GLibRunLoop loop;
  return loop;
}

void RunLoop::performAfterDelay(Seconds delay, Task task) {
  addSource(boundedDelay(delay), std::move(task));
}

void RunLoop::performAfterDelay(const WeakTarget& target, Seconds delay, Task task) {
  assertMainThread();
  if (!pending_) pending_ = std::make_shared<Pending>();
  auto source = std::make_shared<SourceID>(0);
  std::weak_ptr<const void> lifetime = target.lifetime();
  *source = addSource(boundedDelay(delay),
                      [pending = pending_, lifetime, source, task = std::move(task)] {
                        pending->forget(lifetime, *source);
                        if (!lifetime.expired()) task();
                      });
  pending_->calls.emplace(std::move(lifetime), *source);
}

void RunLoop::cancelPerformRequests(const WeakTarget& target) {
  assertMainThread();
  if (!pending_) return;
  const auto [first, last] = pending_->calls.equal_range(target.lifetime());
  for (auto call = first; call != last; ++call) removeSource(call->second);
  pending_->calls.erase(first, last);
}

std::unique_ptr<Timer> RunLoop::scheduleTimer(Seconds delay, Task task) {
  auto timer = std::make_unique<SourceTimer>(*this);
  timer->schedule(boundedDelay(delay), std::move(task));
  return timer;
}

bool RunLoop::turnUntil(const std::function<bool()>& done, Seconds longest) {
  assertMainThread();
  constexpr Seconds kAskAgainAfter{0.01};  // some conditions change without an event
  const Seconds end = Clock::shared().monotonicTime() + longest;
  while (!done()) {
    if (Clock::shared().monotonicTime() >= end) return false;
    const std::unique_ptr<Timer> turn = standard().scheduleTimer(kAskAgainAfter, [] {});
    g_main_context_iteration(nullptr, TRUE);
  }
  return true;
}

void RunLoop::autorelease(std::shared_ptr<void> object) {
  if (object) addSource(kNextTurn, [object = std::move(object)] {});
}

}  // namespace valdren::platform
