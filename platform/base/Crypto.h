// Digests and ciphers, all through the system's cryptographic library.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace valdren::platform {

using Key128 = std::array<std::uint8_t, 16>;

/// Two lower-case digits a byte.
std::string hexadecimal(std::span<const std::uint8_t> data);

std::array<std::uint8_t, 16> md5(std::string_view data);
std::array<std::uint8_t, 32> sha256(std::string_view data);

/// AES-128 in CBC mode without padding. None when `data` is not a multiple of 16 bytes or the
/// library reports a failure.
std::optional<std::string> encryptAES128CBC(std::string_view data, const Key128& key,
                                            const std::array<std::uint8_t, 16>& vector);

/// The reverse; the same conditions.
std::optional<std::string> decryptAES128CBC(std::string_view data, const Key128& key,
                                            const std::array<std::uint8_t, 16>& vector);

/// AES-128 in GCM mode: a random 12-byte nonce, the ciphertext, then the 16-byte tag. None when the
/// library reports a failure.
std::optional<std::string> encryptAES128GCM(std::string_view data, const Key128& key);
/// The plain data, or none when `encrypted` is too short or was not encrypted under this key.
std::optional<std::string> decryptAES128GCM(std::string_view encrypted, const Key128& key);

}  // namespace valdren::platform
