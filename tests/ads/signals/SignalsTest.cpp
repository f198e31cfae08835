#include "ads/signals/Signals.h"

#include <gtest/gtest.h>

#include "ads/signals/EncryptedSignals.h"
#include "tests/support/Fakes.h"
#include "tests/support/Printing.h"

namespace {

using platform::Array;
using platform::Dictionary;
using valdren::decryptSignals;
using namespace valdren;

Dictionary openedPair(const std::string& text, const std::string& key) {
  EXPECT_TRUE(text.starts_with(key + "=")) << text;
  const std::string encrypted = text.substr(key.size() + 1);
  EXPECT_EQ(encrypted.find_first_not_of(
                "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_"),
            std::string::npos)
      << "it needs an escape in a query";
  return decryptSignals(encrypted).value_or(Dictionary());
}

Dictionary requestSignals() {
  std::string text;
  EXPECT_NE(vad_gmrs(text), 0);
  return openedPair(text, "ms");
}

Dictionary clickSignals(std::string_view identifier = "id") {
  std::string text;
  EXPECT_NE(vad_gmcs(identifier, text), 0);
  return openedPair(text, "cs");
}

/// One test, because the signals live as long as the process.
TEST(Signals, AreWhatThePersonDidInsideTheAdAndNoMore) {
  quorbel_tests::FakeClock clock;
  std::string text = "untouched";
  EXPECT_EQ(vad_gmrs(text), 0) << "no ad was announced yet";
  EXPECT_EQ(text, "untouched");
  EXPECT_EQ(
      clickSignals("early"),
      (Dictionary{{"type", 0}, {"sdk", ""}, {"viewed", 0}, {"touches", Array{}}, {"ai", "early"}}))
      << "without an ad, nothing about the machine may show, such as how long it runs";

  vad_gig(4, "sdk-1");
  EXPECT_EQ(requestSignals(),
            (Dictionary{{"type", 4}, {"sdk", "sdk-1"}, {"viewed", 0}, {"touches", Array{}}}));

  clock.advance(1.5);
  EXPECT_NE(vad_htg(10, 20, 80), 0);
  clock.advance(1);
  EXPECT_NE(vad_htg(-1, -1, -1), 0);
  const Array touches{Array{10, 20, 80, 1500}, Array{-1, -1, -1, 2500}};
  EXPECT_EQ(
      clickSignals(),
      (Dictionary{
          {"type", 4}, {"sdk", "sdk-1"}, {"viewed", 2500}, {"touches", touches}, {"ai", "id"}}));

  clock.advance(27.5);
  vad_gig(5, "sdk-2");
  const Dictionary expected{{"type", 5}, {"sdk", "sdk-2"}, {"viewed", 30000}, {"touches", touches}};
  EXPECT_EQ(requestSignals(), expected) << "a request tells of the ad before it";
  EXPECT_EQ(requestSignals(), expected);
  EXPECT_EQ(*clickSignals().find("touches"), platform::Value(Array{}))
      << "touches of the former ad are no touches of this one";

  vad_gig(5, "sdk-2");
  EXPECT_EQ(*requestSignals().find("touches"), platform::Value(Array{})) << "they travel once";

  // Their number is bounded, whatever a page sends.
  for (int touch = 0; touch < 10'000; ++touch) vad_htg(touch, 2147483647, -2147483647 - 1);
  const Dictionary signals = clickSignals(std::string(1'000'000, '\xc3'));
  const Array& last = *signals.find("touches")->array();
  EXPECT_EQ(last.size(), 16u);
  EXPECT_EQ(last.back().array()->front().integerValue(), 9999) << "the last ones count";
  EXPECT_LE(signals.text("ai")->size(), 1000u);
}

TEST(Signals, DifferEachTimeAndOpenOnlyUnchanged) {
  std::string first;
  std::string second;
  vad_gmcs("x", first);
  vad_gmcs("x", second);
  EXPECT_NE(first, second) << "the same signals can be recognised";
  std::string encrypted = first.substr(3);
  EXPECT_TRUE(decryptSignals(encrypted));
  encrypted[20] = encrypted[20] == 'A' ? 'B' : 'A';
  EXPECT_FALSE(decryptSignals(encrypted));
  for (const char* text : {"", "A", "====", "not encrypted at all"})
    EXPECT_FALSE(decryptSignals(text));
}

}  // namespace
