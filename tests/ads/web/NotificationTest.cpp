#include "ads/support/VADNotification.h"

#include <gtest/gtest.h>

#include "ads/web/VADNotificationCenter.h"
#include "tests/support/Fakes.h"
#include "tests/support/Printing.h"

namespace {

using platform::Dictionary;
using platform::Notification;
using platform::URL;
using valdren::VADNotification;
using valdren::VADNotificationCenter;

TEST(Notification, IsMadeFromAMessageURL) {
  const std::tuple<const char*, const char*, std::optional<Dictionary>> cases[] = {
      {"gmsg:///click?u=x", "click", Dictionary{{"u", "x"}}},
      {"gmsg://mobileads.host/open?U=a%26b", "open", Dictionary{{"u", "a&b"}}},
      {"gmsg:///close", "close", Dictionary{}},
      {"gmsg:///", "", Dictionary{}},
      {"gmsg:/a/b?x", "a/b", Dictionary{}},
      {"vantic://launch?url=x&y=z", "open", Dictionary{{"a", "browser"}, {"u", "x"}}},
      {"vantic://launch", "open", Dictionary{{"a", "browser"}}},
      {"vantic://closecanvas?x=1", "close", std::nullopt},
      {"vantic://log?String=s", "log", Dictionary{{"string", "s"}}},
  };
  for (const auto& [url, name, parameters] : cases) {
    const auto notification = VADNotification::notificationFromURL(*URL::parse(url));
    ASSERT_TRUE(notification) << url;
    EXPECT_TRUE(VADNotification::isNotificationURL(*URL::parse(url)));
    EXPECT_EQ(notification->name(), name) << url;
    EXPECT_EQ(notification->parameters(), parameters) << url;
  }
}

TEST(NotificationCenter, PostsAMessageAtOnceOrLaterAndKeepsItsSenderUntilThen) {
  quorbel_tests::FakeRunLoop loop;
  struct Observer : platform::WeakTarget {
  } observer;
  std::vector<std::string> heard;
  auto& center = VADNotificationCenter::defaultCenter();
  center.addObserver(observer, "click", [&](const Notification& notification) {
    heard.push_back(notification.name + "/" + std::to_string(notification.object != nullptr));
  });
  const URL url = *URL::parse("gmsg:///click");
  center.postNotificationFromURL(url, &center);
  EXPECT_EQ(heard, (std::vector<std::string>{"click/1"}));
  center.postNotificationFromURL(*URL::parse("http://h/click"), nullptr);
  auto sender = std::make_shared<int>(1);
  const std::weak_ptr<int> weak = sender;
  center.postNotificationFromURL(url, valdren::VADSender(), 0);
  center.postNotificationFromURL(url, std::move(sender), 2);
  EXPECT_EQ(heard.size(), 1u) << "a delay of 0 is the next turn";
  loop.advance(1);
  EXPECT_EQ(heard.back(), "click/0");
  EXPECT_FALSE(weak.expired());
  loop.advance(1);
  EXPECT_EQ(heard, (std::vector<std::string>{"click/1", "click/0", "click/1"}));
  EXPECT_TRUE(weak.expired());
}

}  // namespace
