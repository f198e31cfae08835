#include "platform/base/URL.h"

#include <gtest/gtest.h>

namespace valdren::platform {
namespace {

std::string piecesOf(const URL& url) {
  return url.scheme() + " | " + url.host() + " | " + url.path() + " | " +
         url.query().value_or("(none)") + " | " + url.origin().value_or("(none)");
}

TEST(URL, TellsItsPiecesAsTheyWereWritten) {
  const struct {
    const char* text;
    const char* pieces;
  } cases[] = {
      {"http://Example.COM/a/B?x=%41#f?q",
       "http | Example.COM | /a/B | x=%41 | http://example.com:80"},
      {"HTTPS://user:pw@h.example:8443", "HTTPS | h.example |  | (none) | https://h.example:8443"},
      {"http://h.example?", "http | h.example |  |  | http://h.example:80"},
      {"http://[::1]:80/x", "http | [::1] | /x | (none) | http://[::1]:80"},
      {"gmsg:///click?u=http://x/?a=b", "gmsg |  | /click | u=http://x/?a=b | (none)"},
      {"gmsg://click", "gmsg | click |  | (none) | (none)"},
      {"tel:+49-30", "tel |  | +49-30 | (none) | (none)"},
      {"about:blank", "about |  | blank | (none) | (none)"},
      {"a/b?c", " |  | a/b | c | (none)"},
  };
  for (const auto& each : cases) {
    const auto url = URL::parse(each.text);
    ASSERT_TRUE(url) << each.text;
    EXPECT_EQ(piecesOf(*url), each.pieces) << each.text;
    EXPECT_EQ(url->absoluteString(), each.text);
  }
  EXPECT_EQ(URL::parse("GMSG:///x")->lowercaseScheme(), "gmsg");
}

TEST(URL, IsNoneForATextThatIsInvalidAsItStands) {
  for (const char* text :
       {"", " ", "http://a b/", "http://h/\xc3\xa9", "http://h/%zz", "http://h/%", "http://h:port/",
        "http://h:80x/", "gmsg://h:click", "http://h/a\nb", "http://h/<x>", "http://h/a[b]", "://x",
        "http://[::1/", "http://h/?a#b#c"}) {
    EXPECT_FALSE(URL::parse(text)) << text;
  }
  EXPECT_FALSE(URL::parse(std::string_view("http://h/\0x", 11)));
}

TEST(URL, FromAPageEscapesOnlyWhatIsIllegal) {
  const struct {
    const char* text;
    const char* expected;
  } cases[] = {
      {"http://h/a?b=%41&c", "http://h/a?b=%41&c"},
      {"http://h/a b|c", "http://h/a%20b%7Cc"},
      {"http://h/\xc3\xa9", "http://h/%C3%A9"},
      {"http://h/100%", "http://h/100%25"},
      {"http://h/%zz%41", "http://h/%25zz%41"},
      {"http://[::1]/a[0]", "http://[::1]/a%5B0%5D"},
      {"/a[0]?u=http://h/", "/a%5B0%5D?u=http://h/"},
      {"http://h/#a#b", "http://h/#a%23b"},
      {"gmsg:///log?string={\"a\":[1]}", "gmsg:///log?string=%7B%22a%22:%5B1%5D%7D"},
      {"http://h/\xff", "http://h/%FF"},
  };
  for (const auto& each : cases) {
    const auto url = URL::fromPage(each.text);
    ASSERT_TRUE(url) << each.text;
    EXPECT_EQ(url->absoluteString(), each.expected);
    EXPECT_EQ(URL::fromPage(url->absoluteString()), url) << "escaped twice: " << each.text;
  }
  EXPECT_FALSE(URL::fromPage(""));
}

}  // namespace
}  // namespace valdren::platform
