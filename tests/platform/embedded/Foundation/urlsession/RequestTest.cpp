#include <gtest/gtest.h>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

using tests::load;
using tests::requestFor;

class SentRequest : public testing::Test {
 protected:
  // What the server saw of it.
  nlohmann::json echo(URLRequest request) const { return load(std::move(request)).json(); }
  URLRequest request() const { return requestFor(server.url("/echo")); }
  URLRequest requestWith(const std::string& method, const std::string& body) const {
    auto made = request();
    made.setHTTPMethod(method);
    made.setHTTPBody(dataFromText(body));
    return made;
  }

  tests::HttpServer server;
};

TEST_F(SentRequest, IsAGetWithoutBodyAtFirst) {
  const auto seen = echo(request());

  EXPECT_EQ(seen["method"], "GET");
  EXPECT_EQ(seen["body"], "");
  EXPECT_FALSE(seen["headers"].contains("content-length"));
}

TEST_F(SentRequest, KeepsPathAndQueryAsTheyAreWritten) {
  const auto seen = echo(requestFor(server.url("/echo?a=%20b&c=../d#fragment")));

  EXPECT_EQ(seen["target"], "/echo?a=%20b&c=../d");
}

TEST_F(SentRequest, CarriesItsBodyWithEveryMethod) {
  for (const std::string method : {"GET", "POST", "PUT", "PATCH", "DELETE"}) {
    const auto seen = echo(requestWith(method, R"({"a":1})"));
    EXPECT_EQ(seen["method"], method);
    EXPECT_EQ(seen["body"], R"({"a":1})") << method;
    EXPECT_EQ(seen["headers"]["content-length"], "7") << method;
  }
}

TEST_F(SentRequest, MayHaveAMethodWithoutBody) {
  for (const std::string method : {"POST", "PUT", "DELETE", "OPTIONS"}) {
    auto made = request();
    made.setHTTPMethod(method);
    const auto seen = echo(made);
    EXPECT_EQ(seen["method"], method);
    EXPECT_EQ(seen["body"], "") << method;
  }
}

TEST_F(SentRequest, SaysThatAPostWithoutBodyHasNone) {
  auto made = request();
  made.setHTTPMethod("POST");
  EXPECT_EQ(echo(made)["headers"]["content-length"], "0");
}

TEST_F(SentRequest, HasTheFieldsThatWereSet) {
  auto made = request();
  made.setValue("one; two", "X-Custom");
  made.setValue("", "X-Empty");
  made.setValue("tests", "User-Agent");
  const auto seen = echo(made)["headers"];

  EXPECT_EQ(seen["x-custom"], "one; two");
  EXPECT_EQ(seen["x-empty"], "");
  EXPECT_EQ(seen["user-agent"], "tests");
}

TEST_F(SentRequest, HasNoContentTypeUnlessOneIsSet) {
  EXPECT_FALSE(echo(requestWith("POST", "x"))["headers"].contains("content-type"));

  auto made = requestWith("POST", "x");
  made.setValue("text/plain", "content-type");
  EXPECT_EQ(echo(made)["headers"]["content-type"], "text/plain");
}

TEST_F(SentRequest, OffersToDecompress) {
  EXPECT_NE(echo(request())["headers"]["accept-encoding"].get<std::string>().find("gzip"),
            std::string::npos);
}

TEST_F(SentRequest, KnowsItsOwnLengthBetterThanTheCaller) {
  auto made = requestWith("POST", "four");
  made.setValue("400", "Content-Length");
  made.setValue("chunked", "Transfer-Encoding");
  const auto seen = echo(made);

  EXPECT_EQ(seen["headers"]["content-length"], "4");
  EXPECT_FALSE(seen["headers"].contains("transfer-encoding"));
  EXPECT_EQ(seen["body"], "four");
}

TEST_F(SentRequest, CarriesAnyBytes) {
  const std::string bytes("\0\x01\r\n\r\n\x7f", 7);
  EXPECT_EQ(echo(requestWith("POST", bytes))["body"], bytes);
}

TEST_F(SentRequest, CarriesMegabytesAtOnceWithoutAskingFirst) {
  const std::string body(2'000'000, 'x');
  const auto loaded = load(requestWith("POST", body));

  EXPECT_EQ(loaded.json()["body"], body);
  EXPECT_FALSE(loaded.json()["headers"].contains("expect"));
}

TEST_F(SentRequest, SendsItsOwnCookieField) {
  auto made = request();
  made.setValue("a=1; b=2", "Cookie");
  EXPECT_EQ(echo(made)["headers"]["cookie"], "a=1; b=2");
}

TEST_F(SentRequest, FailsUnsentWithAMethodThatIsNone) {
  for (const std::string method : {"", "GE T", "GET\r\nX: y", "G:ET"}) {
    auto made = request();
    made.setHTTPMethod(method);
    EXPECT_EQ(load(made).code(), NSURLErrorBadURL) << method;
  }
  EXPECT_EQ(server.connections(), 0);
}

TEST_F(SentRequest, FailsUnsentWithAFieldThatWouldBreakTheHead) {
  const std::vector<std::pair<std::string, std::string>> fields = {{"X", "a\r\nInjected: yes"},
                                                                   {"X", "a\nb"},
                                                                   {"X", std::string("a\0b", 3)},
                                                                   {"X Y", "a"},
                                                                   {"X:Y", "a"},
                                                                   {"", "a"}};
  for (const auto& [name, value] : fields) {
    auto made = request();
    made.setValue(value, name);
    const auto loaded = load(made);
    EXPECT_EQ(loaded.code(), NSURLErrorBadURL) << name;
    EXPECT_NE(loaded.message().find("127.0.0.1"), std::string::npos);
  }
  EXPECT_EQ(server.connections(), 0);
}

}  // namespace
}  // namespace Foundation
