#include "ads/loading/VADLoaderState.h"

#include "ads/telemetry/VADTiming.h"

namespace valdren {

const char* VADLoaderState::nameOf(VADState state) {
  constexpr const char* kNames[] = {"idle",       "loading script", "script failed", "building URL",
                                    "loading ad", "rendering ad",   "showing ad",    "failed"};
  return kNames[state];
}

bool VADLoaderState::isMakingRequest() const {
  return now_ != kVADStateIdle && now_ != kVADStateScriptFailed && now_ != kVADStateShowingAd &&
         now_ != kVADStateFailed;
}

void VADLoaderState::change(VADState state) {
  if (state == now_) return;
  now_ = state;
  awaited_.reset();
  if (state == kVADStateRenderingAd) {
    // A copy: the call may end this state.
    waitFor(platform::RunLoop::shared().scheduleTimer(kShowSeconds,
                                                      [notShown = notShown_] { notShown(); }));
  }
  if (state == kVADStateShowingAd) timeLastLoaded_ = VADTiming::counter();
}

}  // namespace valdren
