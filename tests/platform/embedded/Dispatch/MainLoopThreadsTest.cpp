#include <gtest/gtest.h>
#include <poll.h>

#include <thread>
#include <vector>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/MainQueueTurns.hpp"

namespace Dispatch {
namespace {

using namespace std::chrono_literals;

TEST(MainLoopThreads, BlocksOfManyThreadsAllRunEachThreadsInItsOrder) {
  constexpr int kThreads = 4;
  constexpr int kBlocks = 500;
  std::vector<std::vector<int>> ran(kThreads);
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < kThreads; ++t) {
    threads.emplace_back([&ran, t] {
      for (int i = 0; i < kBlocks; ++i) {
        mainQueue().async([&ran, t, i] { ran[t].push_back(i); });
      }
    });
  }
  std::size_t count = 0;
  while (count < kThreads * kBlocks) count += MainLoop::drain();
  for (auto& thread : threads) thread.join();
  for (const auto& each : ran) {
    EXPECT_EQ(each.size(), std::size_t{kBlocks});
    EXPECT_TRUE(std::is_sorted(each.begin(), each.end()));
  }
}

TEST(MainLoopThreads, BlocksRunAndAreDestroyedOnTheMainThread) {
  std::thread::id ranOn;
  std::thread::id destroyedOn;
  struct Witness {
    explicit Witness(std::thread::id& where) : destroyedOn(where) {}
    ~Witness() { destroyedOn = std::this_thread::get_id(); }
    std::thread::id& destroyedOn;
  };
  std::thread([&] {
    auto witness = std::make_shared<Witness>(destroyedOn);
    mainQueue().async([&, owned = std::move(witness)] { ranOn = std::this_thread::get_id(); });
  }).join();
  tests::turn();
  EXPECT_EQ(ranOn, std::this_thread::get_id());
  EXPECT_EQ(destroyedOn, std::this_thread::get_id());
}

TEST(MainLoopThreads, RunWakesUpForABlockOfAnotherThread) {
  std::thread other([] { mainQueue().async(MainLoop::stop); });
  MainLoop::run();
  other.join();
}

TEST(MainLoopThreads, StopOfAnotherThreadEndsRun) {
  std::thread other([] { MainLoop::stop(); });
  MainLoop::run();
  other.join();
}

TEST(MainLoopThreads, DescriptorWakesAProgramWithALoopOfItsOwn) {
  std::thread other([] { mainQueue().async([] {}); });
  pollfd wanted{MainLoop::fileDescriptor(), POLLIN, 0};
  EXPECT_EQ(::poll(&wanted, 1, 30'000), 1);
  other.join();
  EXPECT_EQ(MainLoop::drain(), 1U);
}

TEST(MainLoopThreads, ThreadThatRunsTheLoopFirstIsTheMainOne) {
  tests::turn();
  EXPECT_TRUE(mainQueue().isCurrentThread());
  bool other = true;
  std::thread([&] { other = mainQueue().isCurrentThread(); }).join();
  EXPECT_FALSE(other);
}

// What `call` says on standard error on another thread than the main one, while a block waits.
std::string saidOnAnotherThread(void (*call)()) {
  tests::turn();
  mainQueue().async([] {});
  tests::CapturedError error;
  std::thread(call).join();
  const auto said = error.text();
  EXPECT_EQ(MainLoop::drain(), 1U);
  return said;
}

TEST(MainLoopThreads, DrainOnAnotherThreadDoesNothingAndSaysSo) {
  EXPECT_EQ(saidOnAnotherThread([] { EXPECT_EQ(MainLoop::drain(), 0U); }),
            "Dispatch::MainLoop::drain was called on a thread that is not the main one: "
            "it does nothing.\n");
}

TEST(MainLoopThreads, RunOnAnotherThreadDoesNothingAndSaysSo) {
  EXPECT_EQ(saidOnAnotherThread([] { MainLoop::run(); }),
            "Dispatch::MainLoop::run was called on a thread that is not the main one: "
            "it does nothing.\n");
}

TEST(MainLoopThreads, RunForOnAnotherThreadDoesNothingAndSaysSo) {
  EXPECT_EQ(saidOnAnotherThread([] { MainLoop::runFor(30s); }),
            "Dispatch::MainLoop::runFor was called on a thread that is not the main one: "
            "it does nothing.\n");
}

}  // namespace
}  // namespace Dispatch
