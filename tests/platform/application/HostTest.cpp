#include "platform/application/Host.h"

#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <map>

#include "platform/application/Application.h"
#include "platform/base/NotificationCenter.h"
#include "platform/device/Device.h"
#include "platform/ui/Window.h"
#include "tests/support/Loop.h"

namespace {

/// What the desktop was asked to hold back, by the cookies given for it.
std::map<guint, GtkApplicationInhibitFlags> inhibitions;

}  // namespace

// They replace the toolkit's functions, which do nothing without a session manager.
extern "C" guint gtk_application_inhibit(GtkApplication*, GtkWindow*,
                                         GtkApplicationInhibitFlags flags, const char*) {
  static guint cookie = 0;
  inhibitions[++cookie] = flags;
  return cookie;
}
extern "C" void gtk_application_uninhibit(GtkApplication*, guint cookie) {
  inhibitions.erase(cookie);
}

namespace valdren::platform {
namespace {

class HostTest : public ::testing::Test {
 protected:
  /// The application that embeds, which is followed from the first screen on.
  static void SetUpTestSuite() {
    if (g_application_get_default()) return;
    GtkApplication* const host =
        gtk_application_new("com.valdren.test.host", G_APPLICATION_NON_UNIQUE);
    g_application_register(G_APPLICATION(host), nullptr, nullptr);
    g_application_set_default(G_APPLICATION(host));
  }

  void SetUp() override {
    window_ = GTK_WINDOW(gtk_window_new());
    gtk_window_set_default_size(window_, 300, 400);
    gtk_window_present(window_);
  }

  void TearDown() override {
    if (window_) gtk_window_destroy(window_);
    quorbel_tests::runFor(0.05);
  }

  GtkWindow* window_ = nullptr;
};

TEST_F(HostTest, AWidgetKeepsItsViewUntilItIsDestroyed) {
  auto view = std::make_shared<View>(Rect{0, 0, 320, 50});
  const std::weak_ptr<View> weak = view;
  GtkWidget* const widget = hostWidget(std::move(view));
  ASSERT_TRUE(widget);
  gtk_window_set_child(window_, widget);
  ASSERT_TRUE(quorbel_tests::runUntil(
      [&] { return !weak.expired() && weak.lock()->frame().width == 320; }));
  EXPECT_EQ(weak.lock()->frame().height, 50);
  gtk_window_set_child(window_, nullptr);
  EXPECT_TRUE(weak.expired());
}

TEST_F(HostTest, AViewWithoutASizeIsGivenTheStandardOneAndOneWithAPlaceNone) {
  const auto inner = std::make_shared<View>();
  const auto outer = std::make_shared<View>();
  outer->addSubview(inner);
  EXPECT_EQ(hostWidget(nullptr), nullptr);
  EXPECT_EQ(hostWidget(inner), nullptr);
  EXPECT_EQ(hostScreen(nullptr), nullptr);
  GtkWidget* const widget = hostWidget(outer);
  gtk_window_set_child(window_, widget);
  GtkRequisition natural;
  gtk_widget_get_preferred_size(widget, nullptr, &natural);
  EXPECT_EQ(natural.width, 320);
  EXPECT_EQ(natural.height, 50);
}

TEST_F(HostTest, PresentedScreensComeUpOverTheWindowInItsSizeAndGoAgain) {
  ASSERT_TRUE(
      quorbel_tests::runUntil([&] { return gtk_widget_get_width(GTK_WIDGET(window_)) > 0; }));
  ViewController* const host = hostScreen(window_);
  ASSERT_TRUE(host);
  EXPECT_EQ(hostScreen(window_), host) << "one screen a window";
  Window* const over = host->window();
  ASSERT_TRUE(over);
  EXPECT_FALSE(over->isVisible());
  // The screen's size in requests is the window's, too.
  gtk_window_set_default_size(window_, 350, 500);
  EXPECT_TRUE(quorbel_tests::runUntil(
      [] {
        return Screen::standard().applicationFrame().size() == Size{350, 500};
      },
      5));

  host->presentModalViewController(std::make_shared<ViewController>(), true);
  EXPECT_TRUE(over->isVisible());
  EXPECT_EQ(over->size().width, gtk_widget_get_width(GTK_WIDGET(window_)));
  host->dismissModalViewControllerAnimated(true);
  EXPECT_FALSE(over->isVisible());
}

TEST_F(HostTest, TheLastOfManyWindowsInQuickSuccessionIsSeen) {
  for (int former = 0; former < 10; ++former) {
    hostScreen(window_);
    gtk_window_destroy(window_);
    SetUp();
  }
  hostScreen(window_);
  const auto isActive = [] {
    return Application::shared().applicationState() == ApplicationState::Active;
  };
  ASSERT_TRUE(quorbel_tests::runUntil(isActive));
  EXPECT_FALSE(quorbel_tests::runUntil([&] { return !isActive(); }, 2));
}

TEST_F(HostTest, AWindowThatIsDestroyedUnderAPresentedScreenTakesItAlong) {
  ViewController* const host = hostScreen(window_);
  const WeakPtr<ViewController> weak = host;
  auto presented = std::make_shared<ViewController>();
  const std::weak_ptr<ViewController> weakPresented = presented;
  host->presentModalViewController(std::move(presented), true);
  gtk_window_destroy(std::exchange(window_, nullptr));
  EXPECT_TRUE(quorbel_tests::runUntil([&] { return !weak && weakPresented.expired(); }));
  EXPECT_EQ(Window::keyWindow(), nullptr);
}

TEST_F(HostTest, KeepsTheDesktopAwakeWhenAskedToAndHearsOfTheEnd) {
  hostScreen(window_);
  Application::shared().setIdleTimerDisabled(true);
  ASSERT_EQ(inhibitions.size(), 1u);
  EXPECT_EQ(inhibitions.begin()->second, GTK_APPLICATION_INHIBIT_IDLE);
  Application::shared().setIdleTimerDisabled(false);
  EXPECT_TRUE(inhibitions.empty());
  struct Observer : WeakTarget {
  } observer;
  int ends = 0;
  NotificationCenter::defaultCenter().addObserver(observer, kApplicationWillTerminate,
                                                  [&](const Notification&) { ++ends; });
  g_signal_emit_by_name(g_application_get_default(), "shutdown");
  EXPECT_EQ(ends, 1);
  EXPECT_EQ(Application::shared().applicationState(), ApplicationState::Background);
}

}  // namespace
}  // namespace valdren::platform
