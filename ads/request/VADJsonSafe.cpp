#include "ads/request/VADJsonSafe.h"

#include <cmath>

#include "platform/base/Text.h"

namespace valdren {
namespace {

using platform::Value;

/// JSON is written down to 512 levels, the request's own level among them.
constexpr int kDeepest = 511;

std::optional<Value> safeValue(const Value& value, int depth);

platform::Dictionary safeDictionary(const platform::Dictionary& dictionary, int depth) {
  platform::Dictionary safe;
  for (const auto& [key, value] : dictionary) {
    safe.setIfPresent(platform::repairedUTF8(key), safeValue(value, depth + 1));
  }
  return safe;
}

platform::Array safeArray(const platform::Array& array, int depth) {
  platform::Array safe;
  safe.reserve(array.size());
  for (const Value& value : array) safe.push_back(safeValue(value, depth + 1).value_or(nullptr));
  return safe;
}

/// None for what JSON cannot hold.
std::optional<Value> safeValue(const Value& value, int depth) {
  switch (value.kind()) {
    case Value::Kind::Text: return Value(platform::repairedUTF8(*value.text()));
    case Value::Kind::Double:
      return std::isfinite(value.doubleValue()) ? std::optional(value) : std::nullopt;
    case Value::Kind::Date:
      return std::isfinite(value.date()->secondsSince1970()) ? std::optional(value) : std::nullopt;
    case Value::Kind::Array:
      if (depth > kDeepest) return std::nullopt;
      return Value(safeArray(*value.array(), depth));
    case Value::Kind::Dictionary:
      if (depth > kDeepest) return std::nullopt;
      return Value(safeDictionary(*value.dictionary(), depth));
    default: return value;
  }
}

}  // namespace

platform::Dictionary jsonSafe(const platform::Dictionary& dictionary) {
  return safeDictionary(dictionary, 1);
}

}  // namespace valdren
