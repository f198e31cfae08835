// Property list files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren::platform {

/// What the XML or binary property list holds; none when it is none, is nested deeper than 200
/// levels or holds over 100,000 values. Data elements are read as base64 text, and what has no
/// value of its own (such as an element of an unknown kind) as null.
std::optional<Value> parsePropertyList(std::string_view content);

/// The same for a file; none also when there is no regular file of at most 16 MiB.
std::optional<Value> readPropertyList(const std::string& path);

}  // namespace valdren::platform
