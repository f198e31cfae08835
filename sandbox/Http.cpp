#include "sandbox/Http.h"

#include <algorithm>

#include "platform/base/PercentEncoding.h"
#include "platform/base/Text.h"

namespace platform = valdren::platform;

namespace sandbox {
std::string decoded(std::string_view text) {
  return platform::percentDecoded(text).value_or(std::string(text));
}

Fields fieldsOf(std::string_view query) {
  Fields fields;
  while (!query.empty()) {
    const std::size_t end = std::min(query.find('&'), query.size());
    const std::string_view field = query.substr(0, end);
    query.remove_prefix(std::min(end + 1, query.size()));
    const std::size_t equals = std::min(field.find('='), field.size());
    const std::string_view value = field.substr(std::min(equals + 1, field.size()));
    if (!field.empty()) fields.emplace_back(decoded(field.substr(0, equals)), decoded(value));
  }
  return fields;
}

std::optional<std::string> Request::parameter(std::string_view name) const {
  for (auto& [key, value] : fieldsOf(query)) {
    if (key == name) return value;
  }
  return std::nullopt;
}

std::string Request::header(std::string_view name) const {
  for (const auto& [key, value] : headers) {
    if (platform::lowercase(key) == platform::lowercase(name)) return value;
  }
  return {};
}

}  // namespace sandbox
