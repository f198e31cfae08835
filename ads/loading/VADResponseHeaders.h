// What an ad server's response headers ask for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ads/protocol/Headers.h"
#include "platform/net/URLConnection.h"

namespace valdren {

/// A list of tracking URLs takes no more than this; what is beyond is left out, so that no server
/// can make a client fire pings without end.
inline constexpr std::size_t kVADMostTrackingURLs = 200;

/// The header's value; none when it is missing or empty.
std::optional<std::string_view> nonEmptyHeader(const platform::Headers& headers,
                                               std::string_view name);

/// How headers read in the log.
std::string describedHeaders(const platform::Headers& headers);

/// The `VADErrorCode` of an ad server's answer with this status, or of none at all. Logs what the
/// publisher may have done wrong.
std::int32_t errorCodeForStatus(int httpStatusCode);

/// Appends the URLs in the header, which stand between blanks. What is no URL is left out.
void appendURLsFromHeader(std::vector<platform::URL>& urls, const platform::Headers& headers,
                          std::string_view name);

/// Keeps the time-out that the headers set for interstitials in the user defaults, under
/// "applicationTimeout", in seconds.
void storeInterstitialTimeout(const platform::Headers& headers);

}  // namespace valdren
