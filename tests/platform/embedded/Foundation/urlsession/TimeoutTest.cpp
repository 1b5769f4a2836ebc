#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

using namespace std::chrono_literals;
using tests::load;
using tests::requestFor;

class Timeout : public testing::Test {
 protected:
  URLRequest impatient(const std::string& path, double seconds = 0.2) const {
    auto request = requestFor(server.url(path));
    request.setTimeoutInterval(URLRequest::Seconds(seconds));
    return request;
  }

  tests::HttpServer server;
  std::shared_ptr<URLSession> session = tests::newSession();
};

TEST_F(Timeout, EndsARequestThatIsNotAnswered) {
  const auto loaded = load(*session, impatient("/wait"));

  EXPECT_EQ(loaded.code(), NSURLErrorTimedOut);
  EXPECT_EQ(loaded.message(), "127.0.0.1 took too long to answer.");
  EXPECT_EQ(loaded.response, nullptr);
}

TEST_F(Timeout, EndsABodyThatStalls) {
  const auto loaded = load(*session, impatient("/stall"));

  EXPECT_EQ(loaded.code(), NSURLErrorTimedOut);
  EXPECT_EQ(loaded.status(), 200);
  EXPECT_FALSE(loaded.data);
}

TEST_F(Timeout, EndsABodyThatTheServerDoesNotTake) {
  auto request = impatient("/unread");
  request.setHTTPMethod("POST");
  request.setHTTPBody(Data(std::size_t{32} << 20U));

  EXPECT_EQ(load(*session, request).code(), NSURLErrorTimedOut);
}

TEST_F(Timeout, EndsADownloadThatStallsAndRemovesItsFile) {
  const tests::DownloadsInFolder downloads;
  server.answer("/begin", [](auto& exchange) {
    exchange.send(tests::responseHead(200, {{"Content-Length", "10"}}) + "01234");
    exchange.waitForGate("never");
    exchange.close();
  });
  tests::Endings endings;
  // Downloads have the default's sixty seconds; what has begun is cancelled instead of waited for.
  const auto task =
      session->downloadTask(tests::address(server.url("/begin")), endings.forDownload());
  task->resume();
  ASSERT_TRUE(tests::eventually([&] { return task->countOfBytesReceived() == 5; }));
  EXPECT_EQ(downloads.files(), 1U);
  task->cancel();

  EXPECT_EQ(endings.first().code(), NSURLErrorCancelled);
  EXPECT_EQ(downloads.files(), 0U);
}

TEST_F(Timeout, BeginsAnewWithEachByte) {
  tests::Endings endings;
  session->dataTask(impatient("/drip", 1.0), endings.forData())->resume();
  for (int i = 0; i < 10; ++i) {
    std::this_thread::sleep_for(200ms);  // two seconds in all, never one without a byte
    server.openGate(std::to_string(i));
  }

  EXPECT_EQ(endings.first().text(), "0123456789");
}

TEST_F(Timeout, DropsTheConnection) {
  (void)load(*session, impatient("/wait"));

  EXPECT_TRUE(server.waitForOpenConnections(0));
}

TEST_F(Timeout, LetsTheNextRequestSeeItsOwnAnswer) {
  (void)load(*session, impatient("/wait"));
  server.openGate("answer");

  EXPECT_EQ(load(*session, requestFor(server.url("/text"))).text(),
            "The quick brown fox jumps over the lazy dog.");
  EXPECT_EQ(server.connections(), 2);
}

TEST_F(Timeout, IsTheDefaultWhenItIsNoLengthOfTime) {
  server.openGate("answer");
  for (const double seconds : {0.0, -1.0, std::nan(""), 1e300}) {
    EXPECT_EQ(load(*session, impatient("/wait", seconds)).text(), "answered") << seconds;
  }
}

}  // namespace
}  // namespace Foundation
