// Where a redirect leads.
#pragma once

#include <optional>
#include <string_view>

#include "platform/base/URL.h"

namespace valdren::platform {

/// The URL of a "Location" header, resolved against `base`. An absolute one keeps its spelling;
/// characters that are illegal in a URL are percent-encoded. None when it is not a URL.
std::optional<URL> resolvedLocation(std::string_view location, const URL& base);

}  // namespace valdren::platform
