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

std::string hexadecimal(const std::string& data) {
  return run("od -An -v -tx1 | tr -d ' \\n'", data).output;
}

/// The receiver's view of a coordinate location: the vector in hexadecimal, and the text.
struct Opened {
  std::string vector;
  std::string padded;
  std::string text;
};

Opened opened(const std::string& uule) {
  EXPECT_TRUE(uule.starts_with("e1+")) << uule;
  EXPECT_EQ(uule.find_first_of("=/", 3), std::string::npos) << uule;
  EXPECT_EQ(uule.find('+', 3), std::string::npos) << uule;
  const std::string data = decoded(uule.substr(3));
  Opened result;
  result.vector = hexadecimal(data.substr(0, 16));
  const std::string command =
      "openssl enc -d -aes-128-cbc -K 5c1e9a07b3d84f26e0a1c9773b5d0e8f -iv " + result.vector;
  const auto text = run(command, data.substr(16));
  EXPECT_EQ(text.status, 0) << text.errors;
  result.text = text.output;
  result.padded = run(command + " -nopad", data.substr(16)).output;
  return result;
}

TEST(Location, IsPreciseOnlyAwayFromTheZeroLines) {
  const float nan = std::nanf("");
  const float least = std::numeric_limits<float>::epsilon();
  const struct {
    float latitude;
    float longitude;
    bool precise;
  } cases[] = {
      {37.4f, -122.1f, true},        {0.0f, 12.5f, false},
      {12.5f, 0.0f, false},          {90.0f, 180.0f, true},
      {-90.0f, -180.0f, true},       {90.0001f, 0.5f, false},
      {0.5f, 180.001f, false},       {nan, 12.5f, false},
      {12.5f, nan, false},           {least, 12.5f, false},
      {2 * least, -2 * least, true}, {std::numeric_limits<float>::infinity(), 1.0f, false},
  };
  for (const auto& each : cases) {
    const auto location = VADLocation::initWithLatitude(each.latitude, each.longitude, 10);
    EXPECT_EQ(location != nullptr, each.precise) << each.latitude << ", " << each.longitude;
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
  const struct {
    float accuracy;
    const char* radius;
  } cases[] = {{1e30f, "2147483647"},
               {-1e30f, "-2147483648"},
               {std::nanf(""), "0"},
               {2.0009f, "2000"},
               {-1.9999f, "-1999"}};
  for (const auto& each : cases) {
    const Opened sent = opened(
        *VADLocation::initWithLatitude(89.9f, 179.9f, each.accuracy)->oolongRepresentation());
    EXPECT_TRUE(sent.text.ends_with(std::string(" radius: ") + each.radius)) << sent.text;
    EXPECT_EQ(sent.vector, "e8030000d1070000ba0b0000a30f0000");
  }
  clock.setNow(-1e300);
  const Opened sent = opened(*VADLocation::initWithLatitude(1, 2, 3)->oolongRepresentation());
  EXPECT_EQ(sent.vector, "00000080000000800000008000000080");
}

TEST(Location, ATextOfWholeBlocksGetsAnotherBlockOfPadding) {
  FakeClock clock;
  bool sawWholeBlock = false;
  for (const float accuracy : {0.001f, 0.01f, 0.1f, 1.f, 10.f, 100.f, 1e3f, 1e4f, 1e5f, 1e6f}) {
    for (const float latitude : {1e-6f, 1e-5f, 1e-4f, 1e-3f, 1e-2f, 0.1f, 1.f, 10.f}) {
      const auto uule =
          VADLocation::initWithLatitude(latitude, 1, accuracy)->oolongRepresentation();
      const Opened sent = opened(*uule);
      ASSERT_EQ(sent.padded.size(), (sent.text.size() / 16 + 1) * 16);
      if (sent.text.size() % 16) continue;
      sawWholeBlock = true;
      EXPECT_EQ(sent.padded.substr(sent.text.size()), std::string(16, '\x10'));
      return;
    }
  }
  EXPECT_TRUE(sawWholeBlock);
}

TEST(Location, ADescriptionTravelsEncoded) {
  FakeClock clock;
  clock.setNow(1577836800.25);
  const struct {
    const char* description;
    const char* sent;
  } cases[] = {{"a\"b", "a'b"}, {"Z\xc3\xbcrich \\ '", "Z\xc3\xbcrich \\ '"}, {"\"", "'"}};
  for (const auto& each : cases) {
    const auto location = VADLocation::initWithDescription(each.description);
    EXPECT_FALSE(location->isPreciseLocation());
    EXPECT_EQ(location->description(), each.description);
    const std::string uule = *location->oolongRepresentation();
    ASSERT_TRUE(uule.starts_with("a+"));
    EXPECT_EQ(uule.find('='), std::string::npos);
    EXPECT_EQ(decoded(uule.substr(2)),
              std::string("role: 6 producer: 24 historical_role: 1 historical_producer: 12 "
                          "timestamp: 1577836800250000 loc: \"") +
                  each.sent + "\"");
  }
  const auto sizeFor = [](std::size_t quotes) {
    const auto location = VADLocation::initWithDescription(std::string(quotes, '"'));
    return decoded(location->oolongRepresentation()->substr(2)).size();
  };
  EXPECT_EQ(sizeFor(3'000'000), sizeFor(1) + 2'999'999);
}

TEST(Location, EqualPlacesAreEqualAtAnyTime) {
  FakeClock clock;
  const auto place = VADLocation::initWithLatitude(1, 2, 3);
  clock.advance(100);
  EXPECT_TRUE(place->isEqual(*VADLocation::initWithLatitude(1, 2, 3)));
  EXPECT_FALSE(place->isEqual(*VADLocation::initWithLatitude(1.0001f, 2, 3)));
  EXPECT_FALSE(place->isEqual(*VADLocation::initWithLatitude(1, 2.0001f, 3)));
  EXPECT_FALSE(place->isEqual(*VADLocation::initWithLatitude(1, 2, 3.0001f)));
  EXPECT_FALSE(place->isEqual(*VADLocation::initWithDescription(place->description())));
  const auto named = VADLocation::initWithDescription("Bern");
  EXPECT_TRUE(named->isEqual(*VADLocation::initWithDescription("Bern")));
  EXPECT_FALSE(named->isEqual(*VADLocation::initWithDescription("bern")));
  EXPECT_EQ(place->description(), "1.000000,2.000000");
}

TEST(Location, ACopyKeepsItsTime) {
  FakeClock clock;
  for (const auto& source :
       {VADLocation::initWithLatitude(1, 2, 3), VADLocation::initWithDescription("Bern")}) {
    source->setTimestamp(12345.5);
    const auto copy = source->copy();
    EXPECT_EQ(copy->timestamp(), 12345.5);
    EXPECT_TRUE(copy->isEqual(*source));
    EXPECT_EQ(copy->oolongRepresentation(), source->oolongRepresentation());
  }
}

}  // namespace
