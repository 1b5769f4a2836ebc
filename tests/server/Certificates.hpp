#pragma once

#include <openssl/ssl.h>

#include <memory>
#include <string>

namespace tests {

/// A certificate with its key.
struct Certificate {
  std::shared_ptr<X509> x509;
  std::shared_ptr<EVP_PKEY> key;

  /// As a file for those who trust it.
  [[nodiscard]] std::string pem() const;
};

struct CertificateOptions {
  std::string host = "localhost";
  /// Days from now; below zero for the past.
  int validFrom = -1;
  int validUntil = 1;
};

/// A root that nobody trusts until its `pem` is.
[[nodiscard]] Certificate makeRoot(const std::string& name = "Root of the tests");

/// A certificate for a host, signed by `issuer`.
[[nodiscard]] Certificate makeCertificate(const Certificate& issuer,
                                          const CertificateOptions& options = {});

/// A certificate for a host that it signed itself.
[[nodiscard]] Certificate makeSelfSigned(const CertificateOptions& options = {});

/// What a server shows to its clients, and with whom it talks.
struct TlsOptions {
  bool http2 = false;
  /// Ends the connection with a client that has no certificate.
  bool wantsClientCertificate = false;
  /// Speaks only what nobody should speak any more.
  bool outdated = false;
};

[[nodiscard]] std::shared_ptr<SSL_CTX> makeTls(const Certificate& certificate,
                                               TlsOptions options = {});

}  // namespace tests
