// Values as JSON text and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren::platform {

/// Parses a text. Absent when it is not JSON, not UTF-8, nested deeper than 512, or holds a number
/// beyond a double's range. Keys keep their order; the last of several equal keys counts. Integers
/// beyond 64 bits become doubles.
std::optional<Value> parseJson(std::string_view text);

/// Compact JSON, keys in the dictionary's order. Whole doubles are written without a fraction,
/// dates as seconds since 1970. Absent when the value holds a NaN or an infinity, a text that is
/// not UTF-8, or is nested deeper than 512.
std::optional<std::string> writeJson(const Value& value);

/// The same, indented by two spaces per level and ended by a line break.
std::optional<std::string> writeIndentedJson(const Value& value);

}  // namespace valdren::platform
