// One clip on its way to the loudspeaker.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/audio/ClipDecoder.h"

namespace valdren::platform {

/// Counts the frames of the output stream from its opening on.
using StreamFrame = std::int64_t;
inline constexpr StreamFrame kNoFrame = -1;

/// Shared by the player that started it and the output that mixes it. The output alone moves it on;
/// the player alone asks it to stop.
struct Voice {
  Voice(std::shared_ptr<const DecodedClip> sound, std::size_t fromFrame)
      : clip(std::move(sound)), from(fromFrame), position(fromFrame) {}

  const std::shared_ptr<const DecodedClip> clip;
  /// The frame of the clip that it starts with.
  const std::size_t from;
  /// How far the clip was heard.
  std::atomic<std::size_t> position;
  std::atomic<bool> stopping = false;
  std::atomic<bool> ended = false;

  /// Where in the stream it begins, and where it begins to fade out. Of the output alone, and no
  /// more than plans: any part of the stream may be mixed again, while it is not yet heard.
  StreamFrame begin = kNoFrame;
  StreamFrame fade = kNoFrame;

  /// The first frame of the stream without it. Only once it has a beginning.
  StreamFrame end() const;
};

/// Adds what the voice gives to `frames` interleaved frames of the stream, from `at` on.
void mix(const Voice& voice, StreamFrame at, float* target, std::size_t frames);

}  // namespace valdren::platform
