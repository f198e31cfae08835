#include "ads/request/VADLocation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/Fakes.h"
#include "tests/support/Process.h"

namespace {

using quorbel_tests::FakeClock;
using quorbel_tests::run;
using valdren::VADLocation;

/// Decodes web-safe base64 without padding, with the system's command.
std::string decoded(std::string text) {
  while (text.size() % 4) text += '=';
  return run("basenc --base64url -d", text).output;
}

/// The receiver's view of a coordinate location: the vector in hexadecimal, and the text.
struct Opened {
  std::string vector;
  std::string text;
};

Opened opened(const std::string& uule) {
  EXPECT_TRUE(uule.starts_with("e1+")) << uule;
  EXPECT_EQ(uule.find_first_of("=/", 3), std::string::npos) << uule;
  EXPECT_EQ(uule.find('+', 3), std::string::npos) << uule;
  const std::string data = decoded(uule.substr(3));
  const std::string vector = run("od -An -v -tx1 | tr -d ' \\n'", data.substr(0, 16)).output;
  const auto text =
      run("openssl enc -d -aes-128-cbc -K 5c1e9a07b3d84f26e0a1c9773b5d0e8f -iv " + vector,
          data.substr(16));
  EXPECT_EQ(text.status, 0) << text.errors;
  return {vector, text.output};
}

TEST(Location, IsPreciseOnlyAwayFromTheZeroLines) {
  const float nan = std::nanf("");
  const float least = std::numeric_limits<float>::epsilon();
  const std::tuple<float, float, bool> cases[] = {
      {37.4f, -122.1f, true},        {0.0f, 12.5f, false},
      {12.5f, 0.0f, false},          {90.0f, 180.0f, true},
      {-90.0f, -180.0f, true},       {90.0001f, 0.5f, false},
      {0.5f, 180.001f, false},       {nan, 12.5f, false},
      {12.5f, nan, false},           {least, 12.5f, false},
      {2 * least, -2 * least, true}, {std::numeric_limits<float>::infinity(), 1.0f, false},
  };
  for (const auto& [latitude, longitude, precise] : cases) {
    const auto location = VADLocation::initWithLatitude(latitude, longitude, 10);
    EXPECT_EQ(location != nullptr, precise) << latitude << ", " << longitude;
  }
  EXPECT_FALSE(VADLocation::initWithDescription(""));
}

TEST(Location, CoordinatesTravelEncryptedToTheLetter) {
  FakeClock clock;
  clock.setNow(1577836800.25);
  const auto location = VADLocation::initWithLatitude(37.4219999f, -122.084f, 65.0f);
  const Opened sent = opened(*location->oolongRepresentation());
  EXPECT_EQ(sent.text,
            "role: 6 producer: 24 historical_role: 1 historical_producer: 12 timestamp: "
            "1577836800250000 latlng <latitude_e7: 374220008 longitude_e7: -1220839996> "
            "radius: 65000");
  // The time in seconds, then its double, triple and fourfold, which saturate.
  EXPECT_EQ(sent.vector, "00e10b5effffff7fffffff7fffffff7f");
}

TEST(Location, CoordinatesSaturate) {
  FakeClock clock;
  clock.setNow(1000.75);
  bool sawWholeBlocks = false;  // which take another block of padding
  const std::pair<float, const char*> cases[] = {{1e30f, "2147483647"},
                                                 {-1e30f, "-2147483648"},
                                                 {std::nanf(""), "0"},
                                                 {2.0009f, "2000"},
                                                 {-1.9999f, "-1999"}};
  for (const auto& [accuracy, radius] : cases) {
    const Opened sent =
        opened(*VADLocation::initWithLatitude(9.9f, 179.9f, accuracy)->oolongRepresentation());
    EXPECT_TRUE(sent.text.ends_with(std::string(" radius: ") + radius)) << sent.text;
    EXPECT_EQ(sent.vector, "e8030000d1070000ba0b0000a30f0000");
    sawWholeBlocks |= sent.text.size() % 16 == 0;
  }
  EXPECT_TRUE(sawWholeBlocks);
}

TEST(Location, ADescriptionTravelsEncoded) {
  FakeClock clock;
  clock.setNow(1577836800.25);
  const auto location = VADLocation::initWithDescription("Z\xc3\xbcrich \\ ' \"\"");
  EXPECT_FALSE(location->isPreciseLocation());
  const std::string uule = *location->oolongRepresentation();
  ASSERT_TRUE(uule.starts_with("a+"));
  EXPECT_EQ(uule.find('='), std::string::npos);
  EXPECT_EQ(decoded(uule.substr(2)),
            "role: 6 producer: 24 historical_role: 1 historical_producer: 12 "
            "timestamp: 1577836800250000 loc: \"Z\xc3\xbcrich \\ ' ''\"");
}

TEST(Location, EqualPlacesAreEqualAtAnyTimeAndACopyKeepsItsTime) {
  FakeClock clock;
  using Pointer = std::shared_ptr<VADLocation>;
  const auto at = VADLocation::initWithLatitude;
  const auto named = VADLocation::initWithDescription;
  const std::pair<Pointer, std::vector<Pointer>> cases[] = {
      {at(1, 2, 3), {at(1.0001f, 2, 3), at(1, 2.0001f, 3), at(1, 2, 3.0001f), named("1,2")}},
      {named("Bern"), {named("bern"), at(1, 2, 3)}}};
  clock.advance(100);
  EXPECT_TRUE(cases[0].first->isEqual(*at(1, 2, 3)));
  EXPECT_TRUE(cases[1].first->isEqual(*named("Bern")));
  for (const auto& [place, others] : cases) {
    for (const auto& other : others) EXPECT_FALSE(place->isEqual(*other)) << other->description();
    place->setTimestamp(12345.5);
    const auto copy = place->copy();
    EXPECT_TRUE(copy->isEqual(*place));
    EXPECT_EQ(copy->oolongRepresentation(), place->oolongRepresentation());
  }
}

}  // namespace
