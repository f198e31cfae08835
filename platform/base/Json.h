// Values as JSON text and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren::platform {

/// The value that the text holds; absent when it is no JSON, is nested deeper than 512, holds a
/// number beyond a double's range, which could not be written again, or is not UTF-8. Keys keep
/// their order; of repeated keys the last one's value counts. Integers beyond 64 bits become
/// doubles.
std::optional<Value> parseJson(std::string_view text);

/// Compact JSON, keys in the dictionary's order. Whole doubles are written without a fraction,
/// dates as seconds since 1970. Absent when the value holds a NaN or an infinity, a text that is
/// not UTF-8, or is nested deeper than 512.
std::optional<std::string> writeJson(const Value& value);

/// The same for people: two blanks a level, ending in a line break.
std::optional<std::string> writeIndentedJson(const Value& value);

}  // namespace valdren::platform
