#include <gtest/gtest.h>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"
#include "tests/server/StandardAnswers.hpp"

namespace Foundation {
namespace {

using tests::load;

class Response : public testing::Test {
 protected:
  tests::Loaded get(const std::string& path) const { return load(server.url(path)); }

  tests::HttpServer server;
};

TEST_F(Response, IsASuccessWhateverTheStatus) {
  for (const int status : {200, 201, 203, 206, 300, 304, 400, 401, 403, 404,
                           407, 410, 418, 429, 500, 501, 502, 503, 504, 599}) {
    const auto loaded = get("/status/" + std::to_string(status));
    EXPECT_EQ(loaded.status(), status);
    EXPECT_FALSE(loaded.error) << status << loaded.message();
  }
}

TEST_F(Response, HasTheBodyOfAFailureStatus) { EXPECT_EQ(get("/status/500").text(), "status 500"); }

TEST_F(Response, OfNoBytesHasBytes) {
  const auto loaded = get("/empty");

  ASSERT_TRUE(loaded.data);
  EXPECT_TRUE(loaded.data->empty());
}

TEST_F(Response, WithoutABodyHasNoBytes) {
  auto head = tests::requestFor(server.url("/text"));
  head.setHTTPMethod("HEAD");

  EXPECT_FALSE(get("/status/204").data);
  EXPECT_FALSE(get("/status/304").data);
  const auto loaded = load(head);
  EXPECT_FALSE(loaded.data);
  EXPECT_FALSE(loaded.error);
  EXPECT_EQ(loaded.field("Content-Length"), "44");
}

TEST_F(Response, TakesABodyInChunks) {
  EXPECT_EQ(get("/chunked/123456").text(), tests::patternedBytes(123456));
}

TEST_F(Response, TakesABodyThatEndsWithTheConnection) {
  EXPECT_EQ(get("/no-length/123456").text(), tests::patternedBytes(123456));
}

TEST_F(Response, Decompresses) { EXPECT_EQ(get("/gzip").text(), tests::quickBrownFox()); }

TEST_F(Response, KnowsTheLengthThatTheServerSaid) {
  EXPECT_EQ(get("/bytes/321").response->expectedContentLength(), 321);
}

TEST_F(Response, KnowsNoLengthWhenTheServerSaidNone) {
  EXPECT_EQ(get("/chunked/10").response->expectedContentLength(), kUnknownLength);
  EXPECT_EQ(get("/no-length/10").response->expectedContentLength(), kUnknownLength);
}

TEST_F(Response, KnowsNoLengthOfWhatWasCompressed) {
  EXPECT_EQ(get("/gzip").response->expectedContentLength(), kUnknownLength);
}

TEST_F(Response, EndsWhereTheLengthSays) {
  const auto session = tests::newSession();
  EXPECT_EQ(load(*session, tests::requestFor(server.url("/too-long"))).text(), "01234");
  EXPECT_EQ(load(*session, tests::requestFor(server.url("/text"))).text(), tests::quickBrownFox());
}

TEST_F(Response, HasTheAddressThatWasAsked) {
  EXPECT_EQ(get("/text?a=b").response->url()->absoluteString(), server.url("/text?a=b"));
}

TEST_F(Response, FindsFieldsInAnyCase) {
  const auto loaded = get("/text");

  EXPECT_EQ(loaded.field("content-TYPE"), "text/plain");
  EXPECT_EQ(loaded.field("X-Missing"), "(none)");
}

TEST_F(Response, JoinsFieldsThatCameTwice) {
  EXPECT_EQ(get("/duplicate-headers").field("X-Twice"), "one, two");
  EXPECT_EQ(get("/duplicate-headers").field("Set-Cookie"), "a=1, b=2");
}

TEST_F(Response, SplitsTheContentType) {
  server.answer("/typed", [](auto& exchange) {
    exchange.respond(200, "x", {{"Content-Type", "Text/HTML ;a=b; Charset=\"ISO-8859-1\""}});
  });
  const auto loaded = get("/typed");

  EXPECT_EQ(loaded.response->mimeType(), "text/html");
  EXPECT_EQ(loaded.response->textEncodingName(), "ISO-8859-1");
}

TEST_F(Response, HasNoTypeWhenTheServerSaidNone) {
  EXPECT_EQ(get("/bytes/1").response->mimeType(), std::nullopt);
  EXPECT_EQ(get("/text").response->textEncodingName(), std::nullopt);
}

TEST_F(Response, HasTheLastHeadOfSeveral) {
  server.answer("/hints", [](auto& exchange) {
    exchange.send(tests::responseHead(103, {{"X-Early", "yes"}}));
    exchange.respond(200, "late", {{"X-Late", "yes"}});
  });
  const auto loaded = get("/hints");

  EXPECT_EQ(loaded.status(), 200);
  EXPECT_EQ(loaded.field("X-Early"), "(none)");
  EXPECT_EQ(loaded.field("X-Late"), "yes");
}

TEST_F(Response, TakesFieldsThatGoOnInTheNextLine) {
  server.answer("/folded", [](auto& exchange) {
    exchange.send("HTTP/1.1 200 OK\r\nX-Long: one\r\n  two\r\nContent-Length: 0\r\n\r\n");
  });
  EXPECT_EQ(get("/folded").field("X-Long"), "one two");
}

TEST_F(Response, TakesManyFields) {
  const auto loaded = get("/headers/100000");

  EXPECT_EQ(loaded.text(), "ok");
  EXPECT_EQ(loaded.field("X-Filler-0").size(), 4000U);
}

TEST_F(Response, WithAMegabyteOfFieldsIsTooLong) {
  const auto loaded = get("/headers/1000000");

  EXPECT_EQ(loaded.code(), NSURLErrorDataLengthExceedsMaximum);
  EXPECT_FALSE(loaded.data);
}

TEST_F(Response, LongerThanTheMaximumFailsWhetherItSaidSoOrNot) {
  setMaximumDataLength(1000);

  EXPECT_EQ(get("/bytes/1000").data->size(), 1000U);
  EXPECT_EQ(get("/chunked/1000").data->size(), 1000U);
  for (const char* path : {"/bytes/1001", "/chunked/1001", "/no-length/1001"}) {
    const auto loaded = get(path);
    EXPECT_EQ(loaded.code(), NSURLErrorDataLengthExceedsMaximum) << path;
    EXPECT_FALSE(loaded.data) << path;
  }
}

TEST_F(Response, ThatIsHugeByItsOwnWordTakesNoRoomBeforeItComes) {
  server.answer("/boast", [](auto& exchange) {
    exchange.send(tests::responseHead(200, {{"Content-Length", "1000000000"}}) + "x");
    exchange.close();
  });
  EXPECT_EQ(get("/boast").code(), NSURLErrorNetworkConnectionLost);
}

TEST_F(Response, CountsAreKnownToTheTask) {
  tests::Endings endings;
  const auto session = tests::newSession();
  const auto task =
      session->dataTask(tests::requestFor(server.url("/bytes/1234")), endings.forData());
  EXPECT_EQ(task->countOfBytesExpectedToReceive(), 0);
  task->resume();
  (void)endings.first();

  EXPECT_EQ(task->countOfBytesReceived(), 1234);
  EXPECT_EQ(task->countOfBytesExpectedToReceive(), 1234);
}

}  // namespace
}  // namespace Foundation
