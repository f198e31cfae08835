#include "ads/support/VAD_VTMStringEncoding.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace std::string_literals;
using valdren::VAD_VTMStringEncoding;
using Encoding = VAD_VTMStringEncoding::Pointer;

/// Bytes of all values, without equal neighbours.
std::string bytes(std::size_t size) {
  std::string data;
  for (std::size_t place = 0; place < size; ++place) data += static_cast<char>(place * 73 + 199);
  return data;
}

std::string ascii() {
  std::string all;
  for (int code = 0; code < 128; ++code) all += static_cast<char>(code);
  return all;
}

TEST(StringEncoding, WritesTheStandardsExamples) {
  const struct {
    Encoding encoding;
    const char* text;  // of "fooba"
  } cases[] = {
      {VAD_VTMStringEncoding::rfc4648Base64StringEncoding(), "Zm9vYmE="},
      {VAD_VTMStringEncoding::rfc4648Base32StringEncoding(), "MZXW6YTB"},
      {VAD_VTMStringEncoding::rfc4648Base32HexStringEncoding(), "CPNMUOJ1"},
      {VAD_VTMStringEncoding::hexStringEncoding(), "666F6F6261"},
      {VAD_VTMStringEncoding::binaryStringEncoding(), "0110011001101111011011110110001001100001"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(each.encoding->encode("fooba"), each.text);
    EXPECT_EQ(each.encoding->decode(each.text), "fooba") << each.text;
  }
  EXPECT_EQ(cases[1].encoding->encode("foob"), "MZXW6YQ=");
}

TEST(StringEncoding, AnyAlphabetRoundTripsOverAllSizes) {
  for (int bits = 1; bits <= 7; ++bits) {
    const auto encoding = VAD_VTMStringEncoding::initWithString(ascii().substr(0, 1 << bits));
    ASSERT_TRUE(encoding);
    for (std::size_t size = 0; size <= 64; ++size) {
      const std::string text = encoding->encode(bytes(size));
      EXPECT_EQ(text.size(), (size * 8 + bits - 1) / bits);
      EXPECT_EQ(encoding->decode(text), bytes(size)) << bits << " bits, " << size << " bytes";
    }
  }
}

TEST(StringEncoding, NeedsAnAlphabetOfDifferentASCIICharactersAndAPowerOfTwo) {
  for (const std::string& alphabet :
       {std::string(), "a"s, "abc"s, "abca"s, "ab\xc3\xa9"s, ascii() + ascii()}) {
    EXPECT_FALSE(VAD_VTMStringEncoding::stringEncodingWithString(alphabet)) << alphabet;
  }
}

TEST(StringEncoding, DecodesWhatIsCanonicalAndNothingElse) {
  const std::string data = "\xfb\xff";
  const auto webSafe = VAD_VTMStringEncoding::rfc4648Base64WebsafeStringEncoding();
  EXPECT_EQ(webSafe->encode(data), "-_8=");
  webSafe->setDoPad(false);
  EXPECT_EQ(webSafe->encode(data), "-_8");
  const struct {
    const char* text;
    std::optional<std::string> data;
  } cases[] = {{"-_8", data}, {"-_8=", data}, {"-_8==", data}, {"", ""}, {"====", ""}, {"A", ""}};
  for (const auto& each : cases) EXPECT_EQ(webSafe->decode(each.text), each.data) << each.text;
  for (const char* text : {"-=_8", "-_9", "+/8", "B", "-_8 ", "-_8\xc3\xa9"}) {
    EXPECT_FALSE(webSafe->decode(text)) << text;
  }
  EXPECT_FALSE(webSafe->decode(std::nullopt));
  EXPECT_FALSE(webSafe->decode(std::string_view("-_8\0", 4)));
}

TEST(StringEncoding, CrockfordAndHexForgiveLettersThatLookAlike) {
  const auto crockford = VAD_VTMStringEncoding::crockfordBase32StringEncoding();
  EXPECT_EQ(crockford->decode("O1l0"), crockford->decode("0110"));
  EXPECT_EQ(crockford->decode("oIiL"), crockford->decode("0111"));
  const auto letters = crockford->decode("ABCDEFGHJKMNPQRSTVWXYZ01");
  EXPECT_TRUE(letters);
  EXPECT_EQ(crockford->decode("abcdefghjkmnpqrstvwxyz01"), letters);
  EXPECT_FALSE(crockford->decode("UUUUUUUU"));
  const auto hex = VAD_VTMStringEncoding::hexStringEncoding();
  EXPECT_EQ(hex->decode("fb"), "\xfb");
  EXPECT_FALSE(hex->decode("fg"));
  EXPECT_EQ(hex->stringByDecoding(hex->encodeString("\xc3\xa9")), "\xc3\xa9");
  EXPECT_FALSE(hex->stringByDecoding("FF")) << "no UTF-8";
}

TEST(StringEncoding, SynonymsIgnoredAndPaddingCharactersTakeTheirPlaces) {
  const auto encoding = VAD_VTMStringEncoding::initWithString("01");
  encoding->addDecodeSynonyms("x0oO1I");
  EXPECT_EQ(encoding->decode("oOoOoIoI"), "\x05");
  EXPECT_FALSE(encoding->decode("x0000101")) << "nothing stands before it that it could mean";
  encoding->ignoreCharacters(" -");
  EXPECT_EQ(encoding->decode("0000-01 01"), "\x05");
  EXPECT_THROW(encoding->ignoreCharacters("_o"), std::logic_error);
  EXPECT_EQ(encoding->decode("0000_0101"), "\x05") << "the one before the mapped one counts";

  encoding->setPaddingChar('1');
  EXPECT_EQ(encoding->decode("000000001 -"), std::string(1, '\0'));
  EXPECT_FALSE(encoding->decode("10")) << "a digit after padding";
}

}  // namespace
