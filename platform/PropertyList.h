// Property list files.
#pragma once

#include <optional>
#include <string>

#include "platform/Value.h"

namespace platform {

/// What the XML or binary property list in the file holds; none when there is no such file, it is
/// over 16 MiB, nested deeper than 512, holds a million values, or is no property list. Data
/// elements are read as base64 text.
std::optional<Value> readPropertyList(const std::string& path);

}  // namespace platform
