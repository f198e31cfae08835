#include "ads/signals/EncryptedSignals.h"

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

std::optional<std::string> encryptSignals(const platform::Dictionary& signals) {
  const auto json = platform::writeJson(signals);
  const auto encrypted = json ? platform::encryptAES128GCM(*json, kVADSignalsSecret) : std::nullopt;
  if (!encrypted) return std::nullopt;
  return webSafe().encode(*encrypted);
}

std::optional<platform::Dictionary> decryptSignals(std::string_view encrypted) {
  const auto data = webSafe().decode(encrypted);
  const auto json = data ? platform::decryptAES128GCM(*data, kVADSignalsSecret) : std::nullopt;
  const auto value = json ? platform::parseJson(*json) : std::nullopt;
  if (!value || !value->dictionary()) return std::nullopt;
  return *value->dictionary();
}

}  // namespace valdren
