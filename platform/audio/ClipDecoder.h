// Reads a sound file into samples.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace valdren::platform {

/// The form of every decoded clip and of the output stream.
inline constexpr std::uint32_t kSampleRate = 48000;
inline constexpr std::uint32_t kChannels = 2;

/// Interleaved samples, -1 to 1.
struct DecodedClip {
  std::vector<float> samples;
  std::size_t frameCount() const { return samples.size() / kChannels; }
};

/// The first minute of the sound in an MPEG-4 (AAC, ALAC) or WAV file; a truncated file gives the
/// part before the break. Null, with the reason in `problem`, when the file cannot be read, is
/// larger than 64 MiB or holds no sound that can be decoded. Callable on any thread.
std::shared_ptr<const DecodedClip> decodeClip(const std::string& path, std::string& problem);

}  // namespace valdren::platform
