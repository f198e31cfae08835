#include "ads/signals/SealedSignals.h"

#include "ads/protocol/Secrets.h"
#include "ads/support/VAD_VTMStringEncoding.h"
#include "platform/base/Crypto.h"
#include "platform/base/Json.h"

namespace valdren {
namespace {

const VTMStringEncoding& webSafe() {
  static const auto encoding = [] {
    auto made = VTMStringEncoding::rfc4648Base64WebsafeStringEncoding();
    made->setDoPad(false);
    return made;
  }();
  return *encoding;
}

}  // namespace

std::optional<std::string> sealSignals(const platform::Dictionary& signals) {
  const auto json = platform::writeJson(signals);
  const auto sealed = json ? platform::sealAES128GCM(*json, kVADSignalsSecret) : std::nullopt;
  if (!sealed) return std::nullopt;
  return webSafe().encode(*sealed);
}

std::optional<platform::Dictionary> openSignals(std::string_view sealed) {
  const auto data = webSafe().decode(sealed);
  const auto json = data ? platform::openAES128GCM(*data, kVADSignalsSecret) : std::nullopt;
  const auto value = json ? platform::parseJson(*json) : std::nullopt;
  if (!value || !value->dictionary()) return std::nullopt;
  return *value->dictionary();
}

}  // namespace valdren
