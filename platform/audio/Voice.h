// One clip that is being played.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/audio/ClipDecoder.h"

namespace valdren::platform {

/// A frame of the output stream, counted from its opening.
using StreamFrame = std::int64_t;
inline constexpr StreamFrame kNoFrame = -1;

/// Shared by the player that started it and the output that mixes it. Only the output advances it;
/// only the player asks it to stop.
struct Voice {
  Voice(std::shared_ptr<const DecodedClip> sound, std::size_t fromFrame)
      : clip(std::move(sound)), from(fromFrame), position(fromFrame) {}

  const std::shared_ptr<const DecodedClip> clip;
  /// The frame of the clip that it starts with.
  const std::size_t from;
  /// The frame up to which the clip was heard.
  std::atomic<std::size_t> position;
  std::atomic<bool> stopping = false;
  std::atomic<bool> ended = false;

  /// The frames of the stream at which it begins and begins to fade out. Used by the output only.
  /// Both may still change, because frames that were not heard yet may be mixed again.
  StreamFrame begin = kNoFrame;
  StreamFrame fade = kNoFrame;

  /// The first frame of the stream after its end. Valid once it has a beginning.
  StreamFrame end() const;
};

/// Adds the voice's samples to `frames` interleaved frames of the stream, from `at` on.
void mix(const Voice& voice, StreamFrame at, float* target, std::size_t frames);

}  // namespace valdren::platform
