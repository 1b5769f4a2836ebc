#include <gtest/gtest.h>

#include <cerrno>

#include "platform/embedded/Foundation/urlsession/TransferError.hpp"
#include "platform/embedded/Foundation/urlsession/URLErrors.hpp"
#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

using tests::load;

struct Broken {
  const char* path;
  std::int64_t code;
  const char* words;
};

class BrokenAnswer : public testing::TestWithParam<Broken> {};

TEST_P(BrokenAnswer, FailsWithThePlatformsCodeAndTheHostInPlainWords) {
  const tests::HttpServer server;
  const auto loaded = load(server.url(GetParam().path));

  ASSERT_TRUE(loaded.error);
  EXPECT_EQ(loaded.error->domain(), NSURLErrorDomain);
  EXPECT_EQ(loaded.code(), GetParam().code);
  EXPECT_EQ(loaded.message(), GetParam().words);
  EXPECT_FALSE(loaded.data);
}

INSTANTIATE_TEST_SUITE_P(
    All, BrokenAnswer,
    testing::Values(
        Broken{"/early-close", NSURLErrorNetworkConnectionLost,
               "The connection to 127.0.0.1 was lost."},
        Broken{"/early-chunked", NSURLErrorNetworkConnectionLost,
               "The connection to 127.0.0.1 was lost."},
        Broken{"/early-reset", NSURLErrorNetworkConnectionLost,
               "The connection to 127.0.0.1 was lost."},
        Broken{"/hang-up", NSURLErrorNetworkConnectionLost,
               "The connection to 127.0.0.1 was lost."},
        Broken{"/garbage", NSURLErrorCannotParseResponse,
               "The answer of 127.0.0.1 was not understood."},
        Broken{"/bad-length", NSURLErrorCannotParseResponse,
               "The answer of 127.0.0.1 was not understood."},
        Broken{"/gzip-garbage", NSURLErrorCannotDecodeRawData,
               "What 127.0.0.1 sent could not be decompressed."},
        Broken{"/headers/1000000", NSURLErrorDataLengthExceedsMaximum,
               "The answer of 127.0.0.1 is too long."},
        Broken{"/redirects/100", NSURLErrorHTTPTooManyRedirects,
               "There were too many redirects, the last one to 127.0.0.1."},
        Broken{"/redirect?to=ftp://example.test/", NSURLErrorUnsupportedURL,
               "Addresses of the kind \"ftp\" cannot be loaded, such as \"ftp://example.test/\"."}),
    [](const auto& param) {
      std::string name;
      for (const char c : std::string(param.param.path)) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) name += c;
      }
      return name;
    });

TEST(LoadingError, KeepsTheAnswerWhenItsHeadHadCome) {
  const tests::HttpServer server;

  EXPECT_EQ(load(server.url("/early-close")).status(), 200);
  EXPECT_EQ(load(server.url("/hang-up")).response, nullptr);
}

TEST(LoadingError, NamesTheAddressAndWhatLiesBeneath) {
  const tests::HttpServer server;
  const auto loaded = load(server.url("/hang-up"));

  const auto named = loaded.error->userInfo().find(kURLErrorFailingURLStringKey);
  ASSERT_NE(named, loaded.error->userInfo().end());
  EXPECT_EQ(std::any_cast<std::string>(named->second), server.url("/hang-up"));
  ASSERT_TRUE(loaded.error->underlyingError());
  EXPECT_EQ(loaded.error->underlyingError()->localizedDescription(), "Empty reply from server");
}

TEST(LoadingError, IsForAnAddressOfAnotherKind) {
  for (const char* text :
       {"ftp://127.0.0.1/", "file:///etc/hostname", "data:,hello", "relative/path"}) {
    EXPECT_EQ(load(text).code(), NSURLErrorUnsupportedURL) << text;
  }
}

TEST(LoadingError, IsForAnAddressWithoutHostOrWithAWrongPort) {
  for (const char* text :
       {"http:///path", "http://", "http://?query", "http://:80/", "http://user@/",
        "http://user@:80/", "http:path", "http:/path", "http://127.0.0.1:99999/"}) {
    EXPECT_EQ(load(text).code(), NSURLErrorBadURL) << text;
  }
}

TEST(LoadingError, IsForAHostThatDoesNotListen) {
  int port = 0;
  {
    const tests::HttpServer ended;
    port = ended.port();
  }
  const auto loaded = load("http://127.0.0.1:" + std::to_string(port) + "/");

  EXPECT_EQ(loaded.code(), NSURLErrorCannotConnectToHost);
  EXPECT_EQ(loaded.message(), "Could not connect to 127.0.0.1.");
}

TEST(LoadingError, IsForAHostThatNobodyKnows) {
  const auto loaded = load("http://nobody.invalid/");

  if (detail::networkIsUp()) {
    EXPECT_EQ(loaded.code(), NSURLErrorCannotFindHost);
    EXPECT_EQ(loaded.message(), "The host nobody.invalid was not found.");
  } else {
    EXPECT_EQ(loaded.code(), NSURLErrorNotConnectedToInternet);
  }
}

struct Mapping {
  CURLcode curl;
  long systemError;
  bool networkIsUp;
  std::int64_t code;
};

TEST(TransferError, HasThePlatformsCodeForEachKindOfFailure) {
  const std::vector<Mapping> mappings = {
      {CURLE_URL_MALFORMAT, 0, true, NSURLErrorBadURL},
      {CURLE_OPERATION_TIMEDOUT, 0, true, NSURLErrorTimedOut},
      {CURLE_COULDNT_RESOLVE_HOST, 0, true, NSURLErrorCannotFindHost},
      {CURLE_COULDNT_RESOLVE_HOST, 0, false, NSURLErrorNotConnectedToInternet},
      {CURLE_COULDNT_RESOLVE_PROXY, 0, true, NSURLErrorCannotFindHost},
      {CURLE_COULDNT_CONNECT, ECONNREFUSED, true, NSURLErrorCannotConnectToHost},
      {CURLE_COULDNT_CONNECT, ENETUNREACH, true, NSURLErrorNotConnectedToInternet},
      {CURLE_COULDNT_CONNECT, ENETDOWN, true, NSURLErrorNotConnectedToInternet},
      {CURLE_GOT_NOTHING, 0, true, NSURLErrorNetworkConnectionLost},
      {CURLE_SEND_ERROR, 0, true, NSURLErrorNetworkConnectionLost},
      {CURLE_RECV_ERROR, 0, true, NSURLErrorNetworkConnectionLost},
      {CURLE_PARTIAL_FILE, 0, true, NSURLErrorNetworkConnectionLost},
      {CURLE_HTTP2, 0, true, NSURLErrorNetworkConnectionLost},
      {CURLE_HTTP2_STREAM, 0, true, NSURLErrorNetworkConnectionLost},
      {CURLE_WEIRD_SERVER_REPLY, 0, true, NSURLErrorCannotParseResponse},
      {CURLE_BAD_CONTENT_ENCODING, 0, true, NSURLErrorCannotDecodeRawData},
      {CURLE_OUT_OF_MEMORY, 0, true, NSURLErrorDataLengthExceedsMaximum},
      {CURLE_SSL_CONNECT_ERROR, 0, true, NSURLErrorSecureConnectionFailed},
      {CURLE_SSL_CACERT_BADFILE, 0, true, NSURLErrorSecureConnectionFailed},
      {CURLE_SSL_CLIENTCERT, 0, true, NSURLErrorClientCertificateRequired},
      {CURLE_FTP_WEIRD_PASS_REPLY, 0, true, NSURLErrorUnknown}};
  for (const auto& [curl, systemError, isUp, code] : mappings) {
    const detail::CurlFailure failure{.code = curl, .systemError = systemError, .text = ""};
    const auto error = detail::transferError(failure, tests::address("http://shop.test/"), isUp);
    EXPECT_EQ(error.code(), code) << curl;
    EXPECT_NE(error.localizedDescription().find("shop.test"), std::string::npos) << curl;
  }
}

TEST(TransferError, TellsAMissingNetworkInPlainWords) {
  const auto error = detail::transferError({.code = CURLE_COULDNT_RESOLVE_HOST, .text = ""},
                                           tests::address("http://shop.test/"), false);
  EXPECT_EQ(error.localizedDescription(),
            "shop.test cannot be reached: there is no connection to the network.");
}

}  // namespace
}  // namespace Foundation
