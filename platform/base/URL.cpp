#include "platform/base/URL.h"

#include <algorithm>
#include <boost/url/parse.hpp>
#include <boost/url/url_view.hpp>
#include <cctype>

#include "platform/base/PercentEncoding.h"
#include "platform/base/Text.h"

namespace valdren::platform {
namespace {

namespace urls = boost::urls;

constexpr std::size_t kLongestURL = 2 * 1024 * 1024;

/// The parts of a valid URL, split at their delimiters. `parse` has checked the text already;
/// parsing it again takes a thousand times as long.
struct Pieces {
  explicit Pieces(std::string_view text) {
    text = text.substr(0, text.find('#'));
    if (const std::size_t mark = text.find('?'); mark != std::string_view::npos) {
      query = text.substr(mark + 1);
      text = text.substr(0, mark);
    }
    const std::size_t mark = text.find_first_of(":/");
    if (mark != std::string_view::npos && text[mark] == ':') {
      scheme = text.substr(0, mark);
      text.remove_prefix(mark + 1);
    }
    if (text.starts_with("//")) {
      const std::size_t end = std::min(text.find('/', 2), text.size());
      takeHostAndPort(text.substr(2, end - 2));
      text.remove_prefix(end);
    }
    path = text;
  }

  void takeHostAndPort(std::string_view authority) {
    authority.remove_prefix(authority.find('@') + 1);  // 0 when there is no user
    const std::size_t from = authority.starts_with('[') ? authority.find(']') : 0;
    const std::size_t mark = authority.find(':', from);
    host = authority.substr(0, mark);
    if (mark != std::string_view::npos) port = authority.substr(mark + 1);
  }

  std::string_view scheme;
  std::string_view host;
  std::string_view port;
  std::string_view path;
  std::optional<std::string_view> query;
};

/// Unlike std::isalnum independent of the locale.
bool isASCIIAlphanumeric(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9');
}

bool isLegal(char character) {
  constexpr std::string_view kMarks = "-._~:/?#[]@!$&'()*+,;=";
  return isASCIIAlphanumeric(character) || kMarks.find(character) != std::string_view::npos;
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

/// Escapes characters that are illegal in a URL, brackets outside the authority, and each "#" after
/// the first.
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
      result += percentEncoded({&character, 1}, "");
    }
    inFragment = inFragment || character == '#';
  }
  return result;
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
  if (text.empty() || text.size() > kLongestURL) return std::nullopt;
  const auto view = urls::parse_uri_reference(boost::core::string_view(text.data(), text.size()));
  if (!view) return std::nullopt;
  // Later versions of the parser take a second "#" as a part of the fragment.
  if (text.find('#') != text.rfind('#')) return std::nullopt;
  // The parser treats non-digits in a port as the start of the path.
  const boost::core::string_view path = view->encoded_path();
  if (view->has_authority() && !path.empty() && path.front() != '/') return std::nullopt;
  return URL(std::string(text));
}

std::optional<URL> URL::fromPage(std::string_view text) {
  if (auto url = parse(text)) return url;
  if (text.size() > kLongestURL) return std::nullopt;
  return parse(escaped(text));
}

std::string URL::scheme() const {
  return std::string(Pieces(text_).scheme);
}

std::string URL::lowercaseScheme() const {
  return lowercase(Pieces(text_).scheme);
}

std::optional<std::string> URL::origin() const {
  const Pieces pieces(text_);
  const std::string scheme = lowercaseScheme();
  if ((scheme != "http" && scheme != "https") || pieces.host.empty()) return std::nullopt;
  const std::string_view usual = scheme == "http" ? "80" : "443";
  const std::string_view port = pieces.port.empty() ? usual : pieces.port;
  return scheme + "://" + lowercase(pieces.host) + ":" + std::string(port);
}

std::string URL::host() const {
  return std::string(Pieces(text_).host);
}

std::string URL::path() const {
  return std::string(Pieces(text_).path);
}

std::optional<std::string> URL::query() const {
  return std::optional<std::string>(Pieces(text_).query);
}

}  // namespace valdren::platform
