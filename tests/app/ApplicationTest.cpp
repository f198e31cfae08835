#include "platform/application/Application.h"

#include <gio/gio.h>
#include <gtest/gtest.h>
#include <gtkmm/window.h>

#include <csignal>

#include "app/quorbelAppDelegate.h"
#include "platform/base/NotificationCenter.h"
#include "platform/ui/NativeWindow.h"
#include "tests/support/Fakes.h"

namespace {

using platform::Window;
using Lines = std::vector<std::string>;

/// A delegate that records its calls.
class Delegate final : public platform::ApplicationDelegate {
 public:
  Delegate(Lines& lines, bool launches) : lines_(lines), launches_(launches) {}
  ~Delegate() override { lines_.push_back("gone"); }

  void setWindow(std::shared_ptr<Window> window) override { inner_.setWindow(std::move(window)); }
  void setViewController(std::shared_ptr<platform::ViewController> screen) override {
    inner_.setViewController(std::move(screen));
  }
  bool applicationDidFinishLaunching() override {
    lines_.push_back("launched");
    EXPECT_TRUE(inner_.window());
    EXPECT_TRUE(inner_.viewController());
    EXPECT_EQ(inner_.window()->rootViewController(), nullptr);
    EXPECT_TRUE(inner_.applicationDidFinishLaunching());
    EXPECT_EQ(inner_.window()->rootViewController(), inner_.viewController());
    EXPECT_TRUE(inner_.window()->isVisible());
    EXPECT_EQ(Window::keyWindow(), inner_.window().get());
    return launches_;
  }
  void applicationWillResignActive() override { lines_.push_back("resigns"); }
  void applicationDidEnterBackground() override { lines_.push_back("background"); }
  void applicationWillTerminate() override { lines_.push_back("terminates"); }
  void applicationDidReceiveMemoryWarning() override { lines_.push_back("memory"); }

 private:
  quorbel::quorbelAppDelegate inner_;
  Lines& lines_;
  bool launches_;
};

class ApplicationTest : public ::testing::Test {
 protected:
  void SetUp() override {
    description.identifier = "com.valdren.quorbel.test";
    description.name = "Test";
    description.version = "1";
    description.resourceBase = "/com/valdren/quorbel";
    description.alone = true;
    description.idiom = platform::InterfaceIdiom::Phone;
    description.starting = [this] { lines.push_back("starting"); };
    description.makeDelegate = [this] { return std::make_unique<Delegate>(lines, launches); };
    const auto plain = [] { return std::make_shared<platform::ViewController>(); };
    description.screens = {{"quorbelViewController", plain}, {"quorbeliPad", plain}};
  }

  /// What the program ends with.
  int run(std::function<void()> started) {
    description.started = std::move(started);
    lines.clear();
    return platform::applicationMain(description);
  }

  platform::ApplicationDescription description;
  bool launches = true;
  Lines lines;
};

TEST_F(ApplicationTest, TellsItsDelegateOfItsLifeAndGivesTheStatusItWasEndedWith) {
  // Seen by now, or a little later.
  std::function<void()> endWhenSeen = [&] {
    using platform::Application, platform::ApplicationState;
    if (Application::shared().applicationState() == ApplicationState::Active) {
      return platform::terminateApplication(3);
    }
    platform::RunLoop::shared().performAfterDelay(platform::Seconds(0.02), endWhenSeen);
  };
  EXPECT_EQ(run(endWhenSeen), 3);
  EXPECT_EQ(lines, (Lines{"starting", "launched", "resigns", "background", "terminates", "gone"}));
  EXPECT_EQ(Window::keyWindow(), nullptr);
}

TEST_F(ApplicationTest, EndsInOrderHoweverItIsEndedUnderAFullScreenPage) {
  const std::function<void()> ends[] = {
      [] { Window::keyWindow()->native().window().close(); },
      [] { g_application_quit(g_application_get_default()); },  // as the session's end does
      [] { std::raise(SIGTERM); },
      [] { std::raise(SIGINT); },
      [] { std::raise(SIGHUP); },
  };
  for (const auto& end : ends) {
    const int status = run([&] {
      // As a full-screen page does; this may really keep the session awake.
      platform::Application::shared().setIdleTimerDisabled(true);
      end();
    });
    EXPECT_EQ(status, 0);
    platform::Application::shared().setIdleTimerDisabled(false);
    EXPECT_EQ(lines.back(), "gone");
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "terminates"), 1);
  }
}

TEST_F(ApplicationTest, WithoutAScreenOrADelegateThatLaunchesItEndsAsAFailure) {
  const auto started = [] { FAIL() << "it did not start"; };
  launches = false;
  EXPECT_EQ(run(started), 1);
  EXPECT_EQ(lines.back(), "gone");
  description.screens.clear();
  EXPECT_EQ(run(started), 1);
  EXPECT_EQ(lines, Lines{"starting"});
}

TEST_F(ApplicationTest, WhatRunsInTheBackgroundIsWaitedForUnlessAskedTwice) {
  for (const bool twice : {false, true}) {
    bool finished = false;
    const int status = run([&] {
      auto& application = platform::Application::shared();
      const auto task = application.beginBackgroundTask({});
      platform::terminateApplication(0);
      EXPECT_EQ(application.applicationState(), platform::ApplicationState::Background);
      if (twice) {
        platform::terminateApplication(0);
        application.endBackgroundTask(task);
        return;
      }
      platform::RunLoop::shared().performAfterDelay(platform::Seconds(0.1), [&, task] {
        finished = true;
        application.endBackgroundTask(task);
      });
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(finished, !twice);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "terminates"), 1);
  }
}

TEST_F(ApplicationTest, HandsOnThatMemoryRunsLow) {
  run([&] {
    GMemoryMonitor* const monitor = g_memory_monitor_dup_default();
    g_signal_emit_by_name(monitor, "low-memory-warning", G_MEMORY_MONITOR_WARNING_LEVEL_MEDIUM);
    g_object_unref(monitor);
    EXPECT_EQ(lines.back(), "memory");
    platform::terminateApplication(0);
  });
}

TEST_F(ApplicationTest, OpensTheWindowInTheShapeThatWasAskedForOrThatItHadLast) {
  struct Case {
    platform::InterfaceIdiom idiom;
    std::optional<bool> landscape;
    std::optional<platform::Value> last;
    platform::Size size;
  };
  using enum platform::InterfaceIdiom;
  const auto sides = [](double width, double height) {
    return platform::Value(platform::Dictionary{{"width", width}, {"height", height}});
  };
  const Case cases[] = {
      {Phone, {}, {}, {360, 640}},
      {Phone, true, {}, {640, 360}},
      {Tablet, {}, {}, {1024, 768}},
      {Tablet, false, {}, {768, 1024}},
      {Phone, {}, sides(400, 500), {400, 500}},
      {Phone, {}, sides(1e300, 500), {360, 640}},
      {Phone, {}, sides(-1, 0), {360, 640}},
      {Phone, {}, "large", {360, 640}},
  };
  for (const Case& each : cases) {
    quorbel_tests::FakeUserDefaults kept;
    const char* const key = each.idiom == Phone ? "window_size_phone" : "window_size_tablet";
    if (each.last) kept.setObject(key, *each.last);
    description.idiom = each.idiom;
    description.landscape = each.landscape;
    run([&] {
      EXPECT_EQ(Window::keyWindow()->size(), each.size);
      platform::terminateApplication(0);
    });
    if (!each.landscape) {
      EXPECT_EQ(kept.objectForKey(key), sides(each.size.width, each.size.height));
    }
  }
}

}  // namespace
