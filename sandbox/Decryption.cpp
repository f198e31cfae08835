#include "sandbox/Decryption.h"

#include <algorithm>
#include <array>
#include <cstdint>

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
  std::string data;
  unsigned bits = 0;
  int count = 0;
  for (const char letter : text) {
    const std::size_t value = kLetters.find(letter);
    if (value == std::string_view::npos) return std::nullopt;
    bits = (bits << 6 | static_cast<unsigned>(value)) & 0xffff;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    data += static_cast<char>(bits >> count & 0xff);
  }
  return data;
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
