// Reads a sound file into samples.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/base/Result.h"

namespace valdren::platform {

/// The form of every decoded clip and of the output stream.
inline constexpr std::uint32_t kSampleRate = 48000;
inline constexpr std::uint32_t kChannels = 2;

/// The domain of the errors of clips; the code is 0, the message says what is wrong with the file.
inline constexpr const char* kClipErrorDomain = "platform.clip";

/// Interleaved samples, -1 to 1.
struct DecodedClip {
  std::vector<float> samples;
  std::size_t frameCount() const { return samples.size() / kChannels; }
};

/// The first minute of the sound in an MPEG-4 (AAC, ALAC) or WAV file; a truncated file gives the
/// part before the break. Never null. An error when the file cannot be read, is larger than 64 MiB
/// or holds no sound that can be decoded. Callable on any thread.
Result<std::shared_ptr<const DecodedClip>> decodeClip(const std::string& path);

}  // namespace valdren::platform
