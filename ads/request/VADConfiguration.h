// Where the ad network is. An application that uses another one says so before its first request.
#pragma once

#include <string_view>

#include "platform/base/Export.h"
#include "platform/base/URL.h"

namespace valdren {

class VALDREN_EXPORT VADConfiguration {
 public:
  /// Names the ad network by its base address: the ad server, the script's host, and the domain
  /// whose pings are its own. False, with one log line and nothing changed, unless the text is an
  /// "http" or "https" URL with a host.
  static bool setAdNetwork(std::string_view url);
  /// Whether an application has named the ad network, or its ad server.
  static bool isAdNetworkSet();

  /// The base of the pages in which the ad engine script runs. A host under the reserved domain
  /// "example" unless set.
  static const platform::URL& adServerBaseURL();
  /// Pings to this host, and to those under it, are the ad network's own.
  static void setAdServerBaseURL(const platform::URL& url);

  /// Where the ad engine script is fetched from.
  static const platform::URL& scriptHostBaseURL();
  static void setScriptHostBaseURL(const platform::URL& url);
};

}  // namespace valdren
