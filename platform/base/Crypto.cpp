#include "platform/base/Crypto.h"

#include <openssl/evp.h>
#include <openssl/rand.h>

#include <cstdio>
#include <memory>

namespace valdren::platform {
namespace {

constexpr std::size_t kBlock = 16;
constexpr std::size_t kNonce = 12;
constexpr std::size_t kTag = 16;

struct ContextDeleter {
  void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_CIPHER_CTX, ContextDeleter>;

const unsigned char* bytes(std::string_view data) {
  return reinterpret_cast<const unsigned char*>(data.data());
}
unsigned char* bytes(std::string& data) {
  return reinterpret_cast<unsigned char*>(data.data());
}

template <std::size_t size>
std::array<std::uint8_t, size> digest(std::string_view data, const EVP_MD* algorithm) {
  std::array<std::uint8_t, size> result{};
  unsigned length = size;
  EVP_Digest(data.data(), data.size(), result.data(), &length, algorithm, nullptr);
  return result;
}

}  // namespace

std::string hexadecimal(std::span<const std::uint8_t> data) {
  std::string text;
  for (const std::uint8_t byte : data) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text;
}

std::array<std::uint8_t, 16> md5(std::string_view data) {
  return digest<16>(data, EVP_md5());
}

std::array<std::uint8_t, 32> sha256(std::string_view data) {
  return digest<32>(data, EVP_sha256());
}

std::optional<std::string> encryptAES128CBC(std::string_view data, const Key128& key,
                                            const std::array<std::uint8_t, 16>& vector) {
  if (data.size() % kBlock != 0) return std::nullopt;
  const Context context(EVP_CIPHER_CTX_new());
  std::string result(data.size() + kBlock, '\0');
  int written = 0;
  int tail = 0;
  const bool done =
      context &&
      EVP_EncryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, key.data(), vector.data()) &&
      EVP_CIPHER_CTX_set_padding(context.get(), 0) &&
      EVP_EncryptUpdate(context.get(), bytes(result), &written, bytes(data), int(data.size())) &&
      EVP_EncryptFinal_ex(context.get(), bytes(result) + written, &tail);
  if (!done) return std::nullopt;
  result.resize(static_cast<std::size_t>(written) + static_cast<std::size_t>(tail));
  return result;
}

std::optional<std::string> decryptAES128CBC(std::string_view data, const Key128& key,
                                            const std::array<std::uint8_t, 16>& vector) {
  if (data.size() % kBlock != 0) return std::nullopt;
  const Context context(EVP_CIPHER_CTX_new());
  std::string result(data.size() + kBlock, '\0');
  int written = 0;
  int tail = 0;
  const bool done =
      context &&
      EVP_DecryptInit_ex(context.get(), EVP_aes_128_cbc(), nullptr, key.data(), vector.data()) &&
      EVP_CIPHER_CTX_set_padding(context.get(), 0) &&
      EVP_DecryptUpdate(context.get(), bytes(result), &written, bytes(data), int(data.size())) &&
      EVP_DecryptFinal_ex(context.get(), bytes(result) + written, &tail);
  if (!done) return std::nullopt;
  result.resize(static_cast<std::size_t>(written) + static_cast<std::size_t>(tail));
  return result;
}

std::optional<std::string> encryptAES128GCM(std::string_view data, const Key128& key) {
  const Context context(EVP_CIPHER_CTX_new());
  std::string result(kNonce + data.size() + kTag, '\0');
  int written = 0;
  int tail = 0;
  const bool done =
      context && RAND_bytes(bytes(result), kNonce) == 1 &&
      EVP_EncryptInit_ex(context.get(), EVP_aes_128_gcm(), nullptr, key.data(), bytes(result)) &&
      EVP_EncryptUpdate(context.get(), bytes(result) + kNonce, &written, bytes(data),
                        int(data.size())) &&
      EVP_EncryptFinal_ex(context.get(), bytes(result) + kNonce + written, &tail) &&
      EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, kTag,
                          bytes(result) + kNonce + data.size());
  if (!done) return std::nullopt;
  return result;
}

std::optional<std::string> decryptAES128GCM(std::string_view encrypted, const Key128& key) {
  if (encrypted.size() < kNonce + kTag) return std::nullopt;
  const std::string_view content = encrypted.substr(kNonce, encrypted.size() - kNonce - kTag);
  std::string tag(encrypted.substr(encrypted.size() - kTag));
  const Context context(EVP_CIPHER_CTX_new());
  std::string result(content.size() + kBlock, '\0');
  int written = 0;
  int tail = 0;
  const bool done =
      context &&
      EVP_DecryptInit_ex(context.get(), EVP_aes_128_gcm(), nullptr, key.data(), bytes(encrypted)) &&
      EVP_DecryptUpdate(context.get(), bytes(result), &written, bytes(content),
                        int(content.size())) &&
      EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, kTag, bytes(tag)) &&
      EVP_DecryptFinal_ex(context.get(), bytes(result) + written, &tail) > 0;
  if (!done) return std::nullopt;
  result.resize(static_cast<std::size_t>(written) + static_cast<std::size_t>(tail));
  return result;
}

}  // namespace valdren::platform
