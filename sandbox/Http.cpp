#include "sandbox/Http.h"

#include <algorithm>

namespace sandbox {
namespace {

constexpr const char* kHex = "0123456789ABCDEF";

char lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

int digit(char letter) {
  if (letter >= '0' && letter <= '9') return letter - '0';
  const char small = lower(letter);
  return small >= 'a' && small <= 'f' ? small - 'a' + 10 : -1;
}

bool isPlain(char letter) {
  const char small = lower(letter);
  return (small >= 'a' && small <= 'z') || (small >= '0' && small <= '9') ||
         std::string_view("-._~").find(small) != std::string_view::npos;
}

}  // namespace

std::string decoded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool escape = text[at] == '%' && at + 2 < text.size() && digit(text[at + 1]) >= 0 &&
                        digit(text[at + 2]) >= 0;
    if (escape) {
      result += static_cast<char>(digit(text[at + 1]) * 16 + digit(text[at + 2]));
      at += 2;
    } else {
      result += text[at];
    }
  }
  return result;
}

std::string encoded(std::string_view text) {
  std::string result;
  for (const char letter : text) {
    if (isPlain(letter)) {
      result += letter;
    } else {
      const auto code = static_cast<unsigned char>(letter);
      result += {'%', kHex[code >> 4], kHex[code & 15]};
    }
  }
  return result;
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
  const auto same = [](char left, char right) { return lower(left) == lower(right); };
  for (const auto& [key, value] : headers) {
    if (std::equal(key.begin(), key.end(), name.begin(), name.end(), same)) return value;
  }
  return {};
}

}  // namespace sandbox
