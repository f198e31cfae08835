#include "ads/support/VAD_VTMStringEncoding.h"

#include <cstring>
#include <numeric>
#include <stdexcept>

#include "platform/base/Crypto.h"
#include "platform/base/Text.h"

namespace valdren {
namespace {

constexpr int kUnknownCharacter = -1;
constexpr int kPaddingCharacter = -2;
constexpr int kIgnoredCharacter = -3;

bool isASCII(std::string_view text) {
  std::uint64_t all = 0;
  for (; text.size() >= sizeof all; text.remove_prefix(sizeof all)) {
    std::uint64_t eight;
    std::memcpy(&eight, text.data(), sizeof eight);
    all |= eight;
  }
  for (const char character : text) all |= static_cast<unsigned char>(character);
  return (all & 0x8080808080808080) == 0;
}

/// A failure that only a mistake of ours or the caller's can cause.
[[noreturn]] void raise(const char* operation, const char* reason) {
  throw std::logic_error(std::string(reason) + " (" + operation + ", VAD_VTMStringEncoding)");
}

/// The smallest piece of data that fills whole characters, for one number of bits a character.
template <int bits>
struct Group {
  static constexpr int kBytes = std::lcm(8, bits) / 8;
  static constexpr int kCharacters = std::lcm(8, bits) / bits;
};

VAD_VTMStringEncoding::Pointer padded(std::string_view alphabet) {
  auto encoding = VAD_VTMStringEncoding::stringEncodingWithString(alphabet);
  encoding->setPaddingChar('=');
  encoding->setDoPad(true);
  return encoding;
}

}  // namespace

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::rfc4648Base64WebsafeStringEncoding() {
  return padded("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_");
}

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::rfc4648Base64StringEncoding() {
  return padded("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::crockfordBase32StringEncoding() {
  auto encoding = stringEncodingWithString("0123456789ABCDEFGHJKMNPQRSTVWXYZ");
  encoding->addDecodeSynonyms("0oO1iIlLAaBbCcDdEeFfGgHhJjKkMmNnPpQqRrSsTtVvWwXxYyZz");
  return encoding;
}

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::rfc4648Base32HexStringEncoding() {
  return padded("0123456789ABCDEFGHIJKLMNOPQRSTUV");
}

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::rfc4648Base32StringEncoding() {
  return padded("ABCDEFGHIJKLMNOPQRSTUVWXYZ234567");
}

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::hexStringEncoding() {
  auto encoding = stringEncodingWithString("0123456789ABCDEF");
  encoding->addDecodeSynonyms("AaBbCcDdEeFf");
  return encoding;
}

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::binaryStringEncoding() {
  return stringEncodingWithString("01");
}

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::stringEncodingWithString(
    std::string_view alphabet) {
  return initWithString(alphabet);
}

VAD_VTMStringEncoding::Pointer VAD_VTMStringEncoding::initWithString(std::string_view alphabet) {
  const std::size_t length = alphabet.size();
  const bool powerOfTwo = (length & (length - 1)) == 0;
  if (length < 2 || length > 128 || !powerOfTwo || !isASCII(alphabet)) return nullptr;

  Pointer encoding(new VAD_VTMStringEncoding);
  encoding->charMapData_ = alphabet;
  encoding->charMap_ = encoding->charMapData_.data();
  encoding->reverseCharMap_.fill(kUnknownCharacter);
  for (std::size_t value = 0; value < length; ++value) {
    std::int32_t& entry = encoding->reverseCharMap_[static_cast<unsigned char>(alphabet[value])];
    if (entry != kUnknownCharacter) return nullptr;
    entry = static_cast<std::int32_t>(value);
  }
  while ((std::size_t{1} << encoding->shift_) < length) ++encoding->shift_;
  encoding->mask_ = (1 << encoding->shift_) - 1;
  encoding->padLen_ = std::lcm(8, encoding->shift_) / encoding->shift_;
  return encoding;
}

void VAD_VTMStringEncoding::setPaddingChar(char padding) {
  const auto code = static_cast<unsigned char>(padding);
  if (code >= reverseCharMap_.size()) return;
  paddingChar_ = padding;
  reverseCharMap_[code] = kPaddingCharacter;
}

void VAD_VTMStringEncoding::addDecodeSynonyms(std::string_view synonyms) {
  if (!isASCII(synonyms)) return;
  std::int32_t value = kUnknownCharacter;
  for (const char character : synonyms) {
    std::int32_t& entry = reverseCharMap_[static_cast<unsigned char>(character)];
    if (entry == kUnknownCharacter) {
      entry = value;
    } else {
      value = entry;
    }
  }
}

void VAD_VTMStringEncoding::ignoreCharacters(std::string_view characters) {
  if (!isASCII(characters)) return;
  for (const char character : characters) {
    std::int32_t& entry = reverseCharMap_[static_cast<unsigned char>(character)];
    if (entry != kUnknownCharacter) raise("ignoreCharacters", "Character already mapped");
    entry = kIgnoredCharacter;
  }
}

std::size_t VAD_VTMStringEncoding::encodedLength(std::size_t byteCount) const {
  const auto bits = static_cast<std::size_t>(shift_);
  const auto group = static_cast<std::size_t>(padLen_);
  const std::size_t length = (byteCount * 8 + bits - 1) / bits;
  return doPad_ ? (length + group - 1) / group * group : length;
}

/// Writes as many whole groups as there are; gives the number of bytes taken.
template <int bits>
std::size_t VAD_VTMStringEncoding::encodeGroups(std::string_view data, char* out) const {
  using Size = Group<bits>;
  const auto* const bytes = reinterpret_cast<const unsigned char*>(data.data());
  const std::size_t whole = data.size() - data.size() % Size::kBytes;
  for (std::size_t place = 0; place < whole; place += Size::kBytes) {
    std::uint64_t buffer = 0;
    for (int index = 0; index < Size::kBytes; ++index) buffer = buffer << 8 | bytes[place + index];
    for (int index = Size::kCharacters - 1; index >= 0; --index) {
      out[index] = charMap_[buffer & ((1 << bits) - 1)];
      buffer >>= bits;
    }
    out += Size::kCharacters;
  }
  return whole;
}

std::size_t VAD_VTMStringEncoding::encodeWholeGroups(std::string_view data, char* out) const {
  switch (shift_) {
    case 1: return encodeGroups<1>(data, out);
    case 2: return encodeGroups<2>(data, out);
    case 3: return encodeGroups<3>(data, out);
    case 4: return encodeGroups<4>(data, out);
    case 5: return encodeGroups<5>(data, out);
    case 6: return encodeGroups<6>(data, out);
    default: return encodeGroups<7>(data, out);
  }
}

std::string VAD_VTMStringEncoding::encode(std::string_view data) const {
  if (data.empty()) return "";
  const std::size_t length = encodedLength(data.size());
  std::string result(length, paddingChar_);
  const std::size_t taken = encodeWholeGroups(data, result.data());
  std::size_t written = taken * 8 / static_cast<std::size_t>(shift_);

  unsigned buffer = 0;
  int held = 0;
  for (const char byte : data.substr(taken)) {
    buffer = buffer << 8 | static_cast<unsigned char>(byte);
    held += 8;
    for (; held >= shift_; held -= shift_) {
      result.at(written++) = charMap_[buffer >> (held - shift_) & unsigned(mask_)];
    }
  }
  if (held > 0) result.at(written++) = charMap_[buffer << (shift_ - held) & unsigned(mask_)];
  if (doPad_) written = encodedLength(data.size());
  if (written != length) raise("encode", "Underflowed output buffer");
  return result;
}

struct VAD_VTMStringEncoding::Decoder {
  std::string_view rest;
  std::string data;
  std::size_t written = 0;
  std::uint32_t buffer = 0;
  int held = 0;
  bool padded = false;
};

/// Takes whole groups while they consist of digits. False when it took none.
template <int bits>
bool VAD_VTMStringEncoding::decodeGroups(Decoder& decoder) const {
  using Size = Group<bits>;
  const char* in = decoder.rest.data();
  const char* const end = in + decoder.rest.size() / Size::kCharacters * Size::kCharacters;
  char* out = decoder.data.data() + decoder.written;
  for (; in != end; in += Size::kCharacters) {
    std::uint64_t buffer = 0;
    std::int32_t special = 0;  // negative as soon as one entry is
    for (int index = 0; index < Size::kCharacters; ++index) {
      const std::int32_t entry = reverseCharMap_[static_cast<unsigned char>(in[index])];
      special |= entry;
      buffer = buffer << bits | static_cast<std::uint32_t>(entry);
    }
    if (special < 0) break;
    for (int index = 0; index < Size::kBytes; ++index) {
      *out++ = static_cast<char>(buffer >> 8 * (Size::kBytes - 1 - index));
    }
  }
  const auto taken = static_cast<std::size_t>(in - decoder.rest.data());
  decoder.rest.remove_prefix(taken);
  decoder.written = static_cast<std::size_t>(out - decoder.data.data());
  return taken > 0;
}

bool VAD_VTMStringEncoding::decodeWholeGroups(Decoder& decoder) const {
  switch (shift_) {
    case 1: return decodeGroups<1>(decoder);
    case 2: return decodeGroups<2>(decoder);
    case 3: return decodeGroups<3>(decoder);
    case 4: return decodeGroups<4>(decoder);
    case 5: return decodeGroups<5>(decoder);
    case 6: return decodeGroups<6>(decoder);
    default: return decodeGroups<7>(decoder);
  }
}

/// Takes one character. False when the text is thereby known to be wrong.
bool VAD_VTMStringEncoding::decodeCharacter(Decoder& decoder) const {
  const std::int32_t entry = reverseCharMap_[static_cast<unsigned char>(decoder.rest.front())];
  decoder.rest.remove_prefix(1);
  if (entry == kUnknownCharacter) return false;
  if (entry == kIgnoredCharacter) return true;
  if (entry == kPaddingCharacter) {
    decoder.padded = true;
    return true;
  }
  if (decoder.padded) return false;
  decoder.buffer = decoder.buffer << shift_ | static_cast<std::uint32_t>(entry & mask_);
  decoder.held += shift_;
  if (decoder.held < 8) return true;
  if (decoder.written == decoder.data.size()) raise("decode", "Overflowed buffer");
  decoder.held -= 8;
  decoder.data[decoder.written++] = static_cast<char>(decoder.buffer >> decoder.held);
  return true;
}

std::optional<std::string> VAD_VTMStringEncoding::decode(
    std::optional<std::string_view> text) const {
  if (!text || !isASCII(*text)) return std::nullopt;
  Decoder decoder;
  decoder.rest = *text;
  decoder.data.resize(text->size() * static_cast<std::size_t>(shift_) / 8);
  while (!decoder.rest.empty()) {
    // Between groups nothing is held, so that the next ones can be taken whole.
    if (decoder.held == 0 && !decoder.padded && decodeWholeGroups(decoder)) continue;
    if (!decodeCharacter(decoder)) return std::nullopt;
  }
  const std::uint32_t leftOver = decoder.buffer & ((1u << decoder.held) - 1);
  if (decoder.held > 0 && leftOver != 0) return std::nullopt;
  decoder.data.resize(decoder.written);
  return std::move(decoder.data);
}

std::optional<std::string> VAD_VTMStringEncoding::stringByDecoding(
    std::optional<std::string_view> text) const {
  std::optional<std::string> data = decode(text);
  if (!data || !platform::isUTF8(*data)) return std::nullopt;
  return data;
}

std::string VAD_VTMStringEncoding::description() const {
  std::string bytes;
  for (std::size_t place = 0; place < charMapData_.size(); ++place) {
    if (place > 0 && place % 4 == 0) bytes += ' ';
    const auto code = static_cast<unsigned char>(charMapData_[place]);
    bytes += platform::hexadecimal({&code, 1});
  }
  return "<Base" + std::to_string(1 << shift_) + " StringEncoder: <" + bytes + ">>";
}

}  // namespace valdren
