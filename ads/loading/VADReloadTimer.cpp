#include "ads/loading/VADReloadTimer.h"

#include <algorithm>
#include <cmath>

#include "platform/base/Value.h"

namespace valdren {
namespace {

/// An interval may be as good as none, and what the refresh waits for takes its time.
constexpr double kShortestDelay = 0.5;

}  // namespace

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

void VADReloadTimer::start(double seconds) {
  // A copy: this timer may be destroyed by what the refresh sets off.
  reloadTimer_ =
      platform::RunLoop::shared().scheduleTimer(seconds, [reload = reload_] { reload(); });
}

}  // namespace valdren
