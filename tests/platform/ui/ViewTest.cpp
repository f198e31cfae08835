#include "platform/ui/View.h"

#include <gtest/gtest.h>

namespace valdren::platform {
namespace {

TEST(View, ResizesSubviewsByTheirMasks) {
  struct Case {
    unsigned mask;
    Rect before;
    Rect after;  // when a 300 x 400 superview becomes 400 x 300
  };
  using namespace platform;
  const Case cases[] = {
      {kNoResizing, {10, 20, 100, 50}, {10, 20, 100, 50}},
      {kFlexibleTopMargin, {0, 350, 320, 50}, {0, 250, 320, 50}},
      {kFlexibleWidth | kFlexibleHeight, {0, 0, 300, 356}, {0, 0, 400, 256}},
      {kFlexibleLeftMargin | kFlexibleRightMargin, {140, 0, 20, 20}, {190, 0, 20, 20}},
      {kFlexibleLeftMargin, {250, 0, 50, 50}, {350, 0, 50, 50}},
      {kFlexibleHeight, {0, 0, 300, 50}, {0, 0, 300, 0}},
      {kFlexibleLeftMargin | kFlexibleRightMargin, {0, 0, 300, 50}, {50, 0, 300, 50}},
  };
  for (const Case& each : cases) {
    View superview({0, 0, 300, 400});
    const auto subview = std::make_shared<View>(each.before);
    subview->setAutoresizingMask(each.mask);
    superview.addSubview(subview);
    superview.setFrame({0, 0, 400, 300});
    EXPECT_EQ(subview->frame(), each.after) << "mask " << each.mask;
  }
}

TEST(View, MovesBetweenSuperviewsAndOutlivesThem) {
  auto first = std::make_shared<View>();
  auto second = std::make_shared<View>();
  const auto moved = std::make_shared<View>();
  first->addSubview(moved);
  second->addSubview(moved);
  EXPECT_TRUE(first->subviews().empty());
  EXPECT_EQ(moved->superview(), second.get());
  second.reset();
  EXPECT_EQ(moved->superview(), nullptr);
  moved->removeFromSuperview();
}

struct Probe : View {
  using View::View;
  View* hitTest(Point point, EventType type) override {
    ++asked;
    return View::hitTest(point, type);
  }
  int asked = 0;
};

TEST(View, FindsTheTopmostViewThatReactsUnderATouch) {
  const auto root = std::make_shared<View>(Rect{0, 0, 100, 100});
  const auto below = std::make_shared<Probe>(Rect{10, 10, 50, 50});
  const auto above = std::make_shared<Probe>(Rect{30, 30, 50, 50});
  root->addSubview(below);
  root->addSubview(above);
  EXPECT_EQ(root->hitTest({40, 40}, EventType::Touches), above.get());
  EXPECT_EQ(root->hitTest({15, 15}, EventType::Touches), below.get());
  EXPECT_EQ(root->hitTest({95, 5}, EventType::Touches), root.get());
  EXPECT_EQ(root->hitTest({100, 5}, EventType::Touches), nullptr);
  above->setHidden(true);
  EXPECT_EQ(root->hitTest({40, 40}, EventType::Touches), below.get());
  below->setUserInteractionEnabled(false);
  EXPECT_EQ(root->hitTest({40, 40}, EventType::Touches), root.get());
  const int asked = above->asked;
  root->setUserInteractionEnabled(false);
  EXPECT_EQ(root->hitTest({40, 40}, EventType::Touches), nullptr);
  EXPECT_EQ(above->asked, asked);
}

}  // namespace
}  // namespace valdren::platform
