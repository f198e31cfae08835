// Decrypts the location and the signals that the client sends.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace platform = valdren::platform;

namespace sandbox {

/// Decodes web-safe base64 without padding. None for other letters.
std::optional<std::string> unpackedBase64(std::string_view text);

/// The text in a request's "uule": a described location ("a+...") or a precise, encrypted one
/// ("e1+..."). None when it is neither or was not made by this network's clients.
std::optional<std::string> decodedLocation(std::string_view text);

/// The values in a request's "ms" or a click's "cs". None when they were not encrypted by this
/// network's clients.
std::optional<platform::Value> decryptedSignals(std::string_view text);

}  // namespace sandbox
