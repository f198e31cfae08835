#include "tests/support/SelfSignedCertificate.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <memory>
#include <stdexcept>

namespace platform = valdren::platform;

namespace quorbel_tests {
namespace {

template <auto freeIt>
struct Free {
  template <class T>
  void operator()(T* object) const {
    freeIt(object);
  }
};

using Key = std::unique_ptr<EVP_PKEY, Free<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Free<X509_free>>;
using Memory = std::unique_ptr<BIO, Free<BIO_free>>;

Certificate signedBy(EVP_PKEY* key) {
  Certificate certificate(X509_new());
  X509_set_version(certificate.get(), X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -60);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 3600);
  X509_NAME* const name = X509_get_subject_name(certificate.get());
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                             reinterpret_cast<const unsigned char*>("127.0.0.1"), -1, -1, 0);
  X509_set_issuer_name(certificate.get(), name);
  X509_EXTENSION* const host =
      X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
  X509_add_ext(certificate.get(), host, -1);
  X509_EXTENSION_free(host);
  X509_set_pubkey(certificate.get(), key);
  X509_sign(certificate.get(), key, EVP_sha256());
  return certificate;
}

}  // namespace

platform::GObjectPtr<GTlsCertificate> selfSignedCertificate() {
  const Key key(EVP_EC_gen("P-256"));
  const Certificate certificate = signedBy(key.get());
  const Memory memory(BIO_new(BIO_s_mem()));
  PEM_write_bio_PrivateKey(memory.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
  PEM_write_bio_X509(memory.get(), certificate.get());
  char* text = nullptr;
  const long length = BIO_get_mem_data(memory.get(), &text);
  platform::GObjectPtr<GTlsCertificate> result(
      g_tls_certificate_new_from_pem(text, length, nullptr));
  if (!result) throw std::runtime_error("no certificate could be made");
  return result;
}

}  // namespace quorbel_tests
