#include "ads/request/VADLocation.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "ads/protocol/Secrets.h"
#include "ads/support/VAD_VTMStringEncoding.h"
#include "platform/base/Crypto.h"
#include "platform/base/Date.h"

namespace valdren {
namespace {

constexpr float kEpsilon = std::numeric_limits<float>::epsilon();
constexpr std::size_t kBlock = 16;

/// In decimal, whatever the locale.
std::string fixed(double value, int decimals) {
  char buffer[400];  // the largest double has 309 digits before the point
  const auto written =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  return std::string(buffer, written.ptr);
}

/// Truncated and saturated; 0 for NaN.
std::int32_t integer32(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(value)) return 0;
  return static_cast<std::int32_t>(std::clamp(value, double{Limits::min()}, double{Limits::max()}));
}

std::string prefix(double timestamp) {
  return "role: 6 producer: 24 historical_role: 1 historical_producer: 12 timestamp: " +
         fixed(timestamp * 1'000'000, 0);
}

std::string encode(const std::string& data) {
  const auto encoding = VAD_VTMStringEncoding::rfc4648Base64WebsafeStringEncoding();
  encoding->setDoPad(false);
  return encoding->encode(data);
}

void padToWholeBlocks(std::string& text) {
  const std::size_t missing = kBlock - text.size() % kBlock;
  text.append(missing, static_cast<char>(missing));
}

std::array<std::uint8_t, kBlock> vectorFrom(double timestamp) {
  std::array<std::uint8_t, kBlock> vector{};
  for (std::size_t byte = 0; byte < kBlock; ++byte) {
    const std::size_t number = byte / 4 + 1;
    const auto word = static_cast<std::uint32_t>(integer32(timestamp * double(number)));
    vector[byte] = static_cast<std::uint8_t>(word >> (8 * (byte % 4)));
  }
  return vector;
}

bool isClose(float left, float right) {
  return std::abs(left - right) < kEpsilon;
}

}  // namespace

VADLocation::VADLocation() : timestamp_(platform::Date::now().secondsSince1970()) {}

std::shared_ptr<VADLocation> VADLocation::initWithLatitude(float latitude, float longitude,
                                                           float accuracy) {
  std::shared_ptr<VADLocation> location(new VADLocation);
  location->latitude_ = latitude;
  location->longitude_ = longitude;
  location->accuracy_ = accuracy;
  return location->isPreciseLocation() ? location : nullptr;
}

std::shared_ptr<VADLocation> VADLocation::initWithDescription(const std::string& description) {
  if (description.empty()) return nullptr;
  std::shared_ptr<VADLocation> location(new VADLocation);
  location->description_ = description;
  return location;
}

bool VADLocation::isPreciseLocation() const {
  const float latitude = std::abs(latitude_);
  const float longitude = std::abs(longitude_);
  return latitude <= 90 && longitude <= 180 && latitude > kEpsilon && longitude > kEpsilon;
}

std::string VADLocation::description() const {
  if (!description_.empty()) return description_;
  if (!isPreciseLocation()) return "";
  return fixed(latitude_, 6) + "," + fixed(longitude_, 6);
}

bool VADLocation::isEqual(const VADLocation& other) const {
  if (isPreciseLocation() != other.isPreciseLocation()) return false;
  if (!isPreciseLocation()) return description_ == other.description_;
  return isClose(latitude_, other.latitude_) && isClose(longitude_, other.longitude_) &&
         isClose(accuracy_, other.accuracy_);
}

std::shared_ptr<VADLocation> VADLocation::copy() const {
  auto made = isPreciseLocation() ? initWithLatitude(latitude_, longitude_, accuracy_)
                                  : initWithDescription(description_);
  if (made) made->timestamp_ = timestamp_;
  return made;
}

std::optional<std::string> VADLocation::oolongRepresentation() const {
  if (isPreciseLocation()) return preciseRepresentation();
  return describedRepresentation();
}

std::string VADLocation::describedRepresentation() const {
  std::string quoted = description_;
  std::replace(quoted.begin(), quoted.end(), '"', '\'');
  return kVADPlainLocation + encode(prefix(timestamp_) + " loc: \"" + quoted + "\"");
}

std::optional<std::string> VADLocation::preciseRepresentation() const {
  const auto scaled = [](float value, double factor) {
    return std::to_string(integer32(double{value} * factor));
  };
  std::string text = prefix(timestamp_) + " latlng <latitude_e7: " + scaled(latitude_, 1e7) +
                     " longitude_e7: " + scaled(longitude_, 1e7) +
                     "> radius: " + scaled(accuracy_, 1000);
  padToWholeBlocks(text);
  const auto vector = vectorFrom(timestamp_);
  const auto encrypted = platform::encryptAES128CBC(text, kVADLocationSecret, vector);
  if (!encrypted) return std::nullopt;
  return kVADSealedLocation + encode(std::string(vector.begin(), vector.end()) + *encrypted);
}

}  // namespace valdren
