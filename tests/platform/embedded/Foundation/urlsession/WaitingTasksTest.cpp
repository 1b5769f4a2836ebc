#include <gtest/gtest.h>

#include <string>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

using tests::Endings;
using tests::load;
using tests::requestFor;

// Six tasks are answered when the gates "0" to "5" open; what comes behind them has to wait for its
// turn.
class WaitingTasks : public testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 6; ++i) {
      const auto url = server.url("/wait?gate=" + std::to_string(i));
      speakers.push_back(session->dataTask(requestFor(url), speaking.forData()));
      speakers.back()->resume();
    }
    ASSERT_TRUE(server.waitForRequests(6));
  }

  // What is under way ends before the test does.
  void TearDown() override {
    for (int i = 0; i < 6; ++i) server.openGate(std::to_string(i));
    EXPECT_TRUE(speaking.waitFor(6));
    EXPECT_TRUE(waiting.waitFor(started));
  }

  std::shared_ptr<URLSessionDataTask> startWaiting(URLRequest request) {
    ++started;
    auto task = session->dataTask(std::move(request), waiting.forData());
    task->resume();
    return task;
  }
  std::shared_ptr<URLSessionDataTask> startWaiting(const std::string& path) {
    return startWaiting(requestFor(server.url(path)));
  }

  tests::HttpServer server;
  std::shared_ptr<URLSession> session = tests::newSession();
  Endings speaking;
  Endings waiting;
  std::size_t started = 0;  // of those that may have to wait
  std::vector<std::shared_ptr<URLSessionDataTask>> speakers;
};

TEST_F(WaitingTasks, GoInTheirOrderAsSoonAsOneHasEnded) {
  for (const char* path : {"/text?a", "/text?b", "/text?c"}) startWaiting(path);
  server.openGate("3");

  ASSERT_TRUE(waiting.waitFor(3));
  const auto requests = server.requests();
  ASSERT_EQ(requests.size(), 9U);
  EXPECT_EQ(requests[6].target, "/text?a");
  EXPECT_EQ(requests[7].target, "/text?b");
  EXPECT_EQ(requests[8].target, "/text?c");
  EXPECT_EQ(server.connections(), 6);
}

TEST_F(WaitingTasks, AreSentNoSooner) {
  startWaiting("/text");
  EXPECT_EQ(load(server.url("/text?other")).status(), 200);

  EXPECT_EQ(server.requests().back().target, "/text?other");
  EXPECT_EQ(server.requests().size(), 7U);
}

TEST_F(WaitingTasks, CanBeCancelled) {
  startWaiting("/text?cancelled")->cancel();
  EXPECT_EQ(waiting.first().code(), NSURLErrorCancelled);
  startWaiting("/text?next");
  server.openGate("0");

  ASSERT_TRUE(waiting.waitFor(2));
  EXPECT_EQ(waiting.last().status(), 200);
  EXPECT_EQ(server.requests().back().target, "/text?next");
  EXPECT_EQ(server.requests().size(), 7U);
}

TEST_F(WaitingTasks, HaveTheirTimeOut) {
  auto request = requestFor(server.url("/text"));
  request.setTimeoutInterval(URLRequest::Seconds(0.1));
  startWaiting(request);

  EXPECT_EQ(waiting.first().code(), NSURLErrorTimedOut);
  EXPECT_EQ(server.requests().size(), 6U);
}

TEST_F(WaitingTasks, GoWhenOneIsCancelledThatDidNotWait) {
  startWaiting("/text");
  speakers[2]->cancel();

  EXPECT_EQ(waiting.first().status(), 200);
  EXPECT_EQ(speaking.first().code(), NSURLErrorCancelled);
}

TEST_F(WaitingTasks, GoWhenOneIsRedirectedToAnotherSite) {
  const tests::HttpServer other;
  server.answer("/away", [&](auto& exchange) {
    exchange.respond(302, "", {{"Location", other.url("/wait")}});
  });
  startWaiting("/away");
  startWaiting("/text");
  server.openGate("0");

  EXPECT_EQ(waiting.first().text(), "The quick brown fox jumps over the lazy dog.");
}

TEST_F(WaitingTasks, AreNotThoseForAnotherSite) {
  const tests::HttpServer other;

  EXPECT_EQ(load(*session, requestFor(other.url("/text"))).status(), 200);
}

TEST_F(WaitingTasks, AreNotForgottenWhenNobodySpeaksToAnotherSite) {
  tests::HttpServer other;
  for (int i = 0; i < 7; ++i) startWaiting(requestFor(other.url("/wait")));
  ASSERT_TRUE(other.waitForRequests(6));
  for (int i = 0; i < 6; ++i) server.openGate(std::to_string(i));
  ASSERT_TRUE(speaking.waitFor(6));
  other.openGate("answer");

  EXPECT_TRUE(waiting.waitFor(7));
}

TEST_F(WaitingTasks, AreNoneOnceAllHaveEnded) {
  for (int i = 0; i < 6; ++i) server.openGate(std::to_string(i));
  ASSERT_TRUE(speaking.waitFor(6));
  Endings others;
  for (int i = 0; i < 6; ++i) {
    session->dataTask(requestFor(server.url("/wait?gate=others")), others.forData())->resume();
  }

  ASSERT_TRUE(server.waitForRequests(12));
  EXPECT_EQ(server.connections(), 6) << "connections are kept that have nothing to do";
  server.openGate("others");
  EXPECT_TRUE(others.waitFor(6));
}

}  // namespace
}  // namespace Foundation
