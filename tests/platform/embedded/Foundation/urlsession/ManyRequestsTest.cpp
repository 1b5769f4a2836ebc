#include <gtest/gtest.h>

#include <thread>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"
#include "tests/server/Certificates.hpp"

namespace Foundation {
namespace {

using tests::Endings;
using tests::requestFor;

TEST(ManyRequests, AThousandAtOnceHaveEachTheirOwnAnswer) {
  const tests::HttpServer server;
  const auto session = tests::newSession();
  std::vector<Endings> endings(1000);
  for (std::size_t i = 0; i < endings.size(); ++i) {
    const auto url = server.url("/echo?number=" + std::to_string(i));
    session->dataTask(requestFor(url), endings[i].forData())->resume();
  }
  for (std::size_t i = 0; i < endings.size(); ++i) {
    EXPECT_EQ(endings[i].first().json()["target"], "/echo?number=" + std::to_string(i));
  }
  EXPECT_LE(server.connections(), 6);
}

TEST(ManyRequests, OfTwoHundredSessionsAreOpenAtOnce) {
  constexpr int kSessions = 200;  // the server has a thread for each connection
  tests::HttpServer server;
  std::vector<std::shared_ptr<URLSession>> sessions;
  Endings endings;
  for (int i = 0; i < kSessions; ++i) {
    sessions.push_back(tests::newSession());
    sessions.back()->dataTask(requestFor(server.url("/wait")), endings.forData())->resume();
  }
  ASSERT_TRUE(server.waitForRequests(kSessions));
  EXPECT_EQ(server.openConnections(), kSessions);
  server.openGate("answer");

  ASSERT_TRUE(endings.waitFor(kSessions));
  for (const auto& loaded : endings.all()) EXPECT_EQ(loaded.text(), "answered");
}

TEST(ManyRequests, MayBeMadeOnManyThreadsOfOneSession) {
  constexpr int kThreads = 4;
  constexpr int kEach = 50;
  const tests::HttpServer server;
  Endings endings;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      for (int j = 0; j < kEach; ++j) {
        URLSession::shared().dataTask(requestFor(server.url("/text")), endings.forData())->resume();
      }
    });
  }
  for (auto& thread : threads) thread.join();

  ASSERT_TRUE(endings.waitFor(kThreads * kEach));
  for (const auto& loaded : endings.all()) EXPECT_EQ(loaded.status(), 200);
}

TEST(ManyRequests, OfManyShortLivedSessionsLeaveNoConnection) {
  const tests::HttpServer server;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int j = 0; j < 20; ++j) EXPECT_EQ(tests::load(server.url("/text")).status(), 200);
    });
  }
  for (auto& thread : threads) thread.join();

  EXPECT_TRUE(server.waitForOpenConnections(0));
}

TEST(ManyRequests, OverTlsHaveEachTheirOwnAnswer) {
  const tests::TemporaryFolder folder;
  const auto root = tests::makeRoot();
  tests::write(folder.file("root.pem"), root.pem());
  ::setenv("CURL_CA_BUNDLE", folder.file("root.pem").c_str(), 1);
  const auto tls = tests::makeTls(tests::makeCertificate(root));
  const tests::HttpServer server(tls.get());
  const auto session = tests::newSession();
  std::vector<Endings> endings(100);
  for (std::size_t i = 0; i < endings.size(); ++i) {
    const auto url = server.url("/echo?number=" + std::to_string(i));
    session->dataTask(requestFor(url), endings[i].forData())->resume();
  }
  for (std::size_t i = 0; i < endings.size(); ++i) {
    EXPECT_EQ(endings[i].first().json()["target"], "/echo?number=" + std::to_string(i));
  }
}

}  // namespace
}  // namespace Foundation
