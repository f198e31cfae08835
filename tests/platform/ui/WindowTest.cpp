#include "platform/ui/Window.h"

#include <gtest/gtest.h>
#include <gtkmm/button.h>
#include <gtkmm/settings.h>
#include <gtkmm/window.h>

#include <cstdlib>

#include "platform/base/RunLoop.h"
#include "platform/device/Device.h"
#include "platform/ui/NativeView.h"
#include "platform/ui/NativeWindow.h"
#include "platform/ui/Settling.h"
#include "platform/ui/WindowPlace.h"
#include "tests/support/Fakes.h"
#include "tests/support/Loop.h"
#include "tests/support/Pointer.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;
using Lines = std::vector<std::string>;

/// Records its hooks and runs a test's function in one of them.
class Screen final : public ViewController {
 public:
  Screen(std::string name, Lines& lines) : name_(std::move(name)), lines_(lines) {}

  std::map<std::string, std::function<void()>> during;
  bool wideOnly = false;
  bool anyOrientation = true;

  void viewDidLoad() override { note("load"); }
  void viewWillAppear(bool animated) override { note(animated ? "will appear~" : "will appear"); }
  void viewDidAppear(bool animated) override { note(animated ? "did appear~" : "did appear"); }
  void viewWillDisappear(bool animated) override { note(animated ? "will go~" : "will go"); }
  void viewDidDisappear(bool animated) override { note(animated ? "did go~" : "did go"); }
  void didReceiveMemoryWarning() override { note("memory"); }
  bool cancelPressed() override { return note("cancel"), true; }
  bool backPressed() override { return note("back"), true; }
  bool shouldAutorotateToInterfaceOrientation(InterfaceOrientation orientation) override {
    return wideOnly ? isLandscape(orientation)
                    : anyOrientation || orientation == InterfaceOrientation::Portrait;
  }
  void didRotateFromInterfaceOrientation(InterfaceOrientation from) override {
    note(isLandscape(from) ? "rotated upright" : "rotated wide");
  }

 private:
  void note(const std::string& hook) {
    lines_.push_back(name_ + " " + hook);
    const auto wanted = during.find(hook);
    if (wanted == during.end()) return;
    const std::function<void()> once = std::move(wanted->second);
    during.erase(wanted);
    once();
  }

  std::string name_;
  Lines& lines_;
};

class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override {
    setAnimations(true);
    root = screen("root");
    window = std::make_shared<Window>(Size{360, 640});
    window->setRootViewController(root);
    window->makeKeyAndVisible();
    ASSERT_TRUE(runUntil([&] { return root->view()->native().widget().get_mapped(); }));
    lines.clear();
  }

  void TearDown() override {
    window.reset();
    runFor(0.02);
  }

  static void setAnimations(bool on) {
    Gtk::Settings::get_default()->property_gtk_enable_animations() = on;
  }

  std::shared_ptr<Screen> screen(const std::string& name) {
    return std::make_shared<Screen>(name, lines);
  }

  bool waitFor(const std::string& line) {
    return runUntil([&] { return std::find(lines.begin(), lines.end(), line) != lines.end(); });
  }

  static bool isCovered(const ViewController& screen) {
    return !const_cast<ViewController&>(screen).view()->native().widget().get_child_visible();
  }

  Lines lines;
  std::shared_ptr<Screen> root;
  std::shared_ptr<Window> window;
};

TEST_F(WindowTest, TellsOnceWhenItHasTheSizeThatItKeeps) {
  enum class Meanwhile { Nothing, AnotherSize, NotDrawn };
  for (const Meanwhile change : {Meanwhile::Nothing, Meanwhile::AnotherSize, Meanwhile::NotDrawn}) {
    SCOPED_TRACE(int(change));
    FakeRunLoop loop;  // a busy machine must not end the wait for a slow desktop
    window = std::make_shared<Window>(Size{360, 640});
    GtkWindow* const native = window->native().window().gobj();
    const Size size = change == Meanwhile::AnotherSize ? Size{500, 400} : Size{360, 640};
    int told = 0;
    // Screens ask while they are made, before there is a window.
    const auto waiting = platform::Screen::standard().whenSettled([&] {
      ++told;
      EXPECT_EQ(platform::Screen::standard().applicationFrame().size(),
                (Size{size.width, size.height - window->statusBarHeight()}));
    });
    window->makeKeyAndVisible();
    loop.advance(0);
    if (change == Meanwhile::NotDrawn) {
      gtk_widget_unmap(GTK_WIDGET(native));
      loop.advance(4.9);
      EXPECT_EQ(told, 0);
      loop.advance(0.2);
      EXPECT_EQ(told, 1);
      gtk_widget_map(GTK_WIDGET(native));
    } else if (change == Meanwhile::AnotherSize) {
      EXPECT_TRUE(runUntil([&] { return gtk_widget_get_width(GTK_WIDGET(native)) > 0; }));
      window->resize(size);
    }
    ASSERT_TRUE(runUntil([&] { return hasSettled(native) && window->size() == size; }));
    loop.advance(0);
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(platform::Screen::standard().whenSettled([&] { ++told; }));
    EXPECT_EQ(told, 2) << "it is told later";
  }
}

TEST_F(WindowTest, EachScreenGetsItsHooksOnceAndInOrder) {
  for (const bool animated : {false, true}) {
    const auto shown = screen("a");
    const std::string mark = animated ? "~" : "";
    lines.clear();
    root->presentModalViewController(shown, animated);
    EXPECT_EQ(root->modalViewController(), shown);
    ASSERT_TRUE(waitFor("a did appear" + mark));
    EXPECT_EQ(lines, (Lines{"a load", "root will go" + mark, "a will appear" + mark,
                            "root did go" + mark, "a did appear" + mark}));
    EXPECT_TRUE(isCovered(*root));
    EXPECT_EQ(shown->view()->frame(), window->contentBounds());

    lines.clear();
    root->dismissModalViewControllerAnimated(animated);
    EXPECT_EQ(root->modalViewController(), nullptr);
    ASSERT_TRUE(waitFor("root did appear" + mark));
    EXPECT_EQ(lines, (Lines{"a will go" + mark, "root will appear" + mark, "a did go" + mark,
                            "root did appear" + mark}));
    EXPECT_FALSE(isCovered(*root));
    EXPECT_EQ(shown->window(), nullptr);
    EXPECT_EQ(shown->presentingViewController(), nullptr);
  }
}

TEST_F(WindowTest, ASlideEndsAlsoWithoutAnimationsAndWithoutBeingDrawn) {
  setAnimations(false);
  auto shown = screen("a");
  root->presentModalViewController(shown, true);
  EXPECT_EQ(lines.back(), "a did appear~");
  root->dismissModalViewControllerAnimated(true);
  EXPECT_EQ(lines.back(), "root did appear~");
  setAnimations(true);
  shown = screen("b");
  root->presentModalViewController(shown, true);
  window->native().window().set_visible(false);
  EXPECT_TRUE(waitFor("b did appear~"));
}

TEST_F(WindowTest, KeysAndButtonsThatLeaveReachTheTopScreenAlone) {
  if (!hasPointer()) GTEST_SKIP() << "needs a pointer";
  root->presentModalViewController(screen("a"), false);
  GtkWidget* const native = GTK_WIDGET(window->native().window().gobj());
  const struct {
    const char* key;
    const char* with;
    const char* line;  // empty when it means nothing
  } rows[] = {{"Escape", nullptr, "a cancel"},
              {"Left", "Alt_L", "a back"},
              {"KP_Left", "Alt_L", "a back"},
              {"Escape", "Alt_L", ""},
              {"Left", nullptr, ""},
              {"Left", "Control_L", ""},
              {"a", "Alt_L", ""}};
  for (const auto& row : rows) {
    lines.clear();
    typeKey(native, row.key, row.with);
    // What follows is only seen after the key.
    typeKey(native, "Escape");
    ASSERT_TRUE(waitFor("a cancel")) << row.key;
    runUntil([&] { return lines.size() > 1 || !*row.line; });
    EXPECT_EQ(lines, *row.line ? (Lines{row.line, "a cancel"}) : Lines{"a cancel"}) << row.key;
  }
  lines.clear();
  clickWidget(native, {100, 200}, 8);
  EXPECT_TRUE(waitFor("a back"));
}

TEST_F(WindowTest, WhatHooksAskForWaitsUntilTheOthersHaveHadTheirHooks) {
  const auto first = screen("a");
  const auto second = screen("b");
  root->during["did go"] = [&] {
    first->presentModalViewController(second, false);
    EXPECT_EQ(first->modalViewController(), second) << "whoever asked sees it at once";
  };
  root->presentModalViewController(first, false);
  EXPECT_EQ(lines, (Lines{"a load", "root will go", "a will appear", "root did go", "a did appear",
                          "b load", "a will go", "b will appear", "a did go", "b did appear"}));
  EXPECT_EQ(window->topViewController(), second.get());
}

TEST_F(WindowTest, AScreenThatIsDismissedWhileItComesLeavesNothingBehind) {
  for (const char* hook : {"load", "will appear", "did appear"}) {
    const auto shown = screen("a");
    shown->during[hook] = [&] { root->dismissModalViewControllerAnimated(false); };
    root->presentModalViewController(shown, false);
    EXPECT_EQ(window->topViewController(), root.get()) << hook;
    EXPECT_EQ(shown->view()->superview(), nullptr) << hook;
    EXPECT_EQ(shown->window(), nullptr) << hook;
    EXPECT_FALSE(isCovered(*root)) << hook;
    EXPECT_EQ(lines.back(), "root did appear") << hook;
    lines.clear();
  }
}

TEST_F(WindowTest, AScreenDismissedBeforeItsTurnIsNeverShown) {
  const auto first = screen("a");
  const auto second = screen("b");
  first->during["will appear"] = [&] {
    first->presentModalViewController(second, false);
    first->dismissModalViewControllerAnimated(false);
  };
  root->presentModalViewController(first, false);
  EXPECT_EQ(window->topViewController(), first.get());
  EXPECT_FALSE(second->isViewLoaded());
  EXPECT_EQ(second->window(), nullptr);
}

TEST_F(WindowTest, DismissingTakesAwayAllThatLiesAbove) {
  const auto first = screen("a");
  root->presentModalViewController(first, false);
  first->presentModalViewController(screen("b"), false);
  lines.clear();
  window->didReceiveMemoryWarning();
  root->dismissModalViewControllerAnimated(false);
  EXPECT_EQ(lines, (Lines{"root memory", "a memory", "b memory", "b will go", "root will appear",
                          "b did go", "root did appear"}));
}

TEST_F(WindowTest, ItsRootAndItselfMayGoInTheMidstOfASlideAndFromAHook) {
  auto shown = screen("a");
  root->presentModalViewController(shown, true);
  const std::weak_ptr<Screen> gone = root;
  root = screen("next");
  window->setRootViewController(root);
  EXPECT_TRUE(gone.expired());
  EXPECT_EQ(shown->window(), nullptr);
  EXPECT_EQ(shown->view()->superview(), nullptr);
  EXPECT_EQ(lines.back(), "next did appear");

  root->presentModalViewController(shown, true);
  window.reset();
  EXPECT_EQ(shown->window(), nullptr);
  runFor(0.05);

  SetUp();
  shown = screen("a");
  shown->during["did appear"] = [&] { window.reset(); };
  root->presentModalViewController(shown, false);
  EXPECT_EQ(Window::keyWindow(), nullptr);
}

TEST_F(WindowTest, TurnsForAScreenThatIsWideOnlyAndBackToItsPlaceWhenItGoes) {
  GtkWindow* const native = window->native().window().gobj();
  ASSERT_TRUE(runUntil([&] { return placeOf(native).has_value(); }));
  // On a monitor of 1600 x 1200.
  for (const Rect& before :
       {Rect{10, 10, 360, 640}, {1200, 500, 360, 640}, {100, 10, 300, 1100}, {1, 1, 1100, 1150}}) {
    SCOPED_TRACE(testing::Message() << before.width << " x " << before.height);
    window->resize({before.width, before.height});
    ASSERT_TRUE(runUntil([&] { return window->size() == Size{before.width, before.height}; }));
    moveTo(native, before);
    ASSERT_EQ(placeOf(native), before);
    const auto wide = screen("a");
    wide->wideOnly = true;
    root->presentModalViewController(wide, false);
    ASSERT_TRUE(waitFor("a rotated wide"));
    EXPECT_TRUE(runUntil([&] {
      return wide->view()->frame() == window->contentBounds() &&
             window->isOnScreen(window->contentBounds());
    }));
    EXPECT_EQ(window->size(), (Size{before.height, before.width}));
    root->dismissModalViewControllerAnimated(false);
    ASSERT_TRUE(waitFor("root rotated upright"));
    EXPECT_TRUE(runUntil([&] { return placeOf(native) == before; }));
    lines.clear();
  }
}

TEST_F(WindowTest, KeepsItsShapeWhereNotAllOfItWouldStayInSight) {
  const char* const desktop = std::getenv("COMPOSITOR");
  if (desktop && desktop == std::string("openbox")) {
    window->native().window().maximize();
  } else {
    // Turned, the first is too high for the monitor of these tests; on Wayland nothing is turned.
    window->resize(desktop ? Size{640, 360} : Size{1500, 300});
  }
  ASSERT_TRUE(runUntil([&] { return isLandscape(window->orientation()); }));
  runFor(0.5);  // a tiling desktop sets its own size later
  const Size before = window->size();
  const auto upright = screen("a");
  upright->anyOrientation = false;
  EXPECT_FALSE(window->canTurn());
  root->presentModalViewController(upright, false);
  EXPECT_FALSE(runUntil([&] { return window->size() != before; }, 0.2));
}

TEST_F(WindowTest, TurnsBackWithWhatIsBelowUnlessSomebodyDidSoBefore) {
  const auto below = screen("a");
  const auto wide = screen("b");
  wide->wideOnly = true;
  root->presentModalViewController(below, false);
  below->presentModalViewController(wide, false);
  ASSERT_TRUE(waitFor("b rotated wide"));
  wide->presentModalViewController(screen("c"), false);
  root->dismissModalViewControllerAnimated(false);
  EXPECT_TRUE(waitFor("root rotated upright"));

  lines.clear();
  root->presentModalViewController(wide, false);
  ASSERT_TRUE(waitFor("b rotated wide"));
  window->resize({400, 700});
  ASSERT_TRUE(runUntil([&] { return !isLandscape(window->orientation()); }));
  root->dismissModalViewControllerAnimated(false);
  runFor(0.1);
  EXPECT_EQ(window->size(), (Size{400, 700}));
}

TEST_F(WindowTest, OnlyAScreenThatAllowsItHearsOfARotation) {
  root->anyOrientation = false;
  window->resize({640, 360});
  ASSERT_TRUE(runUntil([&] { return isLandscape(window->orientation()); }));
  runFor(0.05);
  EXPECT_EQ(lines, Lines{});

  const auto shown = screen("a");
  root->presentModalViewController(shown, false);
  window->resize({360, 640});
  ASSERT_TRUE(runUntil([&] { return !isLandscape(window->orientation()); }));
  EXPECT_TRUE(waitFor("a rotated upright"));
}

TEST_F(WindowTest, TheStatusBarGivesItsHeightToTheScreensWhileItIsHidden) {
  const double bar = window->statusBarHeight();
  EXPECT_GT(bar, 0);
  EXPECT_EQ(window->contentBounds().height, 640 - bar);
  window->setStatusBarHidden(true);
  EXPECT_EQ(window->statusBarHeight(), 0);
  ASSERT_TRUE(runUntil([&] { return root->view()->frame().height == 640; }));
  window->setStatusBarHidden(false);
  EXPECT_TRUE(runUntil([&] { return root->view()->frame().height == 640 - bar; }));
  // As a full-screen window does.
  window->native().window().get_titlebar()->set_child_visible(false);
  window->native().window().queue_resize();
  ASSERT_TRUE(runUntil([&] { return root->view()->frame().height == 640; }));
  EXPECT_EQ(window->statusBarHeight(), 0);
}

TEST_F(WindowTest, TheFocusComesBackToTheControlThatHadItBelowAPresentedScreen) {
  Gtk::Button buttons[2];
  const auto second = &buttons[1];
  std::shared_ptr<View> views[2];
  for (int i = 0; i < 2; ++i) {
    views[i] = std::make_shared<View>(Rect{100.0 * i, 0, 100, 50});
    views[i]->native().setContent(&buttons[i]);
    root->view()->addSubview(views[i]);
  }
  ASSERT_TRUE(runUntil([&] { return second->get_mapped(); }));
  second->grab_focus();
  const auto focused = [&] { return window->native().window().get_focus(); };
  ASSERT_EQ(focused(), second);

  root->presentModalViewController(screen("a"), false);
  EXPECT_NE(focused(), second) << "keys would reach a covered control";
  root->dismissModalViewControllerAnimated(false);
  EXPECT_EQ(focused(), second);
  for (const auto& view : views) view->native().setContent(nullptr);
}

TEST_F(WindowTest, IgnoresPresentationsThatMakeNoSense) {
  const auto shown = screen("a");
  const auto loose = screen("b");
  root->presentModalViewController(nullptr, false);
  root->presentModalViewController(root, false);
  loose->presentModalViewController(shown, false);
  root->presentModalViewController(shown, false);
  for (const auto& presented : {loose, shown, root}) {
    (presented == loose ? root : shown)->presentModalViewController(presented, false);
    EXPECT_EQ(window->topViewController(), shown.get());
  }
  EXPECT_EQ(loose->modalViewController(), nullptr);
}

}  // namespace
}  // namespace valdren::platform
