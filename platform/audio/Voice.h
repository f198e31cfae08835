// One clip on its way to the loudspeaker.
#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

#include "platform/audio/ClipDecoder.h"

namespace platform {

/// Shared by the player that started it and the output that mixes it. The output alone moves it on;
/// the player alone asks it to stop.
struct Voice {
  Voice(std::shared_ptr<const DecodedClip> sound, std::size_t from)
      : clip(std::move(sound)), position(from) {}

  const std::shared_ptr<const DecodedClip> clip;
  /// The next frame to be mixed.
  std::atomic<std::size_t> position;
  std::atomic<bool> stopping = false;
  std::atomic<bool> ended = false;
  /// Frames of the fade-out that are left; negative before the fade. Of the output alone.
  int fadeLeft = -1;
};

/// Adds the voice to `frames` interleaved frames. Marks it as ended at its end.
void mix(Voice& voice, float* target, std::size_t frames);

}  // namespace platform
