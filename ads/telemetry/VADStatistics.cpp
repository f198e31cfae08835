#include "ads/telemetry/VADStatistics.h"

#include <cmath>
#include <cstdlib>
#include <utility>

#include "ads/protocol/Parameters.h"
#include "ads/signals/Signals.h"
#include "ads/support/VADNetworkUtilities.h"
#include "ads/support/VADNotification.h"
#include "platform/application/Application.h"
#include "platform/base/MainThread.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Text.h"

namespace valdren {
namespace {

constexpr const char* kDate = "date";
constexpr std::size_t kTicketPrefix = 4;

VADStatistics* theSharedStatistics = nullptr;

std::string& adNetworkDomain() {
  static std::string domain = "ads.valdren.example";
  return domain;
}

bool isOwnHost(const std::string& host) {
  const std::string lower = platform::lowercase(host);
  return lower == adNetworkDomain() || lower.ends_with("." + adNetworkDomain());
}

std::uint32_t truncated(double value) {
  if (!(value > 0)) return 0;
  return value >= 4294967295.0 ? 4294967295U : static_cast<std::uint32_t>(value);
}

}  // namespace

VADStatistics& VADStatistics::sharedStatistics() {
  platform::assertMainThread();
  // Not destroyed when the process ends: what it saves itself with may be gone by then.
  if (!theSharedStatistics) theSharedStatistics = new VADStatistics;
  return *theSharedStatistics;
}

void VADStatistics::releaseSharedStatistics() {
  delete std::exchange(theSharedStatistics, nullptr);
}

VADStatistics::VADStatistics() {
  srandom(
      static_cast<unsigned>(static_cast<std::int64_t>(platform::Date::now().secondsSince2001())));
  sessionId_ = sessionIdFromRandom(random());
  platform::NotificationCenter::defaultCenter().addObserver(
      *this, platform::kApplicationWillTerminate,
      [this](const platform::Notification&) { statistics_.savePersistentStatistics(); });
}

VADStatistics::~VADStatistics() {
  platform::NotificationCenter::defaultCenter().removeObserver(*this);
}

std::uint32_t VADStatistics::sessionIdFromRandom(long random) {
  return truncated((static_cast<double>(random) - 1) / 2147483647.0 * 4294967295.0);
}

std::int32_t VADStatistics::increment(const char* counter) {
  const std::int32_t count = statistics_.addValue(1, counter);
  statistics_.savePersistentStatistics();
  return count;
}
void VADStatistics::setCounter(const char* counter, std::int32_t count) {
  statistics_.setNumber(count, counter);
  statistics_.savePersistentStatistics();
}

void VADStatistics::incrementClickCount() {
  increment(kVADParameterPriorClickCount);
}
void VADStatistics::resetClickCount() {
  setCounter(kVADParameterPriorClickCount, 0);
}

void VADStatistics::incrementPageNavigationCount() {
  increment(kVADParameterPriorLandingPageNavCount);
}
void VADStatistics::resetPageNavigationCount() {
  setCounter(kVADParameterPriorLandingPageNavCount, 0);
}

void VADStatistics::incrementSSLPageNavigationCount() {
  increment(kVADParameterPriorLandingPageSSLNavCount);
}
void VADStatistics::resetSSLPageNavigationCount() {
  setCounter(kVADParameterPriorLandingPageSSLNavCount, 0);
}

std::int32_t VADStatistics::incrementAdRequestCount() {
  return increment(kVADParameterTotalAdRequests);
}
void VADStatistics::setAdRequestCount(std::int32_t count) {
  setCounter(kVADParameterTotalAdRequests, count);
}
std::int32_t VADStatistics::adRequestCount() const {
  const auto count = statistics_.numberForKey(kVADParameterTotalAdRequests);
  return count ? static_cast<std::int32_t>(count->integerValue()) : 0;
}

void VADStatistics::setFlagWithParameterName(const char* name) {
  setCounter(name, 1);
}
void VADStatistics::resetFlagWithParameterName(const char* name) {
  statistics_.removeObjectForKey(name);
  statistics_.savePersistentStatistics();
}

void VADStatistics::setClickBackgroundedApp() {
  setFlagWithParameterName(kVADParameterPriorClickBackgroundedApp);
}
void VADStatistics::resetClickBackgroundedApp() {
  resetFlagWithParameterName(kVADParameterPriorClickBackgroundedApp);
}
void VADStatistics::setBreakOutToSafari() {
  setFlagWithParameterName(kVADParameterPriorClickBreakOut);
}
void VADStatistics::resetBreakOutToSafari() {
  resetFlagWithParameterName(kVADParameterPriorClickBreakOut);
}
void VADStatistics::setAppOpenInterstitialTimeOut() {
  setFlagWithParameterName(kVADParameterAppOpenInterstitialTimedOut);
}
void VADStatistics::resetAppOpenInterstitialTimeOut() {
  resetFlagWithParameterName(kVADParameterAppOpenInterstitialTimedOut);
}
void VADStatistics::setAppOpenInterstitialNoFill() {
  setFlagWithParameterName(kVADParameterAppOpenInterstitialNoFill);
}
void VADStatistics::resetAppOpenInterstitialNoFill() {
  resetFlagWithParameterName(kVADParameterAppOpenInterstitialNoFill);
}

const std::vector<std::string>& VADStatistics::allTimingNames() {
  static const std::vector<std::string> names = {
      kVADParameterPriorRequestLatency,       kVADParameterPriorClickLatency,
      kVADParameterPriorClickString,          kVADParameterPriorPreClickLatency,
      kVADParameterPriorClickRedirectLatency, kVADParameterPriorLandingPageLoad,
      kVADParameterPriorLandingPageDuration,  kVADParameterTimeSinceFirstRequest,
  };
  return names;
}

void VADStatistics::startTimingNamed(const char* name) {
  timingMgr_.addTimingWithCategory(name)->start();
}

void VADStatistics::endTimingNamed(const char* name) {
  if (const auto timing = timingNamed(name)) timing->end();
}

void VADStatistics::removeTimingNamed(const char* name) {
  timingMgr_.removeTimingForCategory(name);
}

std::shared_ptr<VADTiming> VADStatistics::timingNamed(const char* name) const {
  return timingMgr_.timingForCategory(name);
}

bool VADStatistics::isTimingClick() const {
  const auto click = timingNamed(kVADParameterPriorClickLatency);
  return click && click->isActive();
}

void VADStatistics::setAdNetworkDomain(const std::string& domain) {
  adNetworkDomain() = platform::lowercase(domain);
}

void VADStatistics::addClickTrackingURL(const platform::URL& url) {
  const std::string path = url.path();
  if (!isOwnHost(url.host()) || path.size() <= kTicketPrefix) return;
  if (const auto click = timingNamed(kVADParameterPriorClickLatency)) {
    click->setValue(path.substr(kTicketPrefix), kVADParameterPriorImpressionTicketString);
  }
}

void VADStatistics::synchronize() {
  statistics_.synchronize();
  timingMgr_.synchronize();
}

platform::Dictionary VADStatistics::parameters() {
  platform::assertMainThread();
  platform::Dictionary parameters{{kVADParameterSessionID, sessionId_}};
  const auto click = timingNamed(kVADParameterPriorClickLatency);
  if (!click) removeTimingNamed(kVADParameterPriorPreClickLatency);

  std::uint32_t sinceClick = 0;
  if (click) {
    if (statistics_.numberForKey(kVADParameterPriorClickBackgroundedApp)) {
      sinceClick = millisecondsSinceClick(*click);
    }
    click->removeValueForKey(kDate);
  }
  parameters.merge(takeTimings());
  if (sinceClick != 0) parameters.set(kVADParameterPriorClickLatency, sinceClick);

  putCounters(parameters);
  forgetWhatTravelled();
  return parameters;
}

std::uint32_t VADStatistics::millisecondsSinceClick(const VADTiming& click) const {
  const platform::Value* const date = click.valueForKey(kDate);
  if (!date || !date->date()) return 0;
  const double seconds =
      platform::Date::now().secondsSince1970() - date->date()->secondsSince1970();
  return truncated(std::abs(seconds) * 1000);
}

platform::Dictionary VADStatistics::takeTimings() {
  platform::Dictionary parameters;
  for (const std::string& name : allTimingNames()) {
    const auto timing = timingMgr_.timingForCategory(name);
    if (!timing) continue;
    parameters.set(name, timing->elapsedMillisecondsString());
    parameters.merge(timing->keysAndValues());
    if (name != kVADParameterTimeSinceFirstRequest) timingMgr_.removeTimingForCategory(name);
  }
  return parameters;
}

void VADStatistics::putCounters(platform::Dictionary& parameters) const {
  for (const char* key :
       {kVADParameterTotalAdRequests, kVADParameterPriorClickBreakOut,
        kVADParameterAppOpenInterstitialTimedOut, kVADParameterAppOpenInterstitialNoFill,
        kVADParameterPriorClickBackgroundedApp, kVADParameterPriorLandingPageNavCount,
        kVADParameterPriorLandingPageSSLNavCount, kVADParameterPriorClickCount}) {
    const auto number = statistics_.numberForKey(key);
    if (number && number->integerValue() != 0) parameters.set(key, *number);
  }
}

void VADStatistics::forgetWhatTravelled() {
  // Not saved yet: a request that never leaves must not cost them.
  for (const char* flag :
       {kVADParameterPriorClickBreakOut, kVADParameterAppOpenInterstitialTimedOut,
        kVADParameterAppOpenInterstitialNoFill, kVADParameterPriorClickBackgroundedApp}) {
    statistics_.removeObjectForKey(flag);
  }
  for (const char* counter :
       {kVADParameterPriorLandingPageNavCount, kVADParameterPriorLandingPageSSLNavCount,
        kVADParameterPriorClickCount}) {
    statistics_.setNumber(0, counter);
  }
}

std::shared_ptr<VADTiming> VADStatistics::beginClick() {
  incrementClickCount();
  startTimingNamed(kVADParameterPriorClickLatency);
  startTimingNamed(kVADParameterPriorClickRedirectLatency);
  endTimingNamed(kVADParameterPriorPreClickLatency);
  auto click = timingNamed(kVADParameterPriorClickLatency);
  click->setValue(platform::Date::now(), kDate);
  return click;
}

std::optional<platform::URL> VADStatistics::urlForClick(const std::optional<platform::URL>& url) {
  if (url) return urlForClick(*url);
  beginClick();
  endTimingNamed(kVADParameterPriorClickRedirectLatency);
  return std::nullopt;
}

platform::URL VADStatistics::urlForClick(const platform::URL& url) {
  if (VADNotification::isNotificationURL(url) || url.absoluteString() == "about:blank") return url;
  const auto click = beginClick();

  platform::URL result = url;
  const auto identifier = VADNetworkUtilities::parameterValueForKey(kVADQueryAdIdentifier, url);
  if (identifier && !identifier->empty()) {
    click->setValue(*identifier, kVADParameterPriorClickString);
    std::string signals;
    if (vad_gmcs(*identifier, signals)) {
      result = VADNetworkUtilities::appendQueryKey(signals, std::nullopt, url).value_or(url);
    }
  }
  endTimingNamed(kVADParameterPriorClickRedirectLatency);
  return result;
}

}  // namespace valdren
