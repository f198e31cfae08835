#include "ads/loading/VADReloadTimer.h"

#include <algorithm>
#include <cmath>

#include "ads/request/VADIdentifierUtilities.h"
#include "ads/web/VADScreen.h"
#include "platform/application/Application.h"
#include "platform/base/NotificationCenter.h"
#include "platform/base/Value.h"

namespace valdren {
namespace {

/// An interval may be as good as none, and what the refresh waits for takes its time.
constexpr double kShortestDelay = 0.5;

}  // namespace

VADReloadTimer::VADReloadTimer(std::function<void()> reload) : reload_(std::move(reload)) {
  const bool hasBackground = VADIdentifierUtilities::isOSAtLeastMajor(4, 0, 0);
  observe(hasBackground ? platform::kApplicationDidEnterBackground
                        : platform::kApplicationWillResignActive,
          &VADReloadTimer::resetReloadTimer);
  observe(hasBackground ? platform::kApplicationWillEnterForeground
                        : platform::kApplicationDidBecomeActive,
          &VADReloadTimer::activateReloadTimer);
  observe(kVADViewControllerWillPresentFullScreen, &VADReloadTimer::resetReloadTimer);
  observe(kVADViewControllerDidRelinquishFullScreen, &VADReloadTimer::activateReloadTimer);
}

VADReloadTimer::~VADReloadTimer() {
  platform::NotificationCenter::defaultCenter().removeObserver(*this);
}

void VADReloadTimer::observe(const char* name, void (VADReloadTimer::*handler)()) {
  platform::NotificationCenter::defaultCenter().addObserver(
      *this, name, [this, handler](const auto&) { (this->*handler)(); });
}

double VADReloadTimer::secondsFromHeader(std::string_view header) {
  const double seconds = platform::Value(header).doubleValue();
  return std::isfinite(seconds) ? seconds : 0;  // "inf" and "nan" are words here
}

void VADReloadTimer::scheduleReloadTimer(double seconds) {
  resetReloadTimer();
  if (seconds == 0) return;
  start(seconds);
  reloadSeconds_ = seconds;
}

void VADReloadTimer::putOff() {
  start(std::max(reloadSeconds_, kShortestDelay));
}

void VADReloadTimer::keepRefreshing() {
  if (!reloadTimer_ || !reloadTimer_->isValid()) activateReloadTimer();
}

void VADReloadTimer::start(double seconds) {
  // A copy: this timer may be destroyed by what the refresh sets off.
  reloadTimer_ = platform::RunLoop::shared().scheduleTimer(platform::Seconds(seconds),
                                                           [reload = reload_] { reload(); });
}

}  // namespace valdren
