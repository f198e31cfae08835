// Opens what the client seals for the ad network: the location and the signals.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace platform = valdren::platform;

namespace sandbox {

/// The bytes behind web-safe base64 without padding; none for other letters.
std::optional<std::string> unpackedBase64(std::string_view text);

/// The text inside a request's "uule": a described location ("a+...") or a precise one
/// ("e1+...", encrypted). None when it is neither or was not made by this network's clients.
std::optional<std::string> openedLocation(std::string_view text);

/// The values inside a request's "ms" or a click's "cs". None when they were not sealed by this
/// network's clients.
std::optional<platform::Value> openedSignals(std::string_view text);

}  // namespace sandbox
