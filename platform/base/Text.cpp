#include "platform/base/Text.h"

#include <glib.h>

#include <algorithm>

namespace valdren::platform {
namespace {

bool isASCII(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char character) { return static_cast<unsigned char>(character) < 0x80; });
}

/// Length in bytes of the part at the start that is UTF-8.
std::size_t validUTF8Length(std::string_view text) {
  std::size_t valid = 0;
  while (true) {
    const char* end = nullptr;
    if (g_utf8_validate_len(text.data() + valid, text.size() - valid, &end)) return text.size();
    valid = static_cast<std::size_t>(end - text.data());
    if (text[valid] != '\0') return valid;
    ++valid;  // GLib stops at a NUL, which is valid here
  }
}

/// Unicode white space, line breaks and the byte order mark.
bool isBlank(gunichar character) {
  return g_unichar_isspace(character) || character == '\v' || character == 0x85 ||
         character == 0xFEFF;
}

/// Length in bytes of the first character if it is blank, else 0.
std::size_t blankLengthAtStart(std::string_view text) {
  const gunichar first = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
  if (text.empty() || !g_unichar_validate(first) || !isBlank(first)) return 0;
  return static_cast<std::size_t>(g_unichar_to_utf8(first, nullptr));
}

/// The same for its last character.
std::size_t blankLengthAtEnd(std::string_view text) {
  const char* const last = g_utf8_find_prev_char(text.data(), text.data() + text.size());
  if (!last) return 0;
  const auto length = static_cast<std::size_t>(text.data() + text.size() - last);
  return blankLengthAtStart(text.substr(text.size() - length)) == length ? length : 0;
}

std::string taken(char* text) {
  std::string result(text);
  g_free(text);
  return result;
}

}  // namespace

bool isUTF8(std::string_view text) {
  return validUTF8Length(text) == text.size();
}

std::string repairedUTF8(std::string_view text) {
  std::string result;
  while (true) {
    const std::size_t valid = validUTF8Length(text);
    result.append(text.substr(0, valid));
    if (valid == text.size()) return result;
    result += "\xEF\xBF\xBD";
    text.remove_prefix(valid + 1);
  }
}

std::string lowercase(std::string_view text) {
  if (isASCII(text) || !isUTF8(text)) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), g_ascii_tolower);
    return result;
  }
  std::string result;
  while (true) {  // GLib stops at a NUL
    const std::string_view piece = text.substr(0, text.find('\0'));
    result += taken(g_utf8_strdown(piece.data(), static_cast<gssize>(piece.size())));
    if (piece.size() == text.size()) return result;
    result += '\0';
    text.remove_prefix(piece.size() + 1);
  }
}

std::string_view trimmed(std::string_view text) {
  while (const std::size_t length = blankLengthAtStart(text)) text.remove_prefix(length);
  while (const std::size_t length = blankLengthAtEnd(text)) text.remove_suffix(length);
  return text;
}

}  // namespace valdren::platform
