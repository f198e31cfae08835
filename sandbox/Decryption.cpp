#include "sandbox/Decryption.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include "ads/protocol/Secrets.h"
#include "platform/base/Crypto.h"
#include "platform/base/Json.h"
#include "platform/base/Text.h"

namespace platform = valdren::platform;

namespace sandbox {
namespace {

constexpr std::string_view kLetters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
constexpr std::size_t kVector = 16;
constexpr std::string_view kPlain = valdren::kVADPlainLocation;
constexpr std::string_view kSealed = valdren::kVADSealedLocation;

std::optional<std::string> decryptedText(const std::string& data) {
  if (data.size() < kVector) return std::nullopt;
  std::array<std::uint8_t, kVector> vector{};
  std::copy_n(data.begin(), kVector, vector.begin());
  auto text = platform::decryptAES128CBC(std::string_view(data).substr(kVector),
                                         valdren::kVADLocationSecret, vector);
  if (!text || text->empty()) return std::nullopt;
  // The last byte is the length of the padding.
  const auto added = static_cast<unsigned char>(text->back());
  if (added == 0 || added > kVector || added > text->size()) return std::nullopt;
  text->resize(text->size() - added);
  return text;
}

}  // namespace

std::optional<std::string> unpackedBase64(std::string_view text) {
  if (text.find_first_not_of(kLetters) != std::string_view::npos) return std::nullopt;
  std::string padded;
  for (const char letter : text) padded += letter == '-' ? '+' : letter == '_' ? '/' : letter;
  while (padded.size() % 4 != 0) padded += '=';
  gsize length = 0;
  const std::unique_ptr<guchar, decltype(&g_free)> data(g_base64_decode(padded.c_str(), &length),
                                                        g_free);
  return std::string(reinterpret_cast<const char*>(data.get()), length);
}

std::optional<std::string> decodedLocation(std::string_view text) {
  std::optional<std::string> opened;
  if (text.starts_with(kPlain)) {
    opened = unpackedBase64(text.substr(kPlain.size()));
  } else if (text.starts_with(kSealed)) {
    const auto data = unpackedBase64(text.substr(kSealed.size()));
    opened = data ? decryptedText(*data) : std::nullopt;
  }
  return opened && platform::isUTF8(*opened) ? opened : std::nullopt;
}

std::optional<platform::Value> decryptedSignals(std::string_view text) {
  const auto data = unpackedBase64(text);
  const auto json =
      data ? platform::decryptAES128GCM(*data, valdren::kVADSignalsSecret) : std::nullopt;
  return json ? platform::parseJson(*json) : std::nullopt;
}

}  // namespace sandbox
