#include "sandbox/Certificate.h"

#include <openssl/bio.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

namespace platform = valdren::platform;

namespace sandbox {
namespace {

template <auto release>
struct Release {
  void operator()(auto* object) const { release(object); }
};
using Key = std::unique_ptr<EVP_PKEY, Release<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Release<X509_free>>;
using Buffer = std::unique_ptr<BIO, Release<BIO_free_all>>;

constexpr long kHour = 60L * 60;

Certificate certificateFor(EVP_PKEY* key) {
  Certificate certificate(X509_new());
  X509* made = certificate.get();
  if (!made || !key) return nullptr;
  X509_NAME* name = X509_get_subject_name(made);
  const auto* host = reinterpret_cast<const unsigned char*>("127.0.0.1");
  const bool done = X509_set_version(made, 2) && ASN1_INTEGER_set(X509_get_serialNumber(made), 1) &&
                    X509_gmtime_adj(X509_getm_notBefore(made), -kHour) &&
                    X509_gmtime_adj(X509_getm_notAfter(made), 24 * kHour) &&
                    X509_set_pubkey(made, key) &&
                    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, host, -1, -1, 0) &&
                    X509_set_issuer_name(made, name) && X509_sign(made, key, EVP_sha256());
  return done ? std::move(certificate) : nullptr;
}

std::string pem(EVP_PKEY* key, X509* certificate) {
  const Buffer buffer(BIO_new(BIO_s_mem()));
  if (!buffer || !PEM_write_bio_X509(buffer.get(), certificate) ||
      !PEM_write_bio_PrivateKey(buffer.get(), key, nullptr, nullptr, 0, nullptr, nullptr)) {
    return {};
  }
  char* data = nullptr;
  const long size = BIO_get_mem_data(buffer.get(), &data);
  return size > 0 ? std::string(data, static_cast<std::size_t>(size)) : std::string();
}

}  // namespace

platform::GObjectPtr<GTlsCertificate> selfSignedCertificate() {
  if (!g_tls_backend_supports_tls(g_tls_backend_get_default())) return nullptr;
  const Key key(EVP_EC_gen("P-256"));
  const Certificate certificate = certificateFor(key.get());
  if (!certificate) return nullptr;
  const std::string text = pem(key.get(), certificate.get());
  return platform::GObjectPtr<GTlsCertificate>(
      g_tls_certificate_new_from_pem(text.data(), static_cast<gssize>(text.size()), nullptr));
}

}  // namespace sandbox
