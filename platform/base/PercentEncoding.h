// Percent-encoding, as URLs use it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace valdren::platform {

/// Every byte as "%XX" but ASCII letters, digits and those in `kept`.
std::string percentEncoded(std::string_view text, std::string_view kept = "-._~");

/// The bytes that the text stands for; none when a "%" lacks its two hexadecimal digits.
std::optional<std::string> percentDecoded(std::string_view text);

}  // namespace valdren::platform
