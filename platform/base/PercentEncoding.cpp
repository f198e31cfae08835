#include "platform/base/PercentEncoding.h"

#include <boost/url/encode.hpp>
#include <boost/url/grammar/alnum_chars.hpp>
#include <boost/url/pct_string_view.hpp>

namespace valdren::platform {
namespace {

namespace urls = boost::urls;

struct Kept {
  bool operator()(char character) const noexcept {
    return urls::grammar::alnum_chars(character) || marks.find(character) != std::string_view::npos;
  }
  std::string_view marks;
};

}  // namespace

std::string percentEncoded(std::string_view text, std::string_view kept) {
  return urls::encode(boost::core::string_view(text.data(), text.size()), Kept{kept});
}

std::optional<std::string> percentDecoded(std::string_view text) {
  const auto encoded =
      urls::make_pct_string_view(boost::core::string_view(text.data(), text.size()));
  if (!encoded) return std::nullopt;
  return encoded->decode();
}

}  // namespace valdren::platform
