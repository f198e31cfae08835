#include <gtest/gtest.h>

#include <cmath>

#include "ads/support/VADMacros.h"
#include "ads/support/VADNetworkUtilities.h"
#include "ads/support/VADNotification.h"
#include "ads/support/VADNumberUtilities.h"
#include "ads/support/VADPrivateUtilities.h"
#include "tests/support/Printing.h"

namespace platform = valdren::platform;

namespace {

using platform::Array;
using platform::Dictionary;
using platform::URL;
using platform::Value;
using valdren::VADMacros;
using valdren::VADNetworkUtilities;
using valdren::VADNumberUtilities;
using valdren::VADPrivateUtilities;

std::string textOf(const std::optional<URL>& url) {
  return url ? url->absoluteString() : "(none)";
}

TEST(NetworkUtilities, EncodeEverythingButUnreservedCharacters) {
  std::string kept;
  for (char code = 1; code != '\x7f'; ++code) {
    const std::string character(1, code);
    if (VADNetworkUtilities::encodeURL(character) == character) kept += code;
  }
  EXPECT_EQ(kept, "-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz~");
  EXPECT_EQ(VADNetworkUtilities::encodeURL("!*'();:@&=+$,/?%#[] \xc3\xa9\xff"),
            "%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D%20%C3%A9%FF");
}

TEST(NetworkUtilities, AppendAfterTheRightSeparator) {
  const std::tuple<const char*, Dictionary, const char*> cases[] = {
      {"http://h/", {{"a", "x y&z"}}, "http://h/?a=x%20y%26z"},
      {"http://h/?q=1", {{"a", "x y&z"}}, "http://h/?q=1&a=x%20y%26z"},
      {"http://h/?", {{"a", "1"}, {"b", "2"}}, "http://h/??a=1&b=2"},
      {"http://h", {{"k", ""}, {"n", nullptr}, {"l", 7}}, "http://h?k&n&l=7"},
      {"http://h/#f", {{"a", "1"}}, "http://h/#f?a=1"},
      {"http://h/?q", {}, "http://h/?q"},
      {"http://h/", {{"kept?as=is", "v"}}, "http://h/?kept?as=is=v"},
      {"http://h/", {{"y", true}, {"d", 1.5}, {"t", "\xc3\xa9"}}, "http://h/?y=1&d=1.5&t=%C3%A9"},
      {"http://h/", {{"bad key", "v"}}, "(none)"},
  };
  for (const auto& [url, parameters, expected] : cases) {
    EXPECT_EQ(textOf(VADNetworkUtilities::appendQueryParameters(parameters, *URL::parse(url))),
              expected);
  }
  const URL base = *URL::parse("http://h/?q=1");
  EXPECT_EQ(textOf(VADNetworkUtilities::appendQueryKey("ms=abc", std::nullopt, base)),
            "http://h/?q=1&ms=abc");
}

TEST(NetworkUtilities, TakeTheFirstValueOfAKeyUndecoded) {
  const URL url = *URL::parse("http://h/?url=x&a&a=&b=%41=2&b=3&=e&a=4");
  const std::pair<const char*, std::optional<std::string>> cases[] = {
      {"url", "x"}, {"Url", {}}, {"a", ""}, {"b", "%41"}, {"", "e"}, {"c", {}}};
  for (const auto& [key, value] : cases) {
    EXPECT_EQ(VADNetworkUtilities::parameterValueForKey(key, url), value) << key;
  }
  EXPECT_FALSE(VADNetworkUtilities::parameterValueForKey("a", *URL::parse("http://h/a=b")));
}

TEST(NetworkUtilities, TakeAQueryApart) {
  const std::pair<std::string_view, Dictionary> cases[] = {
      {"A=1;b=2&&c", {{"a", "1"}, {"b", "2"}}},
      {"x=1=2&y=1", {{"y", "1"}}},
      {"k=first&K=second", {{"k", "second"}}},
      {"p=a+b%20%2B", {{"p", "a+b +"}}},
      {"%41%C3%89=%C3%A9", {{"a\xc3\xa9", "\xc3\xa9"}}},
      {"a=%zz&b=%4&c=%&d=%FF&%FF=e&f=ok", {{"f", "ok"}}},
      {"=v&k=", {{"", "v"}, {"k", ""}}},
      {"n=%00", {{"n", std::string_view("\0", 1)}}},
      {";&;", {}},
      {"", {}},
  };
  for (const auto& [query, expected] : cases) {
    EXPECT_EQ(VADNetworkUtilities::dictionaryFromQueryString(query), expected) << query;
  }
  EXPECT_TRUE(VADNetworkUtilities::dictionaryFromQueryString(std::nullopt).empty());
}

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
    const auto notification = valdren::VADNotification::notificationFromURL(*URL::parse(url));
    ASSERT_TRUE(notification) << url;
    EXPECT_TRUE(valdren::VADNotification::isNotificationURL(*URL::parse(url)));
    EXPECT_EQ(notification->name(), name) << url;
    EXPECT_EQ(notification->parameters(), parameters) << url;
  }
}

TEST(NumberUtilities, CutTrailingZeros) {
  const std::pair<float, const char*> cases[] = {
      {0.0f, "0"},       {-0.0f, "-0"},
      {320.0f, "320"},   {1.5f, "1.5"},
      {-2.25f, "-2.25"}, {1.0f / 3, "0.333333"},
      {1e-7f, "0"},      {3.4028235e38f, "340282346638528859811704183484516925440"},
  };
  for (const auto& [number, text] : cases) {
    EXPECT_EQ(VADNumberUtilities::stringWithFloat(number), text);
  }
}

/// Looks itself up and removes itself in its destructor.
struct Companion final : public valdren::VADPrivateObject {
  ~Companion() override {
    EXPECT_NE(VADPrivateUtilities::privateObjectForKey<Companion>(&theKey).get(), this);
    if (removesItself) VADPrivateUtilities::removePrivateObjectForKey(&theKey);
  }
  bool removesItself = false;
  static inline const int theKey = 0;
};

TEST(PrivateUtilities, AnEntryLivesUntilItIsReplacedOrRemoved) {
  const void* const key = &Companion::theKey;
  auto first = std::make_shared<Companion>();
  const std::weak_ptr<Companion> weak = first;
  VADPrivateUtilities::setPrivateObject(std::move(first), key);
  EXPECT_EQ(VADPrivateUtilities::privateObjectForKey<Companion>(key), weak.lock());
  const auto second = std::make_shared<Companion>();
  VADPrivateUtilities::setPrivateObject(second, key);
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(VADPrivateUtilities::privateObjectForKey<Companion>(key), second);
  VADPrivateUtilities::removePrivateObjectForKey(key);
  EXPECT_FALSE(VADPrivateUtilities::privateObjectForKey<Companion>(key));

  auto last = std::make_shared<Companion>();
  last->removesItself = true;
  VADPrivateUtilities::setPrivateObject(std::move(last), key);
  VADPrivateUtilities::removePrivateObjectForKey(key);
}

TEST(Macros, ReadOnlyObjects) {
  EXPECT_EQ(VADMacros::readJson(R"({"a":[1,{"b":null}]})"),
            (Dictionary{{"a", Array{1, Dictionary{{"b", nullptr}}}}}));
  for (const char* text : {"[1]", "null", "{", ""}) {
    EXPECT_FALSE(VADMacros::readJson(text)) << text;
  }
  EXPECT_FALSE(VADMacros::readJson(std::nullopt));
}

TEST(Macros, WriteObjectsAndArraysOrNothing) {
  EXPECT_EQ(VADMacros::jsonify(Dictionary{{"b", 1}, {"a", Array{"x", 2.0}}}),
            R"({"b":1,"a":["x",2]})");
  EXPECT_EQ(VADMacros::jsonify(Array{}), "[]");
  for (const Value& value : {Value("text"), Value(), Value(Array{std::nan("")})}) {
    EXPECT_EQ(VADMacros::jsonify(value), "");
  }
}

}  // namespace
