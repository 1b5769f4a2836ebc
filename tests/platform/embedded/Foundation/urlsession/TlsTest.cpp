#include <gtest/gtest.h>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"
#include "tests/server/Certificates.hpp"

namespace Foundation {
namespace {

using tests::Certificate;
using tests::makeCertificate;

// Trusts a root of its own, in a file that the environment names.
class Tls : public testing::Test {
 protected:
  Tls() {
    tests::write(folder.file("root.pem"), root.pem());
    ::unsetenv("CURL_CA_BUNDLE");
    ::unsetenv("SSL_CERT_DIR");
    ::setenv("SSL_CERT_FILE", folder.file("root.pem").c_str(), 1);
  }

  static tests::Loaded get(const Certificate& certificate, tests::TlsOptions options = {}) {
    const auto tls = tests::makeTls(certificate, options);
    const tests::HttpServer server(tls.get());
    return tests::load(server.url("/text"));
  }

  tests::TemporaryFolder folder;
  Certificate root = tests::makeRoot();
};

TEST_F(Tls, LoadsFromAHostWithATrustedCertificate) {
  EXPECT_EQ(get(makeCertificate(root)).text(), "The quick brown fox jumps over the lazy dog.");
}

TEST_F(Tls, TakesTheRootsThatUsersNameForCurl) {
  ::setenv("CURL_CA_BUNDLE", folder.file("root.pem").c_str(), 1);
  ::setenv("SSL_CERT_FILE", "/dev/null", 1);

  EXPECT_EQ(get(makeCertificate(root)).status(), 200);
}

TEST_F(Tls, RefusesAnExpiredCertificate) {
  const auto loaded = get(makeCertificate(root, {.validFrom = -3, .validUntil = -1}));

  EXPECT_EQ(loaded.code(), NSURLErrorServerCertificateHasBadDate);
  EXPECT_EQ(loaded.message(), "The certificate of localhost has expired.");
}

TEST_F(Tls, RefusesACertificateThatIsNotValidYet) {
  const auto loaded = get(makeCertificate(root, {.validFrom = 1, .validUntil = 3}));

  EXPECT_EQ(loaded.code(), NSURLErrorServerCertificateNotYetValid);
  EXPECT_EQ(loaded.message(), "The certificate of localhost is not valid yet.");
}

TEST_F(Tls, RefusesACertificateForAnotherHost) {
  const auto loaded = get(makeCertificate(root, {.host = "elsewhere.test"}));

  EXPECT_EQ(loaded.code(), NSURLErrorServerCertificateUntrusted);
  EXPECT_EQ(loaded.message(), "The certificate that localhost showed is for another host.");
}

TEST_F(Tls, RefusesASelfSignedCertificate) {
  const auto loaded = get(tests::makeSelfSigned());

  EXPECT_EQ(loaded.code(), NSURLErrorServerCertificateUntrusted);
  EXPECT_EQ(loaded.message(), "The certificate of localhost is signed by nobody but itself.");
}

TEST_F(Tls, RefusesACertificateOfAnUnknownRoot) {
  const auto loaded = get(makeCertificate(tests::makeRoot("Somebody else")));

  EXPECT_EQ(loaded.code(), NSURLErrorServerCertificateHasUnknownRoot);
  EXPECT_EQ(loaded.message(), "The certificate of localhost was issued by somebody unknown.");
}

TEST_F(Tls, TrustsNoRootOfTheTestsWithoutBeingTold) {
  ::unsetenv("SSL_CERT_FILE");
  EXPECT_EQ(get(makeCertificate(root)).code(), NSURLErrorServerCertificateHasUnknownRoot);
}

TEST_F(Tls, SaysThatAServerWantsACertificateOfItsClients) {
  const auto loaded = get(makeCertificate(root), {.wantsClientCertificate = true});

  EXPECT_EQ(loaded.code(), NSURLErrorClientCertificateRequired);
  EXPECT_EQ(loaded.message(), "localhost asks for a certificate of its clients.");
}

TEST_F(Tls, FailsWithAServerThatSpeaksAnOutdatedVersion) {
  const auto loaded = get(makeCertificate(root), {.outdated = true});

  EXPECT_EQ(loaded.code(), NSURLErrorSecureConnectionFailed);
  EXPECT_EQ(loaded.message(), "A secure connection to localhost could not be made.");
}

TEST_F(Tls, SendsNothingToAHostThatItDoesNotTrust) {
  const auto tls = tests::makeTls(tests::makeSelfSigned());
  const tests::HttpServer server(tls.get());
  (void)tests::load(server.url("/text"));

  EXPECT_TRUE(server.requests().empty());
}

TEST_F(Tls, SpeaksHttp2WhereTheServerDoes) {
  const auto loaded = get(makeCertificate(root), {.http2 = true});

  EXPECT_EQ(loaded.status(), 200);
  EXPECT_EQ(loaded.text(), "HTTP/2");
}

TEST_F(Tls, SendsManyRequestsOverOneConnectionOfHttp2) {
  const auto tls = tests::makeTls(makeCertificate(root), {.http2 = true});
  const tests::HttpServer server(tls.get());
  const auto session = tests::newSession();
  tests::Endings endings;
  for (int i = 0; i < 64; ++i) {
    session->dataTask(tests::requestFor(server.url("/")), endings.forData())->resume();
  }

  ASSERT_TRUE(endings.waitFor(64));
  for (const auto& loaded : endings.all()) EXPECT_EQ(loaded.text(), "HTTP/2") << loaded.message();
  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Tls, ACancelDropsTheConnectionOfHttp2) {
  const auto tls = tests::makeTls(makeCertificate(root), {.http2 = true});
  const tests::HttpServer server(tls.get());
  const auto session = tests::newSession();
  tests::Endings endings;
  auto request = tests::requestFor(server.url("/"));
  request.setHTTPMethod("POST");
  request.setHTTPBody(Data{std::byte{1}});  // which is never answered
  const auto task = session->dataTask(request, endings.forData());
  task->resume();
  ASSERT_TRUE(server.waitForRequests(1));

  task->cancel();

  ASSERT_TRUE(endings.waitFor(1));
  EXPECT_EQ(endings.all()[0].code(), NSURLErrorCancelled);
  EXPECT_TRUE(server.waitForOpenConnections(0));
}

TEST_F(Tls, ManyRequestsInTurnShareOneConnectionOfHttp2) {
  const auto tls = tests::makeTls(makeCertificate(root), {.http2 = true});
  const tests::HttpServer server(tls.get());
  const auto session = tests::newSession();
  tests::Endings endings;
  for (int i = 1; i <= 5; ++i) {
    session->dataTask(tests::requestFor(server.url("/")), endings.forData())->resume();
    ASSERT_TRUE(endings.waitFor(static_cast<std::size_t>(i)));
  }

  EXPECT_EQ(server.connections(), 1);
}

}  // namespace
}  // namespace Foundation
