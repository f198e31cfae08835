#include "platform/net/RedirectLocation.h"

#include <glib.h>

#include <memory>

#include "platform/base/Text.h"

namespace valdren::platform {

std::optional<URL> resolvedLocation(std::string_view location, const URL& base) {
  auto written = URL::fromPage(trimmed(location));
  if (!written || !written->scheme().empty()) return written;
  const std::unique_ptr<char, decltype(&g_free)> resolved(
      g_uri_resolve_relative(base.absoluteString().c_str(), written->absoluteString().c_str(),
                             G_URI_FLAGS_ENCODED, nullptr),
      g_free);
  return resolved ? URL::parse(resolved.get()) : std::nullopt;
}

}  // namespace valdren::platform
