#include "platform/audio/Voice.h"

#include <algorithm>

namespace valdren::platform {
namespace {

/// Three milliseconds: too short to be heard as a fade, long enough to avoid a click.
constexpr StreamFrame kFadeFrames = kSampleRate * 3 / 1000;

}  // namespace

StreamFrame Voice::end() const {
  const auto whole = begin + StreamFrame(clip->frameCount() - std::min(from, clip->frameCount()));
  if (fade == kNoFrame) return whole;
  return fade <= begin ? begin : std::min(whole, fade + kFadeFrames);
}

void mix(const Voice& voice, StreamFrame at, float* target, std::size_t frames) {
  const StreamFrame first = std::max(at, voice.begin);
  const StreamFrame last = std::min(at + StreamFrame(frames), voice.end());
  for (StreamFrame frame = first; frame < last; ++frame) {
    const float gain = voice.fade == kNoFrame || frame < voice.fade
                           ? 1.0F
                           : float(voice.fade + kFadeFrames - frame) / float(kFadeFrames);
    const float* const source =
        voice.clip->samples.data() +
        (voice.from + static_cast<std::size_t>(frame - voice.begin)) * kChannels;
    float* const place = target + static_cast<std::size_t>(frame - at) * kChannels;
    for (std::uint32_t channel = 0; channel < kChannels; ++channel) {
      place[channel] += gain * source[channel];
    }
  }
}

}  // namespace valdren::platform
