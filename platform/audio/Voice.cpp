#include "platform/audio/Voice.h"

#include <algorithm>

namespace platform {
namespace {

/// Three milliseconds: short enough not to be heard, long enough not to click.
constexpr int kFadeFrames = kSampleRate * 3 / 1000;

}  // namespace

void mix(Voice& voice, float* target, std::size_t frames) {
  if (voice.ended) return;
  std::size_t position = voice.position;
  const std::size_t last = std::min(position + frames, voice.clip->frameCount());
  if (voice.stopping && voice.fadeLeft < 0) voice.fadeLeft = kFadeFrames;
  for (; position < last && voice.fadeLeft != 0; ++position, target += kChannels) {
    const float gain = voice.fadeLeft < 0 ? 1.0F : float(voice.fadeLeft--) / float(kFadeFrames);
    for (std::uint32_t channel = 0; channel < kChannels; ++channel) {
      target[channel] += gain * voice.clip->samples[position * kChannels + channel];
    }
  }
  voice.position = position;
  if (voice.fadeLeft == 0 || position >= voice.clip->frameCount()) voice.ended = true;
}

}  // namespace platform
