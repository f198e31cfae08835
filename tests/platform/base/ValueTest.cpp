#include "platform/base/Value.h"

#include <gtest/gtest.h>

#include <limits>

namespace valdren::platform {
namespace {

TEST(Dictionary, KeepsInsertionOrderThroughReplacementAndRemoval) {
  Dictionary dictionary;
  for (int number = 0; number < 40; ++number) dictionary.set("k" + std::to_string(number), number);
  dictionary.set("k3", "three");
  dictionary.remove("k5");
  dictionary.remove("absent");
  dictionary.setIfPresent("absent", std::nullopt);
  ASSERT_EQ(dictionary.size(), 39u);
  EXPECT_EQ(dictionary.begin()[3].key, "k3");
  EXPECT_EQ(*dictionary.text("k3"), "three");
  EXPECT_EQ(dictionary.begin()[5].key, "k6");
  EXPECT_EQ(dictionary.find("k39")->integerValue(), 39);
  EXPECT_FALSE(dictionary.contains("k5"));
}

TEST(Value, ReadsNumbersFromWhateverHoldsThem) {
  struct Case {
    Value value;
    std::int64_t integer;
    double number;
  };
  constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();
  const Case cases[] = {
      {nullptr, 0, 0},      {true, 1, 1},     {-3, -3, -3},
      {2.9, 2, 2.9},        {-2.9, -2, -2.9}, {1e300, kLargest, 1e300},
      {"  42px", 42, 42},   {"1.5", 1, 1.5},  {"+7", 7, 7},
      {"nonsense", 0, 0},   {"", 0, 0},       {"99999999999999999999", kLargest, 1e20},
      {Dictionary{}, 0, 0},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(each.value.integerValue(), each.integer) << each.value.description();
    EXPECT_DOUBLE_EQ(each.value.doubleValue(), each.number) << each.value.description();
  }
  EXPECT_EQ(Value(std::numeric_limits<double>::quiet_NaN()).integerValue(), 0);
}

}  // namespace
}  // namespace valdren::platform
