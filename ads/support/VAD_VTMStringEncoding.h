// Data as text in an alphabet of 2, 4, 8 ... 128 characters: base64, base32, hexadecimal, binary.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace valdren {

/// Encodes n bits a character, most significant bits first; zero bits fill the last character. All
/// operations take time linear in their input.
class VAD_VTMStringEncoding {
 public:
  using Pointer = std::unique_ptr<VAD_VTMStringEncoding>;

  static Pointer rfc4648Base64WebsafeStringEncoding();
  static Pointer rfc4648Base64StringEncoding();
  static Pointer crockfordBase32StringEncoding();
  static Pointer rfc4648Base32HexStringEncoding();
  static Pointer rfc4648Base32StringEncoding();
  static Pointer hexStringEncoding();
  static Pointer binaryStringEncoding();

  /// An encoding without padding over these characters; null unless they are 2, 4, 8 ... or 128
  /// different ASCII characters.
  static Pointer stringEncodingWithString(std::string_view alphabet);
  static Pointer initWithString(std::string_view alphabet);

  std::string encode(std::string_view data) const;
  /// The same for a text's UTF-8 bytes.
  std::string encodeString(std::string_view text) const { return encode(text); }

  /// The data; none for an absent text, for a character outside the encoding, for a digit after
  /// padding, and for bits left over that are not all zero. Padding may be short or missing, or too
  /// long.
  std::optional<std::string> decode(std::optional<std::string_view> text) const;
  /// The same when the data is UTF-8 text, else none.
  std::optional<std::string> stringByDecoding(std::optional<std::string_view> text) const;

  /// Whether `encode` fills the last group with padding characters.
  bool doPad() const { return doPad_; }
  void setDoPad(bool doPad) { doPad_ = doPad; }
  /// Also when decoding: the character ceases to be a digit. None at first. Characters that are not
  /// ASCII are ignored.
  void setPaddingChar(char padding);

  /// Each character that is not yet part of the encoding decodes as the nearest one before it that
  /// is; those before the first such one stay invalid. Nothing happens unless all are ASCII.
  void addDecodeSynonyms(std::string_view synonyms);
  /// These are skipped when decoding. Throws std::logic_error at the first that is already part of
  /// the encoding; those before it are then ignored. Nothing happens unless all are ASCII.
  void ignoreCharacters(std::string_view characters);

  /// "<Base64 StringEncoder: <41424344 ...>>" with the alphabet's bytes in hexadecimal.
  std::string description() const;

 private:
  VAD_VTMStringEncoding() = default;

  struct Decoder;
  template <int bits>
  std::size_t encodeGroups(std::string_view data, char* out) const;
  std::size_t encodeWholeGroups(std::string_view data, char* out) const;
  template <int bits>
  bool decodeGroups(Decoder& decoder) const;
  bool decodeWholeGroups(Decoder& decoder) const;
  bool decodeCharacter(Decoder& decoder) const;
  std::size_t encodedLength(std::size_t byteCount) const;

  std::string charMapData_;
  const char* charMap_ = nullptr;
  std::array<std::int32_t, 128> reverseCharMap_{};
  int shift_ = 0;
  int mask_ = 0;
  bool doPad_ = false;
  char paddingChar_ = 0;
  int padLen_ = 0;
};

/// The name under which the signals module knows it.
using VTMStringEncoding = VAD_VTMStringEncoding;

}  // namespace valdren
