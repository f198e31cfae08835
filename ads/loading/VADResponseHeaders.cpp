#include "ads/loading/VADResponseHeaders.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "ads/support/VADErrorCode.h"
#include "ads/support/VADMacros.h"
#include "platform/base/Log.h"
#include "platform/base/Text.h"
#include "platform/storage/UserDefaults.h"

namespace valdren {
namespace {

constexpr const char* kInterstitialTimeoutKey = "applicationTimeout";

/// The text's leading number in single precision, the largest such number when it does not fit; 0
/// for a text that begins with none.
float floatValue(std::string_view text) {
  constexpr double kLargest = std::numeric_limits<float>::max();
  const double number = platform::Value(text).doubleValue();
  return std::isfinite(number) ? static_cast<float>(std::clamp(number, -kLargest, kLargest)) : 0;
}

}  // namespace

std::optional<std::string_view> nonEmptyHeader(const platform::Headers& headers,
                                               std::string_view name) {
  const auto header = headers.find(name);
  if (header == headers.end() || header->second.empty()) return std::nullopt;
  return header->second;
}

std::string describedHeaders(const platform::Headers& headers) {
  platform::Dictionary dictionary;
  for (const auto& [name, value] : headers) dictionary.set(name, platform::repairedUTF8(value));
  return VADMacros::jsonify(dictionary);
}

std::int32_t errorCodeForStatus(int httpStatusCode) {
  if (httpStatusCode > 400) return kVADErrorServerError;
  if (httpStatusCode < 400) return kVADErrorNetworkError;
  platform::log(
      "<Valdren> Server rejected ad parameters.  Typically this is because the ad unit ID is "
      "incorrect.");
  return kVADErrorInvalidRequest;
}

void appendURLsFromHeader(std::vector<platform::URL>& urls, const platform::Headers& headers,
                          std::string_view name) {
  std::string_view rest = nonEmptyHeader(headers, name).value_or("");
  while (!rest.empty() && urls.size() < kVADMostTrackingURLs) {
    const std::size_t blank = std::min(rest.find(' '), rest.size());
    if (auto url = platform::URL::parse(platform::trimmed(rest.substr(0, blank)))) {
      urls.push_back(*std::move(url));
    }
    rest.remove_prefix(std::min(blank + 1, rest.size()));
  }
}

void storeInterstitialTimeout(const platform::Headers& headers) {
  const auto header = nonEmptyHeader(headers, kVADHeaderInterstitialTimeout);
  if (!header) return;
  const platform::Value seconds(static_cast<double>(floatValue(*header)));
  auto& defaults = platform::UserDefaults::shared();
  defaults.setObject(kInterstitialTimeoutKey, seconds);
  defaults.synchronize();
}

}  // namespace valdren
