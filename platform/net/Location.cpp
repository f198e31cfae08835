#include "platform/net/Location.h"

#include <boost/url/parse.hpp>
#include <boost/url/url.hpp>

#include "platform/Text.h"

namespace platform {

std::optional<URL> resolvedLocation(std::string_view location, const URL& base) {
  namespace urls = boost::urls;
  const auto written = URL::fromPage(trimmed(location));
  if (!written || !written->scheme().empty()) return written;
  const auto baseView = urls::parse_uri(base.absoluteString());
  const auto reference = urls::parse_uri_reference(written->absoluteString());
  urls::url target;
  if (!baseView || !reference || !urls::resolve(*baseView, *reference, target)) return std::nullopt;
  const auto text = target.buffer();
  return URL::parse({text.data(), text.size()});
}

}  // namespace platform
