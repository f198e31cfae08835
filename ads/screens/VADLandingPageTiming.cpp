#include "ads/screens/VADLandingPageTiming.h"

#include "ads/telemetry/VADStatistics.h"

namespace valdren {
namespace {

/// The first landing page since the last request is the one that counts: pages that it leads to
/// neither start its load anew nor end it.
bool isTimed(const char* name) {
  return VADStatistics::sharedStatistics().timingNamed(name) != nullptr;
}

}  // namespace

void landingPageDidStartLoad() {
  if (isTimed(kVADParameterPriorLandingPageLoad)) return;
  VADStatistics::sharedStatistics().startTimingNamed(kVADParameterPriorLandingPageLoad);
}

void landingPageDidFinishLoad() {
  if (isTimed(kVADParameterPriorLandingPageDuration)) return;
  VADStatistics::sharedStatistics().endTimingNamed(kVADParameterPriorLandingPageLoad);
  VADStatistics::sharedStatistics().startTimingNamed(kVADParameterPriorLandingPageDuration);
}

}  // namespace valdren
