// The time for background tasks, and the opening of URLs.
#include "platform/application/LinuxApplication.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <gtkmm/widget.h>

#include <algorithm>
#include <filesystem>

#include "platform/application/MailComposer.h"
#include "platform/device/Renderer.h"
#include "platform/ui/Button.h"
#include "platform/ui/LaunchPermit.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/Window.h"
#include "tests/support/Fakes.h"
#include "tests/support/LogLines.h"
#include "tests/support/Loop.h"
#include "tests/support/Pointer.h"
#include "tests/support/Process.h"
#include "tests/support/Taps.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

class BackgroundTaskTest : public ::testing::Test {
 protected:
  BackgroundTaskTest() { application.enterForeground(); }
  ~BackgroundTaskTest() override { application.enterForeground(); }

  BackgroundTaskID begin() {
    return application.beginBackgroundTask([this] { ++expired; });
  }

  FakeRunLoop loop;
  LinuxApplication& application = LinuxApplication::instance();
  int expired = 0;
};

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

TEST_F(BackgroundTaskTest, ComingBackStopsTheClockAndAnEndLetsGoOfTheHandler) {
  auto held = std::make_shared<int>();
  const BackgroundTaskID task = application.beginBackgroundTask([this, held] { ++expired; });
  application.enterBackground();
  loop.advance(170);
  application.enterForeground();
  loop.advance(3600);
  application.enterBackground();
  loop.advance(170);
  EXPECT_EQ(expired, 0);
  EXPECT_EQ(held.use_count(), 2);
  application.endBackgroundTask(task);
  EXPECT_EQ(held.use_count(), 1);
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

/// Writes down what it is told.
struct RecordingAdapter : ApplicationAdapter {
  void setHeld(bool held) override { told += held ? "held " : "free "; }
  void setIdleInhibited(bool inhibited) override { told += inhibited ? "awake " : "idle "; }
  std::string told;
};

TEST_F(BackgroundTaskTest, TheAdapterIsToldWhatIsInForceAndWhatChanges) {
  RecordingAdapter adapter;
  const BackgroundTaskID first = begin();
  application.setIdleTimerDisabled(true);
  application.setAdapter(&adapter);
  EXPECT_EQ(adapter.told, "held awake ");
  const BackgroundTaskID second = begin();
  application.endBackgroundTask(first);
  loop.advance(0);
  EXPECT_EQ(adapter.told, "held awake ") << "one task is left";
  application.endBackgroundTask(second);
  application.setIdleTimerDisabled(false);
  loop.advance(0);
  EXPECT_EQ(adapter.told, "held awake idle free ");
  application.endBackgroundTask(begin());
  application.setAdapter(nullptr);
  loop.advance(0);
  EXPECT_EQ(adapter.told, "held awake idle free held ");
}

TEST_F(BackgroundTaskTest, WithoutAWindowTasksGetTheTimeOfAnEnd) {
  begin();
  application.loseLastWindow();
  EXPECT_EQ(application.applicationState(), ApplicationState::Background);
  loop.advance(9);
  EXPECT_EQ(expired, 0);
  loop.advance(1);
  EXPECT_EQ(expired, 1);
}

TEST(LaunchPermitTest, EachTouchOfLateAllowsOneLaunch) {
  using Permit = LaunchPermit;
  FakeClock clock;
  LogLines log;
  struct Step {
    double seconds;
    std::function<void(Permit&)> act;
    bool opens;
    std::size_t refusals;
  };
  const auto nothing = [](Permit&) {};
  const auto giveBackThe = [](Permit::Touch touch) {
    return [touch](Permit& permit) { permit.giveBack(touch); };
  };
  const Step steps[] = {
      {0, nothing, false, 1},
      {0, nothing, false, 0},
      {0, &Permit::released, false, 0},
      {0, &Permit::touched, true, 0},
      {0, &Permit::released, false, 1},
      {0.5, &Permit::activated, false, 0},
      {2, &Permit::activated, true, 0},
      {1, &Permit::touched, true, 0},
      {0, giveBackThe(2), false, 1},
      {0, giveBackThe(3), true, 0},
      {0, &Permit::touched, true, 0},
      {0, giveBackThe(4), true, 0},
      {kTouchAllowsSeconds.count() + 0.1, giveBackThe(4), false, 1},
  };
  Permit permit;
  int number = 0;
  for (const Step& step : steps) {
    clock.advance(step.seconds);
    step.act(permit);
    EXPECT_EQ(permit.use("tel:1") != 0, step.opens) << "step " << number;
    EXPECT_EQ(log.take().size(), step.refusals) << "step " << number++;
  }
  permit.touched();
  clock.advance(kTouchAllowsSeconds.count() - 1);
  permit.released();
  clock.advance(kTouchAllowsSeconds.count() - 1);
  EXPECT_TRUE(permit.use("tel:1")) << "held for long";
}

TEST(LaunchPermitTest, ATouchIsWhateverThePersonPresses) {
  if (!hasPointer()) GTEST_SKIP() << "needs a pointer";
  const auto window = std::make_shared<Window>(Size{300, 300});
  const auto screen = std::make_shared<ViewController>();
  window->setRootViewController(screen);
  const auto button = std::make_shared<Button>(ButtonStyle::Custom, Rect{10, 10, 80, 40});
  screen->view()->addSubview(button);
  window->makeKeyAndVisible();
  GtkWidget* const widget = GTK_WIDGET(screen->view()->native().widget().gobj());
  GtkWidget* const pressed = GTK_WIDGET(button->native().widget().gobj());
  ASSERT_TRUE(runUntil([&] { return gtk_widget_get_width(pressed) > 0; }));
  FakeClock clock;
  clock.advance(3600);
  const auto click = [](GtkWidget* on, Point at) { return [=] { clickWidget(on, at); }; };
  const auto type = [&](const char* key) { return [=] { typeKey(widget, key); }; };
  const struct {
    const char* name;
    std::function<void()> act;
    bool counts;
  } rows[] = {
      {"a click", click(widget, {150, 200}), true},
      {"a click on a button", click(pressed, {5, 5}), true},
      {"Return", type("Return"), true},
      {"the space bar", type("space"), true},
      {"a modifier", type("Shift_L"), false},
      {"a way out", type("Escape"), false},
      {"an assistive program", [&] { press(*button); }, true},
  };
  LogLines log;
  for (const auto& row : rows) {
    while (LaunchPermit::shared().use("a test")) {
    }
    clock.advance(2);
    row.act();
    const auto isGiven = [] { return LaunchPermit::shared().isGiven(); };
    EXPECT_EQ(runUntil(isGiven, row.counts ? 30 : 0.3), row.counts) << row.name;
  }
}

/// Has a handler for the scheme "x-quorbel" that records the URLs it opens.
class OpenURLTest : public ::testing::Test {
 protected:
  void SetUp() override {
    chooseRenderer(folder_.path());
    GAppInfo* const noter = g_app_info_create_from_commandline(
        ("sh -c 'echo $0$GSK_RENDERER >> " + noted_ + "'").c_str(), "Noter",
        G_APP_INFO_CREATE_SUPPORTS_URIS, nullptr);
    g_app_info_set_as_default_for_type(noter, "x-scheme-handler/x-quorbel", nullptr);
    g_object_unref(noter);
    ASSERT_TRUE(runUntil([this] { return application_.canOpenURL(url("")); }));
  }

  static URL url(const std::string& rest) { return *URL::parse("x-quorbel:" + rest); }

  void open(const std::string& rest, int times) {
    for (int i = 0; i < times; ++i) application_.openURL(url(rest));
  }

  bool hasNoted(const std::string& rest) {
    return runUntil([&] {
      return std::filesystem::exists(noted_) && readFile(noted_).find(rest) != std::string::npos;
    });
  }

  // Programs that are opened choose their own.
  ScopedVariable renderer_{"GSK_RENDERER", nullptr};
  TemporaryFolder folder_;
  std::string noted_ = folder_.file("noted");
  LinuxApplication& application_ = LinuxApplication::instance();
};

TEST_F(OpenURLTest, OpensOneAtATouchHoweverManyAreAskedFor) {
  FakeClock clock;
  // The last touch may be of a test with another clock, which is ahead of this one.
  LaunchPermit::shared().touched();
  clock.advance(3600);
  LogLines log;
  open("untouched", 100);
  EXPECT_EQ(log.take().size(), 1u);
  LaunchPermit::shared().touched();
  open("first", 100);
  ASSERT_TRUE(hasNoted("first"));
  EXPECT_EQ(log.take().size(), 1u);
  LaunchPermit::shared().touched();
  open("second", 1);
  ASSERT_TRUE(hasNoted("second"));
  EXPECT_EQ(readFile(noted_), "x-quorbel:first\nx-quorbel:second\n");
}

TEST_F(OpenURLTest, NothingOpensFilesNorWhatNobodyKnows) {
  LogLines log;
  for (const char* text : {"file:///etc/passwd", "FILE:///etc/passwd", "relative", "/etc/passwd",
                           "x-nobody-knows-this:1"}) {
    LaunchPermit::shared().touched();
    EXPECT_FALSE(application_.canOpenURL(*URL::parse(text))) << text;
    application_.openURL(*URL::parse(text));
    EXPECT_TRUE(LaunchPermit::shared().isGiven()) << text;
  }
}

}  // namespace
}  // namespace valdren::platform
