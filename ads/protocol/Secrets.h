// Keys that the client and the ad network share.
#pragma once

#include <array>
#include <cstdint>

namespace valdren {

/// Of locations: AES-128 in CBC mode.
inline constexpr std::array<std::uint8_t, 16> kVADLocationSecret = {
    0x5c, 0x1e, 0x9a, 0x07, 0xb3, 0xd8, 0x4f, 0x26, 0xe0, 0xa1, 0xc9, 0x77, 0x3b, 0x5d, 0x0e, 0x8f};
/// Of signals: AES-128 in GCM mode.
inline constexpr std::array<std::uint8_t, 16> kVADSignalsSecret = {
    0x91, 0x3e, 0x5c, 0xd2, 0x07, 0x6a, 0xb8, 0x4f, 0xe3, 0x28, 0x9d, 0x15, 0x70, 0xc6, 0x4b, 0xfa};

/// What a location's text begins with: a description, or coordinates under the secret.
inline constexpr const char* kVADPlainLocation = "a+";
inline constexpr const char* kVADSealedLocation = "e1+";

}  // namespace valdren
