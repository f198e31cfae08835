// The two forms of a property list.
#pragma once

#include <optional>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren::platform {

/// Bounds for both forms, because few bytes may expand to unlimited content.
inline constexpr int kDeepestPropertyList = 200;
inline constexpr int kMostPropertyListValues = 100'000;

// None when the content is not a valid list of this form or exceeds these bounds.
std::optional<Value> parseXMLPropertyList(std::string_view content);
std::optional<Value> parseBinaryPropertyList(std::string_view content);

}  // namespace valdren::platform
