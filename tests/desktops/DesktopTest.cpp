// The program on the desktop that COMPOSITOR names, started by tools/with_compositor: its behaviour
// while it is hidden, and its end.
#include <gmock/gmock.h>
#include <gtk/gtk.h>

#include <csignal>
#include <cstdlib>

#include "platform/base/Json.h"
#include "platform/ui/Button.h"
#include "sandbox/Sandbox.h"
#include "tests/support/Loop.h"
#include "tests/support/Pictures.h"
#include "tests/support/Process.h"
#include "tests/support/WebPage.h"

namespace {

using namespace quorbel_tests;

constexpr double kRefreshSeconds = 3;

/// How a desktop hides windows and shows them again.
struct Desktop {
  const char* name;
  /// Commands. Without any, another window covers the screen. `awake` is repeated until the window
  /// is hidden.
  std::string hide, show, awake;
};

const std::string kOnScreen = "DISPLAY=$SCREEN_DISPLAY xdotool ";

const Desktop kDesktops[] = {
    {"sway", "swaymsg workspace 2", "swaymsg workspace 1", ""},
    {"openbox", kOnScreen + "set_desktop 1", kOnScreen + "set_desktop 0", ""},
    {"headless", "", "", ""},
    // Turns the screen off while the pointer does not move.
    {"weston", "true", kOnScreen + "mousemove_relative 1 1", kOnScreen + "mousemove_relative 1 1"},
};

class DesktopTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* const name = std::getenv("COMPOSITOR");
    for (const Desktop& each : kDesktops) {
      if (name && name == std::string(each.name)) desktop = &each;
    }
    if (!desktop) GTEST_SKIP() << "needs a desktop of tools/with_compositor";
    network->setRefreshRate(platform::Seconds(kRefreshSeconds));
    launch();
  }
  ~DesktopTest() override {
    if (cover) gtk_window_destroy(cover);
    if (!program) return;
    g_subprocess_force_exit(program);
    g_object_unref(program);
  }

  std::string command(const std::string& options) const {
    return "env XDG_STATE_HOME=" + folder.path() + " XDG_CACHE_HOME=" + folder.path() +
           " " QUORBEL_PROGRAM " --idiom phone " + options;
  }

  void launch() {
    program =
        g_subprocess_new(G_SUBPROCESS_FLAGS_NONE, nullptr, "sh", "-c",
                         ("exec " + command("--ad-server " + network->baseURL())).c_str(), nullptr);
    ASSERT_TRUE(program);
  }

  void endInOrder() {
    g_subprocess_send_signal(program, SIGTERM);
    ASSERT_TRUE(g_subprocess_wait(program, nullptr, nullptr));
    EXPECT_TRUE(g_subprocess_get_successful(program));
    g_clear_object(&program);
  }

  void perform(const std::string& command) { EXPECT_EQ(run(command).status, 0) << command; }

  void hide() {
    if (!desktop->hide.empty()) return perform(desktop->hide);
    cover = GTK_WINDOW(gtk_window_new());
    gtk_window_fullscreen(cover);
    gtk_widget_set_visible(GTK_WIDGET(cover), TRUE);
  }

  void show() {
    if (!desktop->show.empty()) return perform(desktop->show);
    gtk_window_destroy(std::exchange(cover, nullptr));
  }

  /// The parameters of the ad requests.
  std::vector<platform::Dictionary> requests() const {
    std::vector<platform::Dictionary> told;
    const auto log = platform::parseJson(network->log());
    for (const auto& request : *log->dictionary()->find("requests")->array()) {
      const auto* const parameters = request.dictionary()->find("parameters");
      if (parameters && parameters->dictionary()) told.push_back(*parameters->dictionary());
    }
    return told;
  }

  /// The number of ad requests.
  std::size_t ads() const { return requests().size(); }

  bool waitForAds(std::size_t wanted, double seconds, const std::string& meanwhile = "") {
    double next = 0;
    return runUntil(
        [&] {
          const double now = double(g_get_monotonic_time()) / 1e6;
          if (!meanwhile.empty() && now > next) {
            run(meanwhile);
            next = now + 1;
          }
          return ads() >= wanted;
        },
        seconds);
  }

  TemporaryFolder folder;
  std::unique_ptr<sandbox::Sandbox> network = sandbox::Sandbox::start(0);
  const Desktop* desktop = nullptr;
  GSubprocess* program = nullptr;
  GtkWindow* cover = nullptr;
};

TEST_F(DesktopTest, AsksForNoAdWhileNobodyCanSeeItAndEndsInOrder) {
  ASSERT_TRUE(waitForAds(2, 90, desktop->awake)) << "seen, it goes on asking";
  hide();
  // The last request may be under way, and hiding may take the desktop a while.
  EXPECT_FALSE(waitForAds(ads() + 3, 6 * kRefreshSeconds));
  const std::size_t unseen = ads();
  EXPECT_FALSE(waitForAds(unseen + 1, 3 * kRefreshSeconds));
  show();
  EXPECT_TRUE(waitForAds(unseen + 1, 60, desktop->awake)) << "seen again, it goes on";
  endInOrder();
}

/// The parameters that depend on the desktop.
std::string placeIn(const platform::Dictionary& request) {
  platform::Dictionary place;
  for (const char* key : {"u_w", "u_h", "u_so", "ad_frame", "ad_bounds", "u_audio", "net"}) {
    if (const platform::Value* const value = request.find(key)) place.set(key, *value);
  }
  return platform::Value(place).description();
}

TEST_F(DesktopTest, TheFirstRequestTellsTheWindowThatThePersonSees) {
  ASSERT_TRUE(waitForAds(1, 90, desktop->awake));
  endInOrder();
  const std::size_t before = ads();
  launch();  // the script is cached and does not delay the request
  ASSERT_TRUE(waitForAds(ads() + 2, 90, desktop->awake));
  endInOrder();
  const auto told = requests();
  EXPECT_EQ(placeIn(told[before]), placeIn(told.at(before + 1))) << "the refresh tells another one";

  const auto printed = platform::parseJson(run(command("--print-request")).output);
  ASSERT_TRUE(printed && printed->dictionary());
  EXPECT_EQ(placeIn(*printed->dictionary()), placeIn(told[before]));
}

TEST(DesktopTestOfPages, GoOnDrawingWhenAPageComesLater) {
  platform::Window window({320, 480});
  const auto screen = std::make_shared<platform::ViewController>();
  window.setRootViewController(screen);
  window.makeKeyAndVisible();
  runFor(0.5);
  Page page;
  screen->view()->addSubview(page.view);
  ASSERT_TRUE(page.load("<p>Page"));
  const auto button = std::make_shared<platform::Button>(platform::ButtonStyle::Bar,
                                                         platform::Rect{0, 100, 320, 40});
  button->setTitle("Above");
  screen->view()->addSubview(button);
  EXPECT_TRUE(runUntil([&] { return !isBlank(window, {0, 100, 320, 40}); }));
}

}  // namespace
