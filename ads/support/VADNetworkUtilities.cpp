#include "ads/support/VADNetworkUtilities.h"

#include <array>

#include "platform/base/MainThread.h"
#include "platform/base/Text.h"

namespace valdren {
namespace {

using platform::Dictionary;
using platform::URL;
using platform::Value;

std::optional<std::string>& sharedUserAgent() {
  static std::optional<std::string> userAgent;
  return userAgent;
}

constexpr std::array<bool, 256> unreserved() {
  std::array<bool, 256> table{};
  for (int code = 0; code < 128; ++code) {
    const bool letter = (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z');
    const bool digit = code >= '0' && code <= '9';
    table[code] = letter || digit || code == '-' || code == '.' || code == '_' || code == '~';
  }
  return table;
}

int digitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

/// None when an escape lacks its two digits or the result is not UTF-8.
std::optional<std::string> withoutEscapes(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (true) {
    const std::size_t escape = text.find('%');
    result.append(text.substr(0, escape));
    if (escape == std::string_view::npos) break;
    if (text.size() - escape < 3) return std::nullopt;
    const int high = digitValue(text[escape + 1]);
    const int low = digitValue(text[escape + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    result += static_cast<char>(high * 16 + low);
    text.remove_prefix(escape + 3);
  }
  if (!platform::isUTF8(result)) return std::nullopt;
  return result;
}

void addField(std::string_view piece, Dictionary& fields) {
  const std::size_t equals = piece.find('=');
  if (equals == std::string_view::npos) return;
  if (piece.find('=', equals + 1) != std::string_view::npos) return;
  const auto key = withoutEscapes(piece.substr(0, equals));
  auto value = withoutEscapes(piece.substr(equals + 1));
  if (key && value) fields.set(platform::lowercase(*key), *std::move(value));
}

}  // namespace

const std::optional<std::string>& VADNetworkUtilities::userAgentString() {
  platform::assertMainThread();
  return sharedUserAgent();
}

void VADNetworkUtilities::setUserAgentString(std::string_view userAgent) {
  platform::assertMainThread();
  if (userAgent.empty() || sharedUserAgent() == userAgent) return;
  sharedUserAgent() = std::string(userAgent);
}

std::string VADNetworkUtilities::encodeURL(std::string_view text) {
  static constexpr std::array<bool, 256> kUnreserved = unreserved();
  static constexpr const char* kDigits = "0123456789ABCDEF";
  std::string result;
  result.reserve(text.size());
  for (const char character : text) {
    const auto code = static_cast<unsigned char>(character);
    if (kUnreserved[code]) {
      result += character;
    } else {
      result += {'%', kDigits[code >> 4], kDigits[code & 15]};
    }
  }
  return result;
}

std::optional<URL> VADNetworkUtilities::appendQueryParameters(const Dictionary& parameters,
                                                              const URL& toURL) {
  std::string text = toURL.absoluteString();
  char separator = toURL.query().value_or("").empty() ? '?' : '&';
  for (const Dictionary::Entry& entry : parameters) {
    text += separator;
    text += entry.key;
    const std::string value = encodeURL(entry.value.description());
    if (!value.empty()) text.append("=").append(value);
    separator = '&';
  }
  return URL::parse(text);
}

std::optional<URL> VADNetworkUtilities::appendQueryKey(std::string_view key,
                                                       const std::optional<Value>& value,
                                                       const URL& toURL) {
  return appendQueryParameters({{key, value.value_or("")}}, toURL);
}

std::optional<std::string> VADNetworkUtilities::parameterValueForKey(std::string_view key,
                                                                     const URL& fromURL) {
  const std::optional<std::string> query = fromURL.query();
  if (!query) return std::nullopt;
  std::string_view rest = *query;
  while (true) {
    const std::size_t end = rest.find('&');
    const std::string_view piece = rest.substr(0, end);
    const std::size_t equals = piece.find('=');
    if (equals != std::string_view::npos && piece.substr(0, equals) == key) {
      const std::string_view value = piece.substr(equals + 1);
      return std::string(value.substr(0, value.find('=')));
    }
    if (end == std::string_view::npos) return std::nullopt;
    rest.remove_prefix(end + 1);
  }
}

Dictionary VADNetworkUtilities::dictionaryFromQueryString(std::optional<std::string_view> query) {
  Dictionary fields;
  if (!query) return fields;
  std::string_view rest = *query;
  while (true) {
    const std::size_t end = rest.find_first_of("&;");
    addField(rest.substr(0, end), fields);
    if (end == std::string_view::npos) return fields;
    rest.remove_prefix(end + 1);
  }
}

}  // namespace valdren
