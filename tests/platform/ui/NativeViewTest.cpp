#include "platform/ui/NativeView.h"

#include <gtest/gtest.h>
#include <gtkmm/button.h>

#include "platform/ui/View.h"
#include "platform/ui/Window.h"
#include "tests/support/Loop.h"

namespace valdren::platform {
namespace {

using namespace quorbel_tests;

class NativeViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    window = std::make_shared<Window>(Size{400, 400});
    screen = std::make_shared<ViewController>();
    window->setRootViewController(screen);
    window->makeKeyAndVisible();
    ASSERT_TRUE(runUntil([&] { return screen->view()->native().widget().get_mapped(); }));
  }

  void TearDown() override {
    screen.reset();
    window.reset();
    runFor(0.02);
  }

  std::shared_ptr<View> addView(const Rect& frame) {
    auto view = std::make_shared<View>(frame);
    screen->view()->addSubview(view);
    return view;
  }

  std::shared_ptr<Window> window;
  std::shared_ptr<ViewController> screen;
};

TEST_F(NativeViewTest, ALaterSubviewLiesOnTopAndHiddenAndIdleOnesLetTouchesThrough) {
  const auto below = addView({0, 0, 100, 100});
  const auto above = addView({0, 0, 100, 100});
  const auto picked = [&] {
    return screen->view()->native().widget().pick(50, 50, Gtk::PickFlags::DEFAULT);
  };
  ASSERT_TRUE(runUntil([&] { return picked() == &above->native().widget(); }));
  above->setUserInteractionEnabled(false);
  EXPECT_EQ(picked(), &below->native().widget());
  above->setUserInteractionEnabled(true);
  above->setHidden(true);
  EXPECT_TRUE(runUntil([&] { return picked() == &below->native().widget(); }));
  above->setHidden(false);
  below->removeFromSuperview();
  screen->view()->addSubview(below);
  EXPECT_TRUE(runUntil([&] { return picked() == &below->native().widget(); }));
}

TEST_F(NativeViewTest, ContentThatNeedsMoreThanItsFrameGetsWhatItNeeds) {
  Gtk::Button button;
  button.set_size_request(120, 80);
  const auto view = addView({0, 0, 10, 10});
  view->native().setContent(&button);
  ASSERT_TRUE(runUntil(
      [&] { return button.get_allocated_width() == 120 && button.get_allocated_height() == 80; }));
  EXPECT_EQ(view->frame(), (Rect{0, 0, 10, 10})) << "the frame is the view's own";
  view->native().setContent(nullptr);
  EXPECT_EQ(button.get_parent(), nullptr);
}

TEST_F(NativeViewTest, ASubviewOutlivesTheViewThatHeldIt) {
  const auto outer = addView({0, 0, 100, 100});
  const auto inner = std::make_shared<View>(Rect{0, 0, 50, 50});
  outer->addSubview(inner);
  outer->removeFromSuperview();
  std::weak_ptr<View> gone = outer;
  EXPECT_EQ(inner->native().widget().get_parent(), &outer->native().widget());
  inner->removeFromSuperview();
  EXPECT_EQ(inner->native().widget().get_parent(), nullptr);
  screen->view()->addSubview(inner);
  EXPECT_TRUE(runUntil([&] { return inner->native().widget().get_mapped(); }));
}

}  // namespace
}  // namespace valdren::platform
