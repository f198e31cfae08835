#include "platform/base/Json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace valdren::platform {
namespace {

std::string nested(int levels) {
  return std::string(levels, '[') + std::string(levels, ']');
}

Value nestedValue(int levels) {
  Value value = Array{};
  while (--levels > 0) value = levels % 2 ? Value(Dictionary{{"k", value}}) : Value(Array{value});
  return value;
}

TEST(Json, ReadsBackWhatItWrites) {
  const Dictionary all{{"text", "a\"b\\c\n\t/\xc3\xa9\xf0\x9f\x8e\xb5"},
                       {"nul", std::string_view("a\0b", 3)},
                       {"yes", true},
                       {"null", nullptr},
                       {"least", std::numeric_limits<std::int64_t>::min()},
                       {"most", std::numeric_limits<std::int64_t>::max()},
                       {"tenth", 0.1},
                       {"huge", 1.7976931348623157e308},
                       {"", Array{1, Dictionary{{"x", Array{}}}, "y"}}};
  const auto text = writeJson(all);
  ASSERT_TRUE(text);
  EXPECT_EQ(text->find_first_of("\n "), std::string::npos);
  EXPECT_EQ(parseJson(*text), Value(all));
  const auto indented = writeIndentedJson(all);
  ASSERT_TRUE(indented);
  EXPECT_EQ(parseJson(*indented), Value(all));
}

TEST(Json, WritesWholeNumbersWithoutAFractionAndIndentsForPeople) {
  EXPECT_EQ(writeJson(Array{320.0, -0.0, 1.5, 3, Date(10.0)}), "[320,0,1.5E0,3,10]");
  EXPECT_EQ(
      writeIndentedJson(Dictionary{{"a", 1}, {"b", Array{"x", Dictionary{}}}, {"c", Array{}}}),
      "{\n  \"a\": 1,\n  \"b\": [\n    \"x\",\n    {}\n  ],\n  \"c\": []\n}\n");
}

TEST(Json, ReadsAndWritesDownToFiveHundredAndTwelveLevels) {
  EXPECT_TRUE(parseJson(nested(512)));
  EXPECT_FALSE(parseJson(nested(513)));
  EXPECT_FALSE(parseJson(std::string(1'000'000, '[')));
  EXPECT_TRUE(writeJson(nestedValue(512)));
  EXPECT_FALSE(writeJson(nestedValue(513)));
  EXPECT_FALSE(writeIndentedJson(nestedValue(513)));
}

TEST(Json, IsNotWrittenFromWhatItCannotHold) {
  for (const Value& value :
       {Value(std::nan("")), Value(-std::numeric_limits<double>::infinity()), Value("\xff"),
        Value("a\xc3"), Value(Date(std::nan(""))), Value(Dictionary{{"\xfe", 1}})}) {
    EXPECT_FALSE(writeJson(Array{value})) << value.description();
    EXPECT_FALSE(writeIndentedJson(Array{1, value}));
  }
}

}  // namespace
}  // namespace valdren::platform
