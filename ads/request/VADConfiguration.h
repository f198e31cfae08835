// Where the ad network is. An application that uses another one says so before its first request.
#pragma once

#include "platform/base/Export.h"
#include "platform/base/URL.h"

namespace valdren {

class VALDREN_EXPORT VADConfiguration {
 public:
  /// The base of the pages in which the ad engine script runs. A host under the reserved domain
  /// "example" unless set.
  static const platform::URL& adServerBaseURL();
  static void setAdServerBaseURL(const platform::URL& url);

  /// Where the ad engine script is fetched from.
  static const platform::URL& scriptHostBaseURL();
  static void setScriptHostBaseURL(const platform::URL& url);
};

}  // namespace valdren
