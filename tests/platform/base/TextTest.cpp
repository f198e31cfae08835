#include "platform/base/Text.h"

#include <gtest/gtest.h>

#include "platform/base/Log.h"

namespace valdren::platform {
namespace {

TEST(Text, RepairsExactlyWhatIsNotUTF8) {
  const struct {
    std::string_view text;
    std::string_view repaired;
  } cases[] = {
      {"", ""},
      {"plain", "plain"},
      {"\xc3\xa9\xf0\x9f\x8e\xb5", "\xc3\xa9\xf0\x9f\x8e\xb5"},
      {{"a\0b", 3}, {"a\0b", 3}},
      {"a\xff\xfe z", "a\xef\xbf\xbd\xef\xbf\xbd z"},
      {"cut \xf0\x9f\x8e", "cut \xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},
      {"\xc0\xaf", "\xef\xbf\xbd\xef\xbf\xbd"},                  // an overlong "/"
      {"\xed\xa0\x80", "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"},  // half of a pair
      {{"\0\xff\0", 3}, {"\0\xef\xbf\xbd\0", 5}},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(repairedUTF8(each.text), each.repaired);
    EXPECT_EQ(isUTF8(each.text), each.text == each.repaired) << each.text;
    EXPECT_TRUE(isUTF8(each.repaired));
  }
}

TEST(Text, LowersLettersOfAllScripts) {
  EXPECT_EQ(lowercase("PT-pt"), "pt-pt");
  EXPECT_EQ(lowercase("\xc3\x89Z"), "\xc3\xa9z");
  EXPECT_EQ(lowercase(std::string_view("\xc3\x89\0Z", 4)), std::string_view("\xc3\xa9\0z", 4));
  EXPECT_EQ(lowercase("A\xff"), "a\xff");
}

TEST(Text, TrimsWhiteSpaceOnly) {
  EXPECT_EQ(trimmed(" \t\r\na b\n "), "a b");
  EXPECT_EQ(trimmed("\ufeff\u3000 a\u00a0b\u2029\v\u0085"), "a\u00a0b");
  EXPECT_EQ(trimmed("\xa0 \xc2"), "\xa0 \xc2") << "pieces of characters stay";
  EXPECT_EQ(trimmed("\u00a0\u2003\u3000\n\u200a"), "");
}

TEST(Log, WritesOneLineWhateverTheTextHolds) {
  testing::internal::CaptureStderr();
  log("<Valdren> a\nValdren-Message: forged\r\x1b[2J\x01 %s \xff end");
  log(std::string(8'000'000, 'x') + "end");
  const std::string lines = testing::internal::GetCapturedStderr();
  EXPECT_NE(lines.find("<Valdren> a\\nValdren-Message: forged\\x0d\\x1b[2J\\x01 %s "),
            std::string::npos)
      << lines.substr(0, 200);
  EXPECT_EQ(lines.find('\x1b'), std::string::npos);
  EXPECT_NE(lines.find(" end\n"), std::string::npos);
  EXPECT_NE(lines.find("xxx ...\n"), std::string::npos) << "an endless line is cut";
  EXPECT_LT(lines.size(), 5000u);
}

}  // namespace
}  // namespace valdren::platform
