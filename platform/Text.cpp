#include "platform/Text.h"

#include <glib.h>

#include <algorithm>

namespace platform {
namespace {

bool isASCII(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

std::string taken(char* text) {
  std::string result(text);
  g_free(text);
  return result;
}

}  // namespace

bool isUTF8(std::string_view text) {
  return g_utf8_validate_len(text.data(), text.size(), nullptr);
}

std::string repairedUTF8(std::string_view text) {
  if (isUTF8(text)) return std::string(text);
  std::string result;
  while (!text.empty()) {
    const char* end = nullptr;
    if (g_utf8_validate_len(text.data(), text.size(), &end)) return result.append(text);
    const std::size_t valid = static_cast<std::size_t>(end - text.data());
    result.append(text.substr(0, valid)).append("\xEF\xBF\xBD");
    text.remove_prefix(valid + 1);
  }
  return result;
}

std::string lowercase(std::string_view text) {
  if (isASCII(text) || !isUTF8(text)) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), g_ascii_tolower);
    return result;
  }
  return taken(g_utf8_strdown(text.data(), static_cast<gssize>(text.size())));
}

std::string_view trimmed(std::string_view text) {
  constexpr const char* kSpace = " \t\r\n\v\f";
  const std::size_t first = text.find_first_not_of(kSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

}  // namespace platform
