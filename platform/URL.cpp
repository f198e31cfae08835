#include "platform/URL.h"

#include <algorithm>
#include <boost/url/parse.hpp>
#include <boost/url/url_view.hpp>
#include <cctype>

namespace platform {
namespace {

namespace urls = boost::urls;

constexpr std::size_t kLongestURL = 2 * 1024 * 1024;

/// The text was checked when the URL was made, so that this cannot fail.
urls::url_view viewOf(const std::string& text) {
  return *urls::parse_uri_reference(text);
}

std::string textOf(urls::string_view piece) {
  return {piece.data(), piece.size()};
}

/// Whatever the locale says about further letters.
bool isASCIIAlphanumeric(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9');
}

bool isLegal(char character) {
  constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=";
  return isASCIIAlphanumeric(character) || kMarks.find(character) != std::string_view::npos;
}

void appendEscaped(std::string& text, unsigned char character) {
  constexpr const char* kDigits = "0123456789ABCDEF";
  text += '%';
  text += kDigits[character >> 4];
  text += kDigits[character & 15];
}

bool beginsEscape(std::string_view text) {
  return text.size() >= 3 && std::isxdigit(static_cast<unsigned char>(text[1])) &&
         std::isxdigit(static_cast<unsigned char>(text[2]));
}

/// Where the authority ("//host:port") ends; 0 when the URL has none.
std::size_t authorityEndOf(std::string_view text) {
  const std::size_t schemeEnd = text.find_first_of(":/?#");
  const bool hasScheme = schemeEnd != std::string_view::npos && text[schemeEnd] == ':';
  const std::size_t start = hasScheme ? schemeEnd + 1 : 0;
  if (!text.substr(start).starts_with("//")) return 0;
  return std::min(text.find_first_of("/?#", start + 2), text.size());
}

/// Escapes what may stand nowhere in a URL; brackets also outside the authority, and "#" after the
/// first.
std::string escaped(std::string_view text) {
  const std::size_t authorityEnd = authorityEndOf(text);
  bool inFragment = false;
  std::string result;
  result.reserve(text.size());
  for (std::size_t place = 0; place < text.size(); ++place) {
    const char character = text[place];
    const bool bracket = character == '[' || character == ']';
    const bool second = character == '#' && inFragment;
    const bool legal = character == '%' ? beginsEscape(text.substr(place)) : isLegal(character);
    if (legal && !second && !(bracket && place >= authorityEnd)) {
      result += character;
    } else {
      appendEscaped(result, static_cast<unsigned char>(character));
    }
    inFragment = inFragment || character == '#';
  }
  return result;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  if (text.empty() || text.size() > kLongestURL) return std::nullopt;
  const auto view = urls::parse_uri_reference(urls::string_view(text.data(), text.size()));
  if (!view) return std::nullopt;
  // The library takes what is no digit of a port for the path's beginning.
  const urls::string_view path = view->encoded_path();
  if (view->has_authority() && !path.empty() && path.front() != '/') return std::nullopt;
  return URL(std::string(text));
}

std::optional<URL> URL::fromPage(std::string_view text) {
  if (auto url = parse(text)) return url;
  if (text.size() > kLongestURL) return std::nullopt;
  return parse(escaped(text));
}

URL URL::fileURL(const std::string& path) {
  std::string text = "file://";
  for (const char character : path) {
    if (isASCIIAlphanumeric(character) ||
        std::string_view("-._~/").find(character) != std::string_view::npos) {
      text += character;
    } else {
      appendEscaped(text, static_cast<unsigned char>(character));
    }
  }
  return URL(std::move(text));
}

std::string URL::scheme() const {
  return textOf(viewOf(text_).scheme());
}

std::string URL::lowercaseScheme() const {
  std::string scheme = this->scheme();
  std::transform(scheme.begin(), scheme.end(), scheme.begin(),
                 [](unsigned char character) { return char(std::tolower(character)); });
  return scheme;
}

std::string URL::host() const {
  return textOf(viewOf(text_).encoded_host());
}

std::string URL::path() const {
  return textOf(viewOf(text_).encoded_path());
}

std::optional<std::string> URL::query() const {
  const urls::url_view view = viewOf(text_);
  if (!view.has_query()) return std::nullopt;
  return textOf(view.encoded_query());
}

}  // namespace platform
