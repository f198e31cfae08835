// Simulated taps.
#include <gtest/gtest.h>

#include "platform/ui/Button.h"
#include "platform/ui/Window.h"
#include "tests/support/Loop.h"
#include "tests/support/WebPage.h"

namespace platform = valdren::platform;

namespace {

using platform::Button;
using platform::ButtonStyle;
using platform::Point;
using platform::Rect;
using platform::View;
using quorbel_tests::Page;
using quorbel_tests::runUntil;

struct Panel {
  Panel() {
    outer->addSubview(inner);
    inner->addSubview(button);
    button->setAction([this] { ++presses; });
  }
  std::shared_ptr<View> outer = std::make_shared<View>(Rect{0, 0, 300, 300});
  std::shared_ptr<View> inner = std::make_shared<View>(Rect{100, 100, 100, 100});
  std::shared_ptr<Button> button =
      std::make_shared<Button>(ButtonStyle::Custom, Rect{10, 10, 32, 32});
  int presses = 0;
};

TEST(Tap, PressesTheButtonUnderItAlone) {
  Panel panel;
  EXPECT_TRUE(panel.outer->tap({120, 120}));
  EXPECT_EQ(panel.presses, 1);
  EXPECT_FALSE(panel.outer->tap({20, 20}));
  EXPECT_FALSE(panel.outer->tap({150, 150}));
  EXPECT_FALSE(panel.outer->tap({400, 400}));
  EXPECT_EQ(panel.presses, 1);
}

TEST(Tap, DoesNotReachWhatAFingerWouldNot) {
  Panel panel;
  panel.button->setEnabled(false);
  EXPECT_FALSE(panel.outer->tap({120, 120}));
  panel.button->setEnabled(true);
  panel.inner->setUserInteractionEnabled(false);
  EXPECT_FALSE(panel.outer->tap({120, 120}));
  panel.inner->setUserInteractionEnabled(true);
  panel.outer->addSubview(std::make_shared<View>(Rect{0, 0, 300, 300}));
  EXPECT_FALSE(panel.outer->tap({120, 120}));
  EXPECT_EQ(panel.presses, 0);
}

TEST(Tap, OutlivesTheViewThatItPresses) {
  Panel panel;
  panel.button->setAction([&panel] {
    panel.inner->removeFromSuperview();
    panel.inner.reset();
    panel.button.reset();
  });
  EXPECT_TRUE(panel.outer->tap({120, 120}));
  EXPECT_FALSE(panel.outer->tap({120, 120}));
}

TEST(Tap, FollowsTheLinkOfAPageAndTellsThePageWhere) {
  Page page(Rect{40, 60, 320, 100});
  page.show();
  page.load(
      "<body style='margin:0' onpointerup='at=event.clientX+\",\"+event.clientY'>"
      "<a href='gmsg://h/first' style='display:block;height:50px'>One</a>"
      "<a href='gmsg://h/second' style='display:block;height:50px'><svg height='30' width='30'>"
      "<path d='M0 0h30v30H0z'/></svg></a>");
  page.delegate.lines.clear();
  EXPECT_TRUE(page.window->tap(Point{40 + 15, 60 + 60}));
  EXPECT_TRUE(runUntil([&] { return page.delegate.has("ask 0 gmsg://h/second"); }))
      << page.delegate.text();
  EXPECT_TRUE(page.becomes("at", "15,60"));
  EXPECT_FALSE(page.window->tap(Point{10, 10}));
  page.evaluate("'what it had to say is here'");
  EXPECT_EQ(page.delegate.lines.size(), 1u) << page.delegate.text();
}

}  // namespace
