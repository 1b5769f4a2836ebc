#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <thread>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace tests {

// Takes one connection and never says anything on it.
class SilentListener {
 public:
  SilentListener() : listener_(::socket(AF_INET, SOCK_STREAM, 0)) {
    address_.sin_family = AF_INET;
    address_.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address_;
    EXPECT_EQ(::bind(listener_, address(), size), 0);
    EXPECT_EQ(::listen(listener_, 1), 0);
    EXPECT_EQ(::getsockname(listener_, address(), &size), 0);
  }
  ~SilentListener() {
    if (peer_ >= 0) ::close(peer_);
    ::close(listener_);
  }
  SilentListener(const SilentListener&) = delete;
  SilentListener& operator=(const SilentListener&) = delete;

  [[nodiscard]] int port() const { return ntohs(address_.sin_port); }
  bool hasHeardSomething() {
    peer_ = ::accept(listener_, nullptr, nullptr);
    return read() > 0;
  }
  // Waits until the other side has closed the connection.
  bool isLeft() {
    while (read() > 0) {
    }
    return true;
  }

 private:
  sockaddr* address() { return reinterpret_cast<sockaddr*>(&address_); }
  ssize_t read() {
    std::array<char, 4096> bytes{};
    return ::recv(peer_, bytes.data(), bytes.size(), 0);
  }

  int listener_;
  int peer_ = -1;
  sockaddr_in address_{};
};

}  // namespace tests

namespace Foundation {
namespace {

using tests::Endings;
using tests::load;
using tests::requestFor;

class Cancel : public testing::Test {
 protected:
  std::shared_ptr<URLSessionDataTask> taskFor(URLRequest request) {
    return session->dataTask(std::move(request), endings.forData());
  }
  std::shared_ptr<URLSessionDataTask> taskFor(const std::string& path) {
    return taskFor(requestFor(server.url(path)));
  }

  // What comes behind on the session's queue: nothing of the cancelled task is left to come.
  void expectOneCancelledEnding() {
    EXPECT_EQ(endings.first().code(), NSURLErrorCancelled);
    EXPECT_EQ(endings.first().message(), "Loading from 127.0.0.1 was cancelled.");
    EXPECT_FALSE(endings.first().data);
    EXPECT_EQ(load(*session, requestFor(server.url("/text"))).text(),
              "The quick brown fox jumps over the lazy dog.");
    EXPECT_EQ(endings.all().size(), 1U);
  }

  tests::HttpServer server;
  std::shared_ptr<URLSession> session = tests::newSession();
  Endings endings;
};

TEST_F(Cancel, BeforeTheStartCompletesTheTaskAndSendsNothing) {
  const auto task = taskFor("/wait");
  task->cancel();
  task->resume();

  expectOneCancelledEnding();
  EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(Cancel, AtOnceAfterTheStart) {
  const auto task = taskFor("/wait");
  task->resume();
  task->cancel();

  expectOneCancelledEnding();
}

TEST_F(Cancel, WhileTheAnswerIsAwaited) {
  const auto task = taskFor("/wait");
  task->resume();
  ASSERT_TRUE(server.waitForRequests(1));
  task->cancel();

  expectOneCancelledEnding();
  EXPECT_EQ(server.connections(), 2);
}

TEST_F(Cancel, InTheBody) {
  const auto task = taskFor("/stall");
  task->resume();
  ASSERT_TRUE(tests::eventually([&] { return task->countOfBytesReceived() == 5; }));
  task->cancel();

  EXPECT_EQ(endings.first().status(), 200);
  expectOneCancelledEnding();
  EXPECT_EQ(server.connections(), 2);
}

TEST_F(Cancel, WhileItsBodyIsSent) {
  auto request = requestFor(server.url("/unread"));
  request.setHTTPMethod("POST");
  request.setHTTPBody(Data(std::size_t{32} << 20U));
  const auto task = taskFor(request);
  task->resume();
  ASSERT_TRUE(server.waitForRequests(1));
  task->cancel();

  expectOneCancelledEnding();
}

TEST_F(Cancel, WhileItWaitsForAConnection) {
  Endings others;
  for (int i = 0; i < 6; ++i) {
    session->dataTask(requestFor(server.url("/wait")), others.forData())->resume();
  }
  ASSERT_TRUE(server.waitForRequests(6));
  const auto task = taskFor("/wait");
  task->resume();
  task->cancel();
  EXPECT_EQ(endings.first().code(), NSURLErrorCancelled);
  server.openGate("answer");

  ASSERT_TRUE(others.waitFor(6));
  expectOneCancelledEnding();
}

TEST_F(Cancel, WhileTheOtherSideDoesNotShakeHands) {
  tests::SilentListener listener;
  const auto task =
      taskFor(requestFor("https://127.0.0.1:" + std::to_string(listener.port()) + "/"));
  task->resume();
  ASSERT_TRUE(listener.hasHeardSomething());
  task->cancel();

  EXPECT_EQ(endings.first().code(), NSURLErrorCancelled);
  EXPECT_TRUE(listener.isLeft());
}

TEST_F(Cancel, AfterARedirect) {
  const auto task = taskFor("/redirect?to=/wait");
  task->resume();
  ASSERT_TRUE(server.waitForRequests(2));
  task->cancel();

  expectOneCancelledEnding();
}

TEST_F(Cancel, AfterTheEndDoesNothing) {
  const auto task = taskFor("/text");
  task->resume();
  EXPECT_EQ(endings.first().status(), 200);
  task->cancel();
  (void)load(*session, requestFor(server.url("/text")));

  EXPECT_EQ(endings.all().size(), 1U);
  EXPECT_EQ(task->state(), URLSessionTask::State::completed);
}

TEST_F(Cancel, TwiceCompletesOnce) {
  const auto task = taskFor("/wait");
  task->resume();
  ASSERT_TRUE(server.waitForRequests(1));
  task->cancel();
  task->cancel();

  expectOneCancelledEnding();
}

TEST_F(Cancel, OnAnyThreadAtAnyMomentCompletesOnce) {
  constexpr std::size_t kTasks = 200;
  std::vector<std::shared_ptr<URLSessionDataTask>> tasks;
  for (std::size_t i = 0; i < kTasks; ++i) tasks.push_back(taskFor("/bytes/100000"));
  std::thread starter([&] {
    for (const auto& task : tasks) task->resume();
  });
  std::thread canceller([&] {
    for (const auto& task : tasks) task->cancel();
  });
  starter.join();
  canceller.join();

  ASSERT_TRUE(endings.waitFor(kTasks));
  (void)load(*session, requestFor(server.url("/text")));
  EXPECT_EQ(endings.all().size(), kTasks);
  for (const auto& loaded : endings.all()) {
    if (loaded.error) {
      EXPECT_EQ(loaded.code(), NSURLErrorCancelled);
    } else {
      EXPECT_EQ(loaded.data->size(), 100000U);
    }
  }
}

TEST_F(Cancel, DropsTheConnection) {
  const auto task = taskFor("/wait");
  task->resume();
  ASSERT_TRUE(server.waitForRequests(1));
  task->cancel();

  EXPECT_TRUE(server.waitForOpenConnections(0));
}

TEST_F(Cancel, ShowsInTheState) {
  const auto task = taskFor("/wait");
  EXPECT_EQ(task->state(), URLSessionTask::State::suspended);
  task->resume();
  EXPECT_EQ(task->state(), URLSessionTask::State::running);
  ASSERT_TRUE(server.waitForRequests(1));
  task->cancel();
  EXPECT_NE(task->state(), URLSessionTask::State::running);
  (void)endings.first();

  EXPECT_EQ(task->state(), URLSessionTask::State::completed);
}

TEST_F(Cancel, IsNeverCompletedInsideTheCall) {
  std::thread::id thread;
  Endings done;
  const auto task = session->dataTask(requestFor(server.url("/wait")), [&](auto, auto, auto) {
    thread = std::this_thread::get_id();
    done.add({});
  });
  task->cancel();
  (void)done.first();

  EXPECT_NE(thread, std::this_thread::get_id());
}

}  // namespace
}  // namespace Foundation
