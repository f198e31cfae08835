#include "platform/base/NotificationCenter.h"

#include <gtest/gtest.h>

namespace platform = valdren::platform;

namespace {

using platform::Notification;
using platform::NotificationCenter;

struct Observer : platform::WeakTarget {};

TEST(NotificationCenter, DeliversByNameAndSenderInOrder) {
  NotificationCenter center;
  Observer observer;
  const int one = 1;
  const int two = 2;
  std::string seen;
  center.addObserver(observer, "a", [&](const Notification&) { seen += '1'; });
  center.addObserver(
      observer, "a", [&](const Notification&) { seen += '2'; }, &one);
  center.addObserver(observer, "b", [&](const Notification& notification) {
    seen += *notification.userInfo->text("k");
  });
  center.postNotificationName("a", &one);
  center.postNotificationName("a", &two);
  center.postNotificationName("b", nullptr, platform::Dictionary{{"k", "v"}});
  EXPECT_EQ(seen, "121v");
}

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
