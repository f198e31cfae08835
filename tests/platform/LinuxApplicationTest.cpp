// What the running application grants its background tasks, and what it opens.
#include "platform/gtk/LinuxApplication.h"

#include <gtest/gtest.h>

#include "tests/support/Fakes.h"

namespace platform {
namespace {

using quorbel_tests::FakeRunLoop;

class BackgroundTaskTest : public ::testing::Test {
 protected:
  ~BackgroundTaskTest() override { application.enterForeground(); }

  BackgroundTaskID begin() {
    return application.beginBackgroundTask([this] { ++expired; });
  }

  FakeRunLoop loop;
  LinuxApplication& application = LinuxApplication::instance();
  int expired = 0;
};

TEST_F(BackgroundTaskTest, InTheForegroundATaskLasts) {
  const BackgroundTaskID task = begin();
  EXPECT_NE(task, 0u);
  loop.advance(3600);
  EXPECT_EQ(expired, 0);
  application.endBackgroundTask(task);
  EXPECT_EQ(application.backgroundTaskCount(), 0u);
}

TEST_F(BackgroundTaskTest, OutOfSightTasksExpireOnceAndEndByThemselves) {
  const BackgroundTaskID task = begin();
  begin();
  application.enterBackground();
  loop.advance(179);
  EXPECT_EQ(expired, 0);
  loop.advance(2);
  EXPECT_EQ(expired, 2);
  EXPECT_EQ(application.backgroundTaskCount(), 0u);
  application.endBackgroundTask(task);
  begin();
  loop.advance(11);
  EXPECT_EQ(expired, 3);
  loop.advance(3600);
  EXPECT_EQ(expired, 3);
}

TEST_F(BackgroundTaskTest, ComingBackStopsTheClock) {
  const BackgroundTaskID task = begin();
  application.enterBackground();
  loop.advance(170);
  application.enterForeground();
  loop.advance(3600);
  application.enterBackground();
  loop.advance(170);
  EXPECT_EQ(expired, 0);
  application.endBackgroundTask(task);
}

TEST_F(BackgroundTaskTest, AHandlerMayEndItsOwnAndOtherTasks) {
  BackgroundTaskID first = 0;
  BackgroundTaskID second = 0;
  first = application.beginBackgroundTask([&] {
    ++expired;
    application.endBackgroundTask(first);
    application.endBackgroundTask(second);
    application.endBackgroundTask(0);
  });
  second = begin();
  application.enterBackground();
  loop.advance(200);
  EXPECT_EQ(expired, 1);
  EXPECT_EQ(application.backgroundTaskCount(), 0u);
}

TEST_F(BackgroundTaskTest, ATaskLetsGoOfItsHandlerWhenItEnds) {
  auto held = std::make_shared<int>();
  const BackgroundTaskID task = application.beginBackgroundTask([held] {});
  EXPECT_EQ(held.use_count(), 2);
  application.endBackgroundTask(task);
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(BackgroundTaskTest, TheIdleHandlerRunsWhenTheLastTaskHasEnded) {
  int idle = 0;
  application.setIdleHandler([&] { ++idle; });
  const BackgroundTaskID first = begin();
  const BackgroundTaskID second = begin();
  application.endBackgroundTask(first);
  loop.advance(0);
  EXPECT_EQ(idle, 0);
  application.endBackgroundTask(second);
  loop.advance(0);
  EXPECT_EQ(idle, 1);
  application.setIdleHandler({});
}

TEST(OpenURLTest, NothingOpensFilesNorWhatNobodyKnows) {
  auto& application = LinuxApplication::instance();
  for (const char* text : {"file:///etc/passwd", "FILE:///etc/passwd", "relative", "/etc/passwd",
                           "x-nobody-knows-this:1"}) {
    EXPECT_FALSE(application.canOpenURL(*URL::parse(text))) << text;
    application.openURL(*URL::parse(text));
  }
}

}  // namespace
}  // namespace platform
