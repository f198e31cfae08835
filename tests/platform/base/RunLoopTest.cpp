#include "platform/base/RunLoop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "tests/support/Loop.h"

namespace valdren::platform {
namespace {

using quorbel_tests::runUntil;

struct Target : WeakTarget {};

TEST(RunLoop, RunsDelayedCallsInOrderAfterThePresentCall) {
  Target target;
  std::string order;
  RunLoop::shared().performAfterDelay(target, kNextTurn, [&] { order += 'a'; });
  RunLoop::shared().performAfterDelay(kNextTurn, [&] { order += 'b'; });
  RunLoop::shared().performAfterDelay(target, Seconds(0.05), [&] { order += 'd'; });
  RunLoop::shared().performAfterDelay(target, Seconds(-1), [&] { order += 'c'; });
  EXPECT_EQ(order, "");
  EXPECT_TRUE(runUntil([&] { return order.size() == 4; }));
  EXPECT_EQ(order, "abcd");
}

TEST(RunLoop, DropsTheCallsOfACancelledOrDeadTarget) {
  Target kept;
  Target cancelled;
  auto dead = std::make_unique<Target>();
  std::string ran;
  RunLoop::shared().performAfterDelay(cancelled, kNextTurn, [&] { ran += 'x'; });
  RunLoop::shared().performAfterDelay(*dead, kNextTurn, [&] { ran += 'y'; });
  RunLoop::shared().performAfterDelay(kept, Seconds(0.02), [&] { ran += 'k'; });
  RunLoop::shared().cancelPerformRequests(cancelled);
  dead.reset();
  EXPECT_TRUE(runUntil([&] { return !ran.empty(); }));
  EXPECT_EQ(ran, "k");
}

TEST(RunLoop, ATimerFiresOnceUnlessItIsDestroyed) {
  int fired = 0;
  auto first = RunLoop::shared().scheduleTimer(Seconds(0.01), [&] { ++fired; });
  auto second = RunLoop::shared().scheduleTimer(Seconds(0.01), [&] { fired += 100; });
  auto endless = RunLoop::shared().scheduleTimer(Seconds(1e300), [&] { fired += 1000; });
  EXPECT_TRUE(first->isValid());
  second.reset();
  EXPECT_TRUE(runUntil([&] { return fired > 0; }));
  EXPECT_EQ(fired, 1);
  EXPECT_FALSE(first->isValid());
  EXPECT_TRUE(endless->isValid());
}

TEST(RunLoop, WorkForTheMainThreadWaitsUntilItsLoopTurns) {
  RunLoop& loop = RunLoop::shared();
  std::atomic<bool> asked = false;
  std::atomic<bool> done = false;
  bool onMainThread = false;
  std::thread other([&] {
    asked = true;
    loop.performOnMainThreadAndWait([&] {
      onMainThread = loop.isMainThread();
      done = true;
    });
  });
  while (!asked) std::this_thread::yield();
  EXPECT_FALSE(done) << "it ran on the thread that waits";
  EXPECT_TRUE(runUntil([&] { return done.load(); }));
  other.join();
  EXPECT_TRUE(onMainThread);
}

}  // namespace
}  // namespace valdren::platform
