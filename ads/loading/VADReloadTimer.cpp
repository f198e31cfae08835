#include "ads/loading/VADReloadTimer.h"

#include <cmath>

#include "platform/Value.h"

namespace valdren {

double VADReloadTimer::secondsFromHeader(std::string_view header) {
  const double seconds = platform::Value(header).doubleValue();
  return std::isfinite(seconds) ? seconds : 0;  // "inf" and "nan" are words here
}

void VADReloadTimer::scheduleReloadTimer(double seconds) {
  resetReloadTimer();
  if (seconds == 0) return;
  // A copy: this timer may be destroyed by what the refresh sets off.
  reloadTimer_ =
      platform::RunLoop::shared().scheduleTimer(seconds, [reload = reload_] { reload(); });
  reloadSeconds_ = seconds;
}

}  // namespace valdren
