#include "tests/server/Certificates.hpp"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <atomic>
#include <stdexcept>
#include <string_view>

namespace tests {

namespace {

constexpr long kDay = 24L * 60 * 60;

std::shared_ptr<EVP_PKEY> makeKey() { return {EVP_EC_gen("P-256"), EVP_PKEY_free}; }

void setName(X509_NAME* name, const std::string& text) {
  X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                             reinterpret_cast<const unsigned char*>(text.data()),
                             static_cast<int>(text.size()), -1, 0);
}

void addExtension(X509* certificate, int kind, const std::string& value) {
  const std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)> extension(
      X509V3_EXT_conf_nid(nullptr, nullptr, kind, value.c_str()), X509_EXTENSION_free);
  X509_add_ext(certificate, extension.get(), -1);
}

Certificate unsignedCertificate(const CertificateOptions& options) {
  static std::atomic<long> serial = 1;
  Certificate made{{X509_new(), X509_free}, makeKey()};
  auto* const x509 = made.x509.get();
  X509_set_version(x509, X509_VERSION_3);
  ASN1_INTEGER_set(X509_get_serialNumber(x509), serial++);
  X509_gmtime_adj(X509_getm_notBefore(x509), options.validFrom * kDay);
  X509_gmtime_adj(X509_getm_notAfter(x509), options.validUntil * kDay);
  setName(X509_get_subject_name(x509), options.host);
  X509_set_pubkey(x509, made.key.get());
  return made;
}

void sign(const Certificate& certificate, const Certificate& issuer) {
  X509_set_issuer_name(certificate.x509.get(), X509_get_subject_name(issuer.x509.get()));
  if (X509_sign(certificate.x509.get(), issuer.key.get(), EVP_sha256()) == 0) {
    throw std::runtime_error("a certificate of the tests cannot be signed");
  }
}

Certificate hostCertificate(const CertificateOptions& options) {
  auto made = unsignedCertificate(options);
  addExtension(made.x509.get(), NID_subject_alt_name, "DNS:" + options.host);
  return made;
}

int chooseHttp2(SSL*, const unsigned char** chosen, unsigned char* length,
                const unsigned char* offered, unsigned offeredLength, void*) {
  constexpr std::string_view kHttp2 = "\2h2";
  const std::string_view names(reinterpret_cast<const char*>(offered), offeredLength);
  const auto at = names.find(kHttp2);
  if (at == std::string_view::npos) return SSL_TLSEXT_ERR_NOACK;
  *chosen = offered + at + 1;
  *length = 2;
  return SSL_TLSEXT_ERR_OK;
}

}  // namespace

std::string Certificate::pem() const {
  const std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), BIO_free);
  PEM_write_bio_X509(memory.get(), x509.get());
  char* start = nullptr;
  const auto size = BIO_get_mem_data(memory.get(), &start);
  return {start, static_cast<std::size_t>(size)};
}

Certificate makeRoot(const std::string& name) {
  auto root = unsignedCertificate({.host = name});
  addExtension(root.x509.get(), NID_basic_constraints, "critical,CA:TRUE");
  sign(root, root);
  return root;
}

Certificate makeCertificate(const Certificate& issuer, const CertificateOptions& options) {
  auto made = hostCertificate(options);
  sign(made, issuer);
  return made;
}

Certificate makeSelfSigned(const CertificateOptions& options) {
  auto made = hostCertificate(options);
  sign(made, made);
  return made;
}

std::shared_ptr<SSL_CTX> makeTls(const Certificate& certificate, TlsOptions options) {
  std::shared_ptr<SSL_CTX> tls(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
  SSL_CTX_use_certificate(tls.get(), certificate.x509.get());
  SSL_CTX_use_PrivateKey(tls.get(), certificate.key.get());
  if (options.http2) SSL_CTX_set_alpn_select_cb(tls.get(), chooseHttp2, nullptr);
  if (options.outdated) SSL_CTX_set_max_proto_version(tls.get(), TLS1_VERSION);
  if (options.wantsClientCertificate) {
    SSL_CTX_set_verify(tls.get(), SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
  }
  return tls;
}

}  // namespace tests
