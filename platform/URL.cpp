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

bool isLegal(unsigned char character) {
  constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=";
  return std::isalnum(character) || kMarks.find(char(character)) != std::string_view::npos;
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

/// Escapes what may stand nowhere in a URL; brackets also outside the authority, and "#" after the
/// first.
std::string escaped(std::string_view text) {
  const std::size_t authority = text.find("//");
  const std::size_t authorityEnd =
      authority == std::string_view::npos ? 0 : text.find_first_of("/?#", authority + 2);
  bool inFragment = false;
  std::string result;
  result.reserve(text.size());
  for (std::size_t place = 0; place < text.size(); ++place) {
    const auto character = static_cast<unsigned char>(text[place]);
    const bool bracket = character == '[' || character == ']';
    const bool second = character == '#' && inFragment;
    const bool legal = character == '%' ? beginsEscape(text.substr(place)) : isLegal(character);
    if (legal && !second && !(bracket && place >= authorityEnd)) {
      result += char(character);
    } else {
      appendEscaped(result, character);
    }
    inFragment = inFragment || character == '#';
  }
  return result;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  if (text.empty() || text.size() > kLongestURL) return std::nullopt;
  if (!urls::parse_uri_reference(urls::string_view(text.data(), text.size()))) return std::nullopt;
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
    const auto code = static_cast<unsigned char>(character);
    if (std::isalnum(code) || std::string_view("-._~/").find(character) != std::string_view::npos) {
      text += character;
    } else {
      appendEscaped(text, code);
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
