#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <future>
#include <thread>

#include "tests/fakes/OnDestruction.hpp"
#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

using tests::Endings;
using tests::load;
using tests::requestFor;
using TQStoreKitLib::tests::onDestruction;

class Callbacks : public testing::Test {
 protected:
  tests::HttpServer server;
  std::shared_ptr<URLSession> session = tests::newSession();
};

TEST_F(Callbacks, RunOneAfterAnotherOnOneQueue) {
  std::atomic<int> inside = 0;
  bool overlapped = false;
  Endings endings;
  for (int i = 0; i < 50; ++i) {
    session
        ->dataTask(requestFor(server.url("/text")),
                   [&](auto, auto, auto) {
                     overlapped |= ++inside > 1;
                     std::this_thread::yield();
                     --inside;
                     endings.add({});
                   })
        ->resume();
  }
  ASSERT_TRUE(endings.waitFor(50));

  EXPECT_FALSE(overlapped);
}

TEST_F(Callbacks, OfOneSessionDoNotWaitForAnothers) {
  std::promise<void> otherHasEnded;
  Endings endings;
  session
      ->dataTask(requestFor(server.url("/text")),
                 [&](auto, auto, auto) {
                   otherHasEnded.get_future().wait();
                   endings.add({});
                 })
      ->resume();
  EXPECT_EQ(load(server.url("/text")).status(), 200);
  otherHasEnded.set_value();

  EXPECT_TRUE(endings.waitFor(1));
}

TEST_F(Callbacks, MayStartAnotherTask) {
  Endings endings;
  session
      ->dataTask(requestFor(server.url("/text")),
                 [&](auto, auto, auto) {
                   session->dataTask(requestFor(server.url("/echo")), endings.forData())->resume();
                 })
      ->resume();

  EXPECT_EQ(endings.first().json()["method"], "GET");
}

TEST_F(Callbacks, MayCancelTheirOwnAndOtherTasks) {
  Endings endings;
  Endings others;
  const auto other = session->dataTask(requestFor(server.url("/wait")), others.forData());
  other->resume();
  std::shared_ptr<URLSessionDataTask> own;
  own = session->dataTask(requestFor(server.url("/text")), [&](auto, auto, auto) {
    own->cancel();
    other->cancel();
    endings.add({});
  });
  own->resume();

  EXPECT_TRUE(endings.waitFor(1));
  EXPECT_EQ(others.first().code(), NSURLErrorCancelled);
}

TEST_F(Callbacks, MayReleaseTheirSessionAndTask) {
  Endings endings;
  auto task = std::make_shared<std::shared_ptr<URLSessionDataTask>>();
  *task = session->dataTask(requestFor(server.url("/text")), [&, task](auto, auto, auto) {
    task->reset();
    session.reset();
    endings.add({});
  });
  (*task)->resume();
  task.reset();

  EXPECT_TRUE(endings.waitFor(1));
  EXPECT_TRUE(server.waitForOpenConnections(0));
}

TEST_F(Callbacks, SeeTheirTaskCompleted) {
  Endings endings;
  std::atomic<URLSessionTask::State> state = URLSessionTask::State::running;
  std::promise<std::shared_ptr<URLSessionDataTask>> handle;
  const auto task = session->dataTask(requestFor(server.url("/text")), [&](auto, auto, auto) {
    state = handle.get_future().get()->state();
    endings.add({});
  });
  handle.set_value(task);
  task->resume();
  (void)endings.first();

  EXPECT_EQ(state, URLSessionTask::State::completed);
}

TEST_F(Callbacks, AreDestroyedOnTheQueueOnceTheyHaveRun) {
  std::promise<std::thread::id> destroyed;
  std::thread::id ran;
  auto witness = onDestruction([&] { destroyed.set_value(std::this_thread::get_id()); });
  session
      ->dataTask(requestFor(server.url("/text")),
                 [&ran, witness](auto, auto, auto) { ran = std::this_thread::get_id(); })
      ->resume();
  witness.reset();

  EXPECT_EQ(destroyed.get_future().get(), ran);
}

TEST_F(Callbacks, OfATaskThatWasNeverStartedAreDestroyedWithItsHandle) {
  bool destroyed = false;
  auto task = session->dataTask(requestFor(server.url("/text")),
                                [witness = onDestruction([&] { destroyed = true; })](
                                    auto, auto, auto) { ADD_FAILURE() << "it was not started"; });
  task.reset();

  EXPECT_TRUE(destroyed);
}

TEST_F(Callbacks, MayBeMissing) {
  session->dataTask(requestFor(server.url("/text")), nullptr)->resume();
  session->downloadTask(tests::address(server.url("/text")), nullptr)->resume();

  EXPECT_TRUE(server.waitForRequests(2));
  EXPECT_EQ(load(*session, requestFor(server.url("/text"))).status(), 200);
}

TEST_F(Callbacks, ComeAlthoughAllHandlesAreGone) {
  Endings endings;
  session->dataTask(requestFor(server.url("/wait")), endings.forData())->resume();
  session.reset();
  ASSERT_TRUE(server.waitForRequests(1));
  server.openGate("answer");

  EXPECT_EQ(endings.first().text(), "answered");
  EXPECT_TRUE(server.waitForOpenConnections(0));
}

TEST_F(Callbacks, OfTheSharedSessionComeToo) {
  EXPECT_EQ(load(URLSession::shared(), requestFor(server.url("/text"))).status(), 200);
}

TEST_F(Callbacks, ComeOnceForATaskThatIsResumedTwice) {
  Endings endings;
  const auto task = session->dataTask(requestFor(server.url("/text")), endings.forData());
  task->resume();
  task->resume();
  (void)endings.first();
  task->resume();
  (void)load(*session, requestFor(server.url("/text")));

  EXPECT_EQ(endings.all().size(), 1U);
  EXPECT_EQ(server.requests().size(), 2U);
}

// Names of this process's threads, as the system shows them.
std::size_t threadsNamed(const std::string& name) {
  std::size_t count = 0;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string found;
    std::getline(std::ifstream(thread.path() / "comm"), found);
    if (found == name) ++count;
  }
  return count;
}

TEST_F(Callbacks, OfManySessionsNeedOneNetworkThread) {
  Endings endings;
  std::vector<std::shared_ptr<URLSession>> sessions;
  for (int i = 0; i < 20; ++i) {
    sessions.push_back(tests::newSession());
    sessions.back()->dataTask(requestFor(server.url("/wait")), endings.forData())->resume();
  }
  ASSERT_TRUE(server.waitForRequests(20));
  EXPECT_EQ(threadsNamed("TQ network"), 1U);
  EXPECT_EQ(threadsNamed("TQ queue"), 0U);
  server.openGate("answer");

  EXPECT_TRUE(endings.waitFor(20));
}

TEST(ProcessExit, DoesNotWaitForWhatIsUnderWay) {
  const auto work = [] {
    auto& server = *new tests::HttpServer;
    for (const char* path : {"/wait", "/stall", "/stream/1000000000000"}) {
      URLSession::shared().dataTask(requestFor(server.url(path)), nullptr)->resume();
    }
    tests::newSession()->downloadTask(tests::address(server.url("/stall")), nullptr)->resume();
    if (!server.waitForRequests(4)) std::_Exit(9);
    std::exit(3);
  };
  EXPECT_EXIT(work(), testing::ExitedWithCode(3), "");
}

TEST(ProcessExit, MayComeFromACallback) {
  const auto work = [] {
    auto& server = *new tests::HttpServer;
    URLSession::shared()
        .dataTask(requestFor(server.url("/text")), [](auto, auto, auto) { std::exit(4); })
        ->resume();
    std::this_thread::sleep_for(std::chrono::seconds(10));
  };
  EXPECT_EXIT(work(), testing::ExitedWithCode(4), "");
}

}  // namespace
}  // namespace Foundation
