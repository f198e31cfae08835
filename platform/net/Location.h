// Where a redirect leads.
#pragma once

#include <optional>
#include <string_view>

#include "platform/base/URL.h"

namespace valdren::platform {

/// The URL that a "Location" header names, seen from the URL that was asked for. An absolute one
/// stays as it is written; what is illegal in a URL is percent-encoded. None when it is no URL.
std::optional<URL> resolvedLocation(std::string_view location, const URL& base);

}  // namespace valdren::platform
