#include "ads/support/VADNetworkUtilities.h"

#include "platform/base/MainThread.h"
#include "platform/base/PercentEncoding.h"
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

/// None when the text is not well encoded or the result is not UTF-8.
std::optional<std::string> decoded(std::string_view text) {
  auto result = platform::percentDecoded(text);
  if (result && !platform::isUTF8(*result)) return std::nullopt;
  return result;
}

void addField(std::string_view piece, Dictionary& fields) {
  const std::size_t equals = piece.find('=');
  if (equals == std::string_view::npos) return;
  if (piece.find('=', equals + 1) != std::string_view::npos) return;
  const auto key = decoded(piece.substr(0, equals));
  auto value = decoded(piece.substr(equals + 1));
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
  return platform::percentEncoded(text);
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
