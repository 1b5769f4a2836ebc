#include <gtest/gtest.h>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

using tests::Endings;
using tests::load;
using tests::requestFor;

class Connections : public testing::Test {
 protected:
  tests::HttpServer server;
};

TEST_F(Connections, AreReusedInASession) {
  const auto session = tests::newSession();
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(load(*session, requestFor(server.url("/text"))).status(), 200);

  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Connections, AreReusedForRedirects) {
  (void)load(server.url("/redirects/5"));

  EXPECT_EQ(server.connections(), 1);
}

TEST_F(Connections, AreNotSharedBySessions) {
  const auto one = tests::newSession();
  const auto other = tests::newSession();
  (void)load(*one, requestFor(server.url("/text")));
  (void)load(*other, requestFor(server.url("/text")));

  EXPECT_EQ(server.connections(), 2);
}

TEST_F(Connections, AreAtMostSixToAHostAndTheRestWaits) {
  const auto session = tests::newSession();
  Endings endings;
  for (int i = 0; i < 20; ++i) {
    session->dataTask(requestFor(server.url("/wait")), endings.forData())->resume();
  }
  ASSERT_TRUE(server.waitForRequests(6));
  EXPECT_EQ(server.connections(), 6);
  server.openGate("answer");

  ASSERT_TRUE(endings.waitFor(20));
  for (const auto& loaded : endings.all()) EXPECT_EQ(loaded.text(), "answered");
  EXPECT_EQ(server.connections(), 6);
}

TEST_F(Connections, OfOneSessionDoNotKeepAnotherWaiting) {
  const auto busy = tests::newSession();
  Endings waiting;
  for (int i = 0; i < 6; ++i) {
    busy->dataTask(requestFor(server.url("/wait")), waiting.forData())->resume();
  }
  ASSERT_TRUE(server.waitForRequests(6));

  EXPECT_EQ(load(server.url("/text")).status(), 200);
  server.openGate("answer");
  EXPECT_TRUE(waiting.waitFor(6));
}

TEST_F(Connections, CloseWithTheirSession) {
  auto session = tests::newSession();
  (void)load(*session, requestFor(server.url("/text")));
  EXPECT_EQ(server.openConnections(), 1);
  session.reset();

  EXPECT_TRUE(server.waitForOpenConnections(0));
}

TEST_F(Connections, ThatTheServerClosedMeanwhileAreReplaced) {
  server.answer("/last", [](auto& exchange) {
    exchange.respond(200, "bye");
    exchange.close();
  });
  const auto session = tests::newSession();
  EXPECT_EQ(load(*session, requestFor(server.url("/last"))).text(), "bye");
  EXPECT_EQ(load(*session, requestFor(server.url("/last"))).text(), "bye");
}

TEST_F(Connections, GoThroughTheProxyThatTheEnvironmentNames) {
  ::setenv("http_proxy", server.url("").c_str(), 1);
  server.answer("http://shop.invalid/goods", [](auto& exchange) { exchange.respond(200, "via"); });

  EXPECT_EQ(load("http://shop.invalid/goods").text(), "via");
  EXPECT_EQ(server.requests().at(0).target, "http://shop.invalid/goods");
}

TEST_F(Connections, GoRoundTheProxyForHostsThatWantNone) {
  ::setenv("http_proxy", "http://127.0.0.1:1", 1);

  EXPECT_EQ(load(server.url("/text")).status(), 200);
}

class Cookies : public Connections {};

TEST_F(Cookies, AreKeptInASession) {
  const auto session = tests::newSession();
  (void)load(*session, requestFor(server.url("/set-cookie?flavour=vanilla")));
  const auto seen = load(*session, requestFor(server.url("/echo"))).json();

  EXPECT_EQ(seen["headers"]["cookie"], "flavour=vanilla");
}

TEST_F(Cookies, AreTakenByRequestsThatWereUnderWayAtTheSameTime) {
  const auto session = tests::newSession();
  Endings waiting;
  session->dataTask(requestFor(server.url("/wait")), waiting.forData())->resume();
  ASSERT_TRUE(server.waitForRequests(1));
  (void)load(*session, requestFor(server.url("/set-cookie?flavour=vanilla")));
  server.openGate("answer");
  ASSERT_TRUE(waiting.waitFor(1));
  const auto seen = load(*session, requestFor(server.url("/echo"))).json();

  EXPECT_EQ(seen["headers"]["cookie"], "flavour=vanilla");
}

TEST_F(Cookies, AreNotToldToOtherSessions) {
  const auto session = tests::newSession();
  (void)load(*session, requestFor(server.url("/set-cookie?flavour=vanilla")));

  EXPECT_FALSE(load(server.url("/echo")).json()["headers"].contains("cookie"));
}

TEST_F(Cookies, AreTakenFromRedirects) {
  server.answer("/login", [](auto& exchange) {
    exchange.respond(302, "", {{"Location", "/echo"}, {"Set-Cookie", "id=7"}});
  });
  EXPECT_EQ(load(server.url("/login")).json()["headers"]["cookie"], "id=7");
}

TEST_F(Cookies, OfASessionStandBesideTheRequestsOwn) {
  const auto session = tests::newSession();
  (void)load(*session, requestFor(server.url("/set-cookie?flavour=vanilla")));
  auto request = requestFor(server.url("/echo"));
  request.setValue("own=1", "Cookie");

  EXPECT_EQ(load(*session, request).json()["headers"]["cookie"], "flavour=vanilla; own=1");
}

}  // namespace
}  // namespace Foundation
