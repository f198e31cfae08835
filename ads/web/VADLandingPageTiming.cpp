#include "ads/web/VADLandingPageTiming.h"

#include "ads/telemetry/VADStatistics.h"

namespace valdren {
namespace {

bool isRunning(const char* name) {
  const auto timing = VADStatistics::sharedStatistics().timingNamed(name);
  return timing && timing->isActive();
}

}  // namespace

void landingPageDidStartLoad() {
  if (isRunning(kVADParameterPriorLandingPageLoad)) return;
  VADStatistics::sharedStatistics().startTimingNamed(kVADParameterPriorLandingPageLoad);
}

void landingPageDidFinishLoad() {
  if (isRunning(kVADParameterPriorLandingPageDuration)) return;
  VADStatistics::sharedStatistics().endTimingNamed(kVADParameterPriorLandingPageLoad);
  VADStatistics::sharedStatistics().startTimingNamed(kVADParameterPriorLandingPageDuration);
}

}  // namespace valdren
