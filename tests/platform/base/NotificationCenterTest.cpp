#include "platform/base/NotificationCenter.h"

#include <gtest/gtest.h>

namespace valdren::platform {
namespace {

struct Observer : WeakTarget {};

TEST(NotificationCenter, NeverCallsAnObserverThatIsGoneOrRemovedWhileDelivering) {
  NotificationCenter center;
  Observer first;
  auto second = std::make_unique<Observer>();
  Observer third;
  Observer late;
  std::string seen;
  center.addObserver(first, "a", [&](const Notification&) {
    seen += '1';
    second.reset();
    center.removeObserver(third, "a");
    center.addObserver(late, "a", [&](const Notification&) { seen += '4'; });
  });
  center.addObserver(*second, "a", [&](const Notification&) { seen += '2'; });
  center.addObserver(third, "a", [&](const Notification&) { seen += '3'; });
  center.postNotificationName("a", nullptr);
  EXPECT_EQ(seen, "1");
  center.removeObserver(first);
  center.postNotificationName("a", nullptr);
  EXPECT_EQ(seen, "14");
}

}  // namespace
}  // namespace valdren::platform
