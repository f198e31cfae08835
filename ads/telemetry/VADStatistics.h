// What the user did with earlier ads, for the next request.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "ads/protocol/Parameters.h"
#include "ads/telemetry/VADStatisticsCore.h"
#include "ads/telemetry/VADTimingManager.h"
#include "platform/base/URL.h"

namespace valdren {

/// Counters and flags are kept in the user defaults as soon as they change, latencies as named
/// timings when the application ends. Main thread only.
class VADStatistics : public platform::WeakTarget {
 public:
  /// Made on first use; lives until it is released.
  static VADStatistics& sharedStatistics();
  /// Saves and forgets the shared object; the next use makes a new one, with a session of its own.
  static void releaseSharedStatistics();
  VADStatistics();
  ~VADStatistics();
  VADStatistics(const VADStatistics&) = delete;
  VADStatistics& operator=(const VADStatistics&) = delete;

  std::uint32_t sessionId() const { return sessionId_; }
  /// The session number that a result of `random()` (0 to 2147483647) gives.
  static std::uint32_t sessionIdFromRandom(long random);

  // Counters. The increments give nothing but `incrementAdRequestCount`, which gives the new count.
  void incrementClickCount();
  void resetClickCount();
  void incrementPageNavigationCount();
  void resetPageNavigationCount();
  void incrementSSLPageNavigationCount();
  void resetSSLPageNavigationCount();
  std::int32_t incrementAdRequestCount();
  void setAdRequestCount(std::int32_t count);
  std::int32_t adRequestCount() const;

  // Flags.
  void setFlagWithParameterName(const char* name);
  void resetFlagWithParameterName(const char* name);
  void setClickBackgroundedApp();
  void resetClickBackgroundedApp();
  void setBreakOutToSafari();
  void resetBreakOutToSafari();
  void setAppOpenInterstitialTimeOut();
  void resetAppOpenInterstitialTimeOut();
  void setAppOpenInterstitialNoFill();
  void resetAppOpenInterstitialNoFill();

  // Timings, by name. What is not there is left alone.
  static const std::vector<std::string>& allTimingNames();
  void startTimingNamed(const char* name);
  void endTimingNamed(const char* name);
  void removeTimingNamed(const char* name);
  std::shared_ptr<VADTiming> timingNamed(const char* name) const;
  /// Whether a click is being timed.
  bool isTimingClick() const;

  /// Notes the ticket of a completed ping to the ad network's own hosts.
  void addClickTrackingURL(const platform::URL& url);
  /// The domain that `addClickTrackingURL` knows as the ad network's own: a host counts when it is
  /// this domain or ends with a "." and it. "ads.valdren.example" at first.
  static void setAdNetworkDomain(const std::string& domain);

  /// Keeps everything now.
  void synchronize();
  /// What the next request is to carry. Clears most of it, as it travels once; that it was cleared
  /// is kept with the next change, when told to, and when the application ends.
  platform::Dictionary parameters();
  /// Counts and times a click on the URL; the URL to go on with.
  platform::URL urlForClick(const platform::URL& url);
  /// The same; a click that opens no URL, but a page in a text, counts as well.
  std::optional<platform::URL> urlForClick(const std::optional<platform::URL>& url);

 private:
  /// Gives the timing of the click.
  std::shared_ptr<VADTiming> beginClick();
  platform::Dictionary takeTimings();
  void putCounters(platform::Dictionary& parameters) const;
  std::int32_t increment(const char* counter);
  void setCounter(const char* counter, std::int32_t count);
  void forgetWhatTravelled();
  std::uint32_t millisecondsSinceClick(const VADTiming& click) const;

  std::uint32_t sessionId_;
  VADStatisticsCore statistics_{"shared"};
  VADTimingManager timingMgr_{"shared"};
};

}  // namespace valdren
