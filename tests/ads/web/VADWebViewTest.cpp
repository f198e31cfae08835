#include "ads/web/VADWebView.h"

#include <gtest/gtest.h>

#include "tests/support/FakeWebEngine.h"

namespace platform = valdren::platform;

namespace {

using quorbel_tests::FakeWebEngines;
using valdren::VADWebView;

TEST(VADWebView, RemembersTouchesAndNothingElse) {
  FakeWebEngines engines;
  const auto view = std::make_shared<VADWebView>(platform::Rect{0, 0, 320, 50});
  const auto other = std::make_shared<VADWebView>(platform::Rect{0, 0, 320, 50});
  EXPECT_FALSE(view->touched());
  EXPECT_EQ(view->hitTest({10, 10}, platform::EventType::Motion), view.get());
  EXPECT_EQ(view->hitTest({10, 10}, platform::EventType::RemoteControl), view.get());
  EXPECT_FALSE(view->touched());
  EXPECT_EQ(view->hitTest({10, 10}, platform::EventType::Touches), view.get());
  EXPECT_TRUE(view->touched());
  EXPECT_FALSE(other->touched());
  view->hitTest({10, 10}, platform::EventType::Motion);
  EXPECT_TRUE(view->touched());
  view->setTouched(false);
  EXPECT_FALSE(view->touched());
  EXPECT_EQ(view->hitTest({10, 60}, platform::EventType::Touches), nullptr);
  EXPECT_TRUE(view->touched());
}

}  // namespace
