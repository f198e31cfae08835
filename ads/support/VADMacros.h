// Dictionaries as JSON text and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/base/Value.h"

namespace valdren {

class VADMacros {
 public:
  /// The object that the JSON text holds; none without a text, when it is no JSON, and when it
  /// holds anything but an object.
  static std::optional<platform::Dictionary> readJson(std::optional<std::string_view> text);

  /// Compact JSON of an array or a dictionary; "" when it cannot be written: for any other value, a
  /// number that is not finite, a text that is not UTF-8, and nesting beyond 512.
  static std::string jsonify(const platform::Value& object);
};

}  // namespace valdren
