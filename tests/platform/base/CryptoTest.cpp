#include "platform/base/Crypto.h"

#include <gtest/gtest.h>

namespace valdren::platform {
namespace {

constexpr Key128 kKey = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};

// The other digest is compared with that of a tool where it is sent.
TEST(Crypto, TheLongDigestIsThatOfTheStandard) {
  EXPECT_EQ(hexadecimal(sha256("abc")),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(Crypto, SealedDataOpensOnlyUnchangedAndUnderItsKey) {
  const std::string plain = "what the person did";
  const auto encrypted = encryptAES128GCM(plain, kKey);
  ASSERT_TRUE(encrypted);
  EXPECT_EQ(encrypted->size(), 12 + plain.size() + 16);
  EXPECT_EQ(decryptAES128GCM(*encrypted, kKey), plain);
  EXPECT_NE(encrypted, encryptAES128GCM(plain, kKey)) << "the nonce was used twice";
  for (std::size_t place = 0; place < encrypted->size(); ++place) {
    std::string changed = *encrypted;
    changed[place] = static_cast<char>(changed[place] ^ 1);
    EXPECT_FALSE(decryptAES128GCM(changed, kKey)) << place;
  }
  EXPECT_FALSE(decryptAES128GCM(*encrypted, Key128{}));
  for (const std::size_t length : {0, 12, 27}) {
    EXPECT_FALSE(decryptAES128GCM(encrypted->substr(0, length), kKey));
  }
}

}  // namespace
}  // namespace valdren::platform
