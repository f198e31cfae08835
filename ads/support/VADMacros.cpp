#include "ads/support/VADMacros.h"

#include "platform/base/Json.h"

namespace valdren {

std::optional<platform::Dictionary> VADMacros::readJson(std::optional<std::string_view> text) {
  if (!text) return std::nullopt;
  std::optional<platform::Value> value = platform::parseJson(*text);
  if (!value || !value->dictionary()) return std::nullopt;
  return *value->dictionary();
}

std::string VADMacros::jsonify(const platform::Value& object) {
  if (!object.array() && !object.dictionary()) return "";
  return platform::writeJson(object).value_or("");
}

}  // namespace valdren
