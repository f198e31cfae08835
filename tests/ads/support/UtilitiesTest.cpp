#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ads/support/VADMacros.h"
#include "ads/support/VADNetworkUtilities.h"
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
using valdren::VADPrivateObject;
using valdren::VADPrivateUtilities;

std::string textOf(const std::optional<URL>& url) {
  return url ? url->absoluteString() : "(none)";
}

TEST(NetworkUtilities, EncodeEverythingButUnreservedCharacters) {
  std::string all;
  for (int code = 1; code < 128; ++code) all += static_cast<char>(code);
  const std::string encoded = VADNetworkUtilities::encodeURL(all);
  std::string kept;
  for (std::size_t place = 0; place < encoded.size(); ++place) {
    if (encoded[place] == '%') {
      place += 2;
    } else {
      kept += encoded[place];
    }
  }
  EXPECT_EQ(kept, "-.0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz~");
  EXPECT_EQ(VADNetworkUtilities::encodeURL("!*'();:@&=+$,/?%#[] \xc3\xa9\xff"),
            "%21%2A%27%28%29%3B%3A%40%26%3D%2B%24%2C%2F%3F%25%23%5B%5D%20%C3%A9%FF");
}

TEST(NetworkUtilities, AppendAfterTheRightSeparator) {
  const struct {
    const char* url;
    Dictionary parameters;
    const char* expected;
  } cases[] = {
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
  for (const auto& each : cases) {
    EXPECT_EQ(
        textOf(VADNetworkUtilities::appendQueryParameters(each.parameters, *URL::parse(each.url))),
        each.expected);
  }
  const URL base = *URL::parse("http://h/?q=1");
  EXPECT_EQ(textOf(VADNetworkUtilities::appendQueryKey("ms=abc", std::nullopt, base)),
            "http://h/?q=1&ms=abc");
}

TEST(NetworkUtilities, TakeTheFirstValueOfAKeyUndecoded) {
  const URL url = *URL::parse("http://h/?url=x&a&a=&b=%41=2&b=3&=e&a=4");
  const struct {
    const char* key;
    std::optional<std::string> value;
  } cases[] = {{"url", "x"}, {"Url", std::nullopt}, {"a", ""}, {"b", "%41"},
               {"", "e"},    {"c", std::nullopt}};
  for (const auto& each : cases) {
    EXPECT_EQ(VADNetworkUtilities::parameterValueForKey(each.key, url), each.value) << each.key;
  }
  EXPECT_FALSE(VADNetworkUtilities::parameterValueForKey("a", *URL::parse("http://h/a=b")));
}

TEST(NetworkUtilities, TakeAQueryApart) {
  const struct {
    std::string_view query;
    Dictionary expected;
  } cases[] = {
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
  for (const auto& each : cases) {
    EXPECT_EQ(VADNetworkUtilities::dictionaryFromQueryString(each.query), each.expected)
        << each.query;
  }
  EXPECT_TRUE(VADNetworkUtilities::dictionaryFromQueryString(std::nullopt).empty());
}

TEST(NumberUtilities, CutTrailingZeros) {
  const struct {
    float number;
    const char* text;
  } cases[] = {
      {2.0f, "2"},
      {320.0f, "320"},
      {1.5f, "1.5"},
      {0.0f, "0"},
      {-0.0f, "-0"},
      {100.0f, "100"},
      {0.1f, "0.1"},
      {1.0f / 3, "0.333333"},
      {-2.25f, "-2.25"},
      {1e-7f, "0"},
      {3.4028235e38f, "340282346638528859811704183484516925440"},
      {std::numeric_limits<float>::infinity(), "inf"},
      {-std::numeric_limits<float>::infinity(), "-inf"},
      {std::nanf(""), "nan"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(VADNumberUtilities::stringWithFloat(each.number), each.text);
  }
}

/// Looks itself up and removes itself in its destructor.
struct Companion final : public VADPrivateObject {
  Companion(const void* key, bool* sawItself) : key_(key), sawItself_(sawItself) {}
  ~Companion() override {
    *sawItself_ = VADPrivateUtilities::privateObjectForKey<Companion>(key_) != nullptr;
    VADPrivateUtilities::removePrivateObjectForKey(key_);
  }
  const void* key_;
  bool* sawItself_;
};

struct Name final : public VADPrivateObject {
  explicit Name(std::string text) : name(std::move(text)) {}
  std::string name;
};

TEST(PrivateUtilities, AnEntryLivesUntilItIsReplacedOrRemoved) {
  const int key = 0;
  auto first = std::make_shared<Name>("first");
  const std::weak_ptr<Name> weak = first;
  VADPrivateUtilities::setPrivateObject(std::move(first), &key);
  EXPECT_EQ(VADPrivateUtilities::privateObjectForKey<Name>(&key)->name, "first");
  VADPrivateUtilities::setPrivateObject(std::make_shared<Name>("second"), &key);
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(VADPrivateUtilities::privateObjectForKey<Name>(&key)->name, "second");
  EXPECT_FALSE(VADPrivateUtilities::privateObjectForKey<Companion>(&key));
  VADPrivateUtilities::removePrivateObjectForKey(&key);
  VADPrivateUtilities::removePrivateObjectForKey(&key);
  EXPECT_FALSE(VADPrivateUtilities::privateObjectForKey<Name>(&key));
}

TEST(PrivateUtilities, ACompanionMayUseTheTableWhileItGoes) {
  const int key = 0;
  bool sawItself = true;
  VADPrivateUtilities::setPrivateObject(std::make_shared<Companion>(&key, &sawItself), &key);
  VADPrivateUtilities::removePrivateObjectForKey(&key);
  EXPECT_FALSE(sawItself);
}

TEST(Macros, ReadOnlyObjects) {
  EXPECT_EQ(VADMacros::readJson(R"({"a":[1,{"b":null}]})"),
            (Dictionary{{"a", Array{1, Dictionary{{"b", nullptr}}}}}));
  for (const char* text : {"[1]", "1", "\"x\"", "null", "{", "", "{\"a\":NaN}"}) {
    EXPECT_FALSE(VADMacros::readJson(text)) << text;
  }
  EXPECT_FALSE(VADMacros::readJson(std::nullopt));
  const std::string deep = std::string(512, '[') + std::string(512, ']');
  EXPECT_FALSE(VADMacros::readJson("{\"a\":" + deep + "}"));
}

TEST(Macros, WriteObjectsAndArraysOrNothing) {
  EXPECT_EQ(VADMacros::jsonify(Dictionary{{"b", 1}, {"a", Array{"x", 2.0}}}),
            R"({"b":1,"a":["x",2]})");
  EXPECT_EQ(VADMacros::jsonify(Array{}), "[]");
  for (const Value& value :
       {Value("text"), Value(1), Value(), Value(Array{std::nan("")}), Value(Array{"\xff"}),
        Value(Dictionary{{"x", std::numeric_limits<double>::infinity()}})}) {
    EXPECT_EQ(VADMacros::jsonify(value), "");
  }
}

}  // namespace
