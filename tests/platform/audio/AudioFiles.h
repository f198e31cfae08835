// Sound files for the tests of audio, written by hand.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <numbers>
#include <string>
#include <vector>

namespace quorbel_tests {

inline std::string littleEndian(std::uint32_t value, int bytes) {
  std::string text;
  for (int byte = 0; byte < bytes; ++byte) text += char((value >> (8 * byte)) & 0xFF);
  return text;
}

/// A WAV file of these 32-bit float samples.
inline std::string wave(const std::vector<float>& samples, std::uint32_t rate = 48000,
                        std::uint32_t channels = 1) {
  std::string data(samples.size() * 4, '\0');
  if (!samples.empty()) std::memcpy(data.data(), samples.data(), data.size());
  const auto size = static_cast<std::uint32_t>(data.size());
  return "RIFF" + littleEndian(36 + size, 4) + "WAVEfmt " + littleEndian(16, 4) +
         littleEndian(3, 2) + littleEndian(channels, 2) + littleEndian(rate, 4) +
         littleEndian(rate * channels * 4, 4) + littleEndian(channels * 4, 2) +
         littleEndian(32, 2) + "data" + littleEndian(size, 4) + data;
}

/// A WAV file with a tone of half the greatest level on both channels.
inline std::string toneFile(double frequency, double seconds, std::uint32_t rate = 48000) {
  std::vector<float> samples(2 * static_cast<std::size_t>(seconds * rate));
  for (std::size_t place = 0; place < samples.size(); ++place) {
    const std::size_t frame = place / 2;
    samples[place] = float(0.5 * std::sin(2 * std::numbers::pi * frequency * double(frame) / rate));
  }
  return wave(samples, rate, 2);
}

}  // namespace quorbel_tests
