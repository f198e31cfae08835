#include "ads/signals/SealedSignals.h"

#include "ads/support/VAD_VTMStringEncoding.h"
#include "platform/base/Crypto.h"
#include "platform/base/Json.h"

namespace valdren {
namespace {

/// The ad network holds the same key.
constexpr platform::Key128 kKey = {0x91, 0x3e, 0x5c, 0xd2, 0x07, 0x6a, 0xb8, 0x4f,
                                   0xe3, 0x28, 0x9d, 0x15, 0x70, 0xc6, 0x4b, 0xfa};

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
  const auto sealed = json ? platform::sealAES128GCM(*json, kKey) : std::nullopt;
  if (!sealed) return std::nullopt;
  return webSafe().encode(*sealed);
}

std::optional<platform::Dictionary> openSignals(std::string_view sealed) {
  const auto data = webSafe().decode(sealed);
  const auto json = data ? platform::openAES128GCM(*data, kKey) : std::nullopt;
  const auto value = json ? platform::parseJson(*json) : std::nullopt;
  if (!value || !value->dictionary()) return std::nullopt;
  return *value->dictionary();
}

}  // namespace valdren
