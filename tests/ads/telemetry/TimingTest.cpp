#include <gtest/gtest.h>

#include "ads/telemetry/VADTimingManager.h"
#include "tests/support/Fakes.h"
#include "tests/support/Printing.h"

namespace {

using platform::Dictionary;
using quorbel_tests::FakeClock;
using quorbel_tests::FakeUserDefaults;
using valdren::VADTiming;
using valdren::VADTimingManager;

TEST(Timing, GoesFromIdleToRunningToEnded) {
  FakeClock clock;
  VADTiming timing("pcl");
  timing.end();
  EXPECT_EQ(timing.endSeconds(), 0) << "an end without a start counted";
  EXPECT_EQ(timing.elapsedMillisecondsString(), "0");

  timing.start();
  EXPECT_TRUE(timing.isActive());
  clock.advance(0.25);
  EXPECT_EQ(timing.elapsedMillisecondsString(), "250");
  clock.advance(1.5006);
  EXPECT_EQ(timing.elapsedMilliseconds(), 1750u) << "whole milliseconds are cut, not rounded";

  timing.end();
  EXPECT_FALSE(timing.isActive());
  clock.advance(5);
  EXPECT_EQ(timing.elapsedMilliseconds(), 1750u);
  timing.end();
  EXPECT_EQ(timing.elapsedMilliseconds(), 6750u) << "a second end moves the end";

  timing.start();
  EXPECT_EQ(timing.elapsedMilliseconds(), 0u);
  timing.reset();
  EXPECT_FALSE(timing.isActive());

  clock.advance(0.5 - VADTiming::counter());
  timing.start();
  timing.end();
  EXPECT_GT(timing.endSeconds(), 0) << "within the machine's first second";
}

TEST(TimingManager, TakesWhatIsATimingFromTheKeptState) {
  FakeUserDefaults defaults;
  defaults.setObject(
      "valdren_timing_test",
      Dictionary{{"a", 1},
                 {"b", Dictionary{{"start", 1.0}}},
                 {"c", Dictionary{{"category", "c"}, {"start", "text"}, {"userData", 3}}},
                 {"d", Dictionary{{"category", 5}}}});
  const VADTimingManager manager("test");
  EXPECT_EQ(manager.categories(), (std::vector<std::string>{"c"}));
  EXPECT_EQ(manager.timings().at(0)->startSeconds(), 0);
  EXPECT_TRUE(manager.timings().at(0)->keysAndValues().empty());
  defaults.setObject("valdren_timing_test", "text");
  EXPECT_TRUE(VADTimingManager("test").categories().empty());
}

TEST(TimingManager, GoesOnInTheNextRun) {
  FakeClock clock;
  FakeUserDefaults defaults;
  {
    VADTimingManager manager("test");
    const auto running = manager.addTimingWithCategory("running");
    const auto ended = manager.addTimingWithCategory("ended");
    running->start();
    running->setValue("ticket", "pit");
    ended->start();
    clock.advance(0.5);
    ended->end();
  }
  clock.advance(1);
  const VADTimingManager manager("test");
  const auto running = manager.timingForCategory("running");
  ASSERT_TRUE(running);
  EXPECT_TRUE(running->isActive());
  EXPECT_EQ(running->keysAndValues(), (Dictionary{{"pit", "ticket"}}));
  EXPECT_EQ(running->elapsedMilliseconds(), 1500u);
  EXPECT_EQ(manager.timingForCategory("ended")->elapsedMilliseconds(), 500u);
}

}  // namespace
