// The two forms of a property list.
#pragma once

#include <optional>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren::platform {

/// Bounds for both forms: few bytes may stand for endless content.
inline constexpr int kDeepestPropertyList = 200;
inline constexpr int kMostPropertyListValues = 100'000;

// Each is none for a text that is no list of its form, or is beyond these bounds.
std::optional<Value> parseXMLPropertyList(std::string_view content);
std::optional<Value> parseBinaryPropertyList(std::string_view content);

}  // namespace valdren::platform
