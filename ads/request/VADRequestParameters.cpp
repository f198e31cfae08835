#include "ads/request/VADRequestParameters.h"

#include "ads/protocol/Parameters.h"
#include "ads/request/VADNetworkChecker.h"
#include "ads/telemetry/VADStatistics.h"
#include "platform/base/MainThread.h"
#include "platform/base/Text.h"
#include "platform/device/AudioSession.h"

namespace valdren {
namespace {

platform::Dictionary dictionaryOf(const platform::Rect& rect) {
  return {{"x", rect.x}, {"y", rect.y}, {"w", rect.width}, {"h", rect.height}};
}

}  // namespace

void VADRequestParameters::begin(VADRequestPrivate& request) {
  platform::assertMainThread();
  auto& statistics = VADStatistics::sharedStatistics();
  if (!statistics.timingNamed(kVADParameterTimeSinceFirstRequest)) {
    statistics.startTimingNamed(kVADParameterTimeSinceFirstRequest);
  }
  request.setCounter(statistics.incrementAdRequestCount());
  VADNetworkChecker::sharedChecker();  // watches from its first use on
  static_cast<void>(platform::AudioSession::shared().initialize());
}

platform::Dictionary VADRequestParameters::of(const VADRequestPrivate& request,
                                              const VADAdSlot& slot) {
  platform::Dictionary parameters = request.parameters();
  if (!slot.adUnitID.empty())
    parameters.set(kVADParameterSlotName, platform::repairedUTF8(slot.adUnitID));
  if (request.isInterstitialAd()) {
    parameters.set(kVADParameterFormat, kVADFormatInterstitial);
  } else if (slot.place) {
    parameters.set(kVADParameterFrame, dictionaryOf(slot.place->frame));
    parameters.set(kVADParameterBounds, dictionaryOf(slot.place->bounds));
  }
  return parameters;
}

}  // namespace valdren
