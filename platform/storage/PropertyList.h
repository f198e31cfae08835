// Property list files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren::platform {

/// Parses an XML or binary property list. None when it is not valid, is nested deeper than 200
/// levels or holds over 100,000 values. Data elements become base64 text; elements of unknown kinds
/// become null.
std::optional<Value> parsePropertyList(std::string_view content);

/// The same for a file. None when there is no regular file of at most 16 MiB.
std::optional<Value> readPropertyList(const std::string& path);

}  // namespace valdren::platform
