#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ads/telemetry/VADTimingManager.h"
#include "platform/application/Application.h"
#include "platform/storage/FileUserDefaults.h"
#include "tests/support/FakeApplication.h"
#include "tests/support/FakeUserDefaults.h"
#include "tests/support/Fakes.h"
#include "tests/support/Printing.h"
#include "tests/support/Process.h"

namespace platform = valdren::platform;

namespace {

using platform::Dictionary;
using quorbel_tests::FakeApplication;
using quorbel_tests::FakeClock;
using quorbel_tests::FakeUserDefaults;
using valdren::VADTiming;
using valdren::VADTimingManager;

TEST(Timing, GoesFromIdleToRunningToEnded) {
  FakeClock clock;
  VADTiming timing("pcl");
  timing.end();
  EXPECT_EQ(timing.startSeconds(), 0);
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
  EXPECT_TRUE(timing.isActive());
  EXPECT_EQ(timing.elapsedMilliseconds(), 0u);
  timing.reset();
  EXPECT_FALSE(timing.isActive());
  EXPECT_EQ(timing.startSeconds(), 0);
}

TEST(Timing, IsReadFromWhateverWasKept) {
  EXPECT_FALSE(VADTiming::initWithDictionaryRepresentation({{"start", 1.0}}));
  EXPECT_FALSE(VADTiming::initWithDictionaryRepresentation({{"category", 5}}));
  const auto timing = VADTiming::initWithDictionaryRepresentation(
      {{"category", "prl"}, {"start", "text"}, {"userData", 3}});
  ASSERT_TRUE(timing);
  EXPECT_EQ(timing->startSeconds(), 0);
  EXPECT_TRUE(timing->keysAndValues().empty());
}

TEST(TimingManager, SavesWhenTheApplicationEndsWhenToldToAndWhenItGoes) {
  FakeApplication application;
  FakeUserDefaults defaults;
  const auto written = [&] { return defaults.written().count("valdren_timing_test"); };
  auto manager = std::make_unique<VADTimingManager>("test");
  manager->addTimingWithCategory("a");
  EXPECT_EQ(written(), 0u);
  application.post(platform::kApplicationWillTerminate);
  EXPECT_EQ(written(), 1u);
  const auto count = [&] {
    return defaults.written().find("valdren_timing_test")->second.dictionary()->size();
  };
  manager->addTimingWithCategory("b");
  EXPECT_EQ(count(), 1u);
  manager->synchronize();
  EXPECT_EQ(count(), 2u);
  manager->removeAllTimings();
  manager.reset();
  EXPECT_EQ(count(), 0u);
  const int before = defaults.synchronizeCount();
  application.post(platform::kApplicationWillTerminate);
  EXPECT_EQ(defaults.synchronizeCount(), before) << "a dead manager was told";
}

TEST(TimingManager, SkipsWhatIsNoTimingInTheKeptState) {
  FakeUserDefaults defaults;
  defaults.setObject(
      "valdren_timing_test",
      Dictionary{{"a", 1}, {"b", Dictionary{}}, {"c", Dictionary{{"category", "c"}}}});
  EXPECT_EQ(VADTimingManager("test").categories(), (std::vector<std::string>{"c"}));
  defaults.setObject("valdren_timing_test", "text");
  EXPECT_TRUE(VADTimingManager("test").categories().empty());
}

TEST(TimingManager, GoesOnInTheNextProcess) {
  const quorbel_tests::TemporaryFolder folder;
  const pid_t child = fork();
  if (child == 0) {
    platform::FileUserDefaults files(folder.path());
    const platform::UserDefaults::Replacement replacement(files);
    VADTimingManager manager("test");
    const auto running = manager.addTimingWithCategory("running");
    running->start();
    running->setValue("ticket", "pit");
    running->setValue(platform::Date(1.5), "date");
    const auto ended = manager.addTimingWithCategory("ended");
    ended->start();
    usleep(20'000);
    ended->end();
    manager.synchronize();
    files.flush();
    quorbel_tests::writeFile(folder.file("ended"), ended->elapsedMillisecondsString());
    _exit(0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  ASSERT_EQ(status, 0);

  platform::FileUserDefaults files(folder.path());
  const platform::UserDefaults::Replacement replacement(files);
  const VADTimingManager manager("test");
  const auto running = manager.timingForCategory("running");
  const auto ended = manager.timingForCategory("ended");
  ASSERT_TRUE(running && ended);
  EXPECT_TRUE(running->isActive());
  EXPECT_EQ(running->keysAndValues(),
            (Dictionary{{"pit", "ticket"}, {"date", platform::Date(1.5)}}));
  EXPECT_GE(running->elapsedMilliseconds(), 20u) << "the clock of the next process began anew";
  EXPECT_EQ(ended->elapsedMillisecondsString(), quorbel_tests::readFile(folder.file("ended")))
      << "an interval changed on its way through the file";
}

}  // namespace
