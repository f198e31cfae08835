// What an ad server says of an ad, in the headers of its answer.
#pragma once

namespace valdren {

/// Addresses to ping when the ad is shown, with blanks between them.
inline constexpr const char* kVADHeaderTrackingURLs = "X-Urvo-Tracking-Urls";
/// The same for when it is clicked.
inline constexpr const char* kVADHeaderClickTrackingURLs = "X-Urvo-Click-Tracking-Urls";
/// "portrait", "landscape" or "any".
inline constexpr const char* kVADHeaderOrientation = "X-Urvo-Orientation";
/// Seconds that an interstitial is waited for.
inline constexpr const char* kVADHeaderInterstitialTimeout = "X-Urvo-Interstitial-Timeout";
/// Seconds to the next ad.
inline constexpr const char* kVADHeaderRefreshRate = "X-Urvo-Refresh-Rate";

}  // namespace valdren
