#include "platform/base/Crypto.h"

#include <gtest/gtest.h>

#include "tests/support/Process.h"

namespace platform = valdren::platform;

namespace {

using platform::Key128;
using quorbel_tests::run;

constexpr Key128 kKey = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
constexpr const char* kKeyText = "000102030405060708090a0b0c0d0e0f";

template <std::size_t size>
std::string hexadecimal(const std::array<std::uint8_t, size>& bytes) {
  std::string text;
  char digits[3];
  for (const auto byte : bytes) {
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text;
}

TEST(Crypto, DigestsAgreeWithTheCommands) {
  for (const std::string text : {"", "abc", "\xff\x01 more"}) {
    EXPECT_EQ(hexadecimal(platform::md5(text)),
              run("md5sum | cut -c-32", text).output.substr(0, 32));
    EXPECT_EQ(hexadecimal(platform::sha256(text)),
              run("sha256sum | cut -c-64", text).output.substr(0, 64));
  }
}

TEST(Crypto, CBCIsWhatTheCommandDecrypts) {
  const std::array<std::uint8_t, 16> vector = {9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 255, 254, 253, 252};
  for (const std::size_t size : {std::size_t{0}, std::size_t{16}, std::size_t{4096}}) {
    const std::string plain(size, 'p');
    const auto cipher = platform::encryptAES128CBC(plain, kKey, vector);
    ASSERT_TRUE(cipher);
    EXPECT_EQ(cipher->size(), size);
    const auto decrypted = run(std::string("openssl enc -d -aes-128-cbc -nopad -K ") + kKeyText +
                                   " -iv " + hexadecimal(vector),
                               *cipher);
    EXPECT_EQ(decrypted.status, 0) << decrypted.errors;
    EXPECT_EQ(decrypted.output, plain);
  }
  EXPECT_FALSE(platform::encryptAES128CBC("fifteen bytes..", kKey, vector));
}

TEST(Crypto, SealedDataOpensOnlyUnchangedAndUnderItsKey) {
  const std::string plain = "what the person did";
  const auto encrypted = platform::encryptAES128GCM(plain, kKey);
  ASSERT_TRUE(encrypted);
  EXPECT_EQ(encrypted->size(), 12 + plain.size() + 16);
  EXPECT_EQ(platform::decryptAES128GCM(*encrypted, kKey), plain);
  EXPECT_NE(encrypted, platform::encryptAES128GCM(plain, kKey)) << "the nonce was used twice";
  for (std::size_t place = 0; place < encrypted->size(); ++place) {
    std::string changed = *encrypted;
    changed[place] = static_cast<char>(changed[place] ^ 1);
    EXPECT_FALSE(platform::decryptAES128GCM(changed, kKey)) << place;
  }
  EXPECT_FALSE(platform::decryptAES128GCM(*encrypted, Key128{}));
  for (const std::size_t length : {0, 12, 27}) {
    EXPECT_FALSE(platform::decryptAES128GCM(encrypted->substr(0, length), kKey));
  }
}

}  // namespace
