#include "ads/request/VADAdAddress.h"

#include "ads/signals/Signals.h"
#include "ads/support/VADNetworkUtilities.h"

namespace valdren {

std::optional<platform::URL> adURLFromAnswer(const platform::Dictionary& userInfo,
                                             const VADRequestPrivate& request) {
  std::optional<platform::URL> url;
  if (const std::string* const address = userInfo.text("url")) {
    url = platform::URL::fromPage(*address);
  }
  const std::string* const type = userInfo.text("type");
  vad_gig(VADRequestPrivate::requestTypeFromString(type ? *type : ""), VADRequest::sdkVersion());
  const platform::Dictionary spamSignals = request.spamSignals();
  if (url && !spamSignals.empty()) {
    url = VADNetworkUtilities::appendQueryParameters(spamSignals, *url);
  }
  if (url && type && *type == "tovask") {
    url = VADNetworkUtilities::appendQueryKey("seq_num", platform::Value("1"), *url);
  }
  return url;
}

}  // namespace valdren
