#include "ads/request/VADAdAddress.h"

#include "ads/protocol/Messages.h"
#include "ads/protocol/Parameters.h"
#include "ads/protocol/Script.h"
#include "ads/signals/Signals.h"
#include "ads/support/VADNetworkUtilities.h"

namespace valdren {

std::optional<platform::URL> adURLFromAnswer(const platform::Dictionary& userInfo,
                                             const VADRequestPrivate& request) {
  std::optional<platform::URL> url;
  if (const std::string* const address = userInfo.text(kVADMessageKeyAdURL)) {
    url = platform::URL::fromPage(*address);
  }
  const std::string* const type = userInfo.text(kVADMessageKeyType);
  vad_gig(VADRequestPrivate::requestTypeFromString(type ? *type : ""), VADRequest::sdkVersion());
  const platform::Dictionary spamSignals = request.spamSignals();
  if (url && !spamSignals.empty()) {
    url = VADNetworkUtilities::appendQueryParameters(spamSignals, *url);
  }
  if (url && type && *type == kVADAdTypeTovask) {
    url = VADNetworkUtilities::appendQueryKey(kVADQuerySequence, platform::Value("1"), *url);
  }
  return url;
}

}  // namespace valdren
