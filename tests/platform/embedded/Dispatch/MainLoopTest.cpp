#include "platform/embedded/Dispatch/MainLoop.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Dispatch/MainQueue.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/MainQueueTurns.hpp"

namespace Dispatch {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr auto kLong = 30s;

class MainLoopTest : public testing::Test {
 protected:
  // A stop that a test left behind must not reach the next one.
  ~MainLoopTest() override {
    (void)tests::turnUntilIdle();
    MainLoop::stop();
    MainLoop::run();
  }

  void note(const std::string& what) {
    mainQueue().async([this, what] { ran.push_back(what); });
  }
  static void stopLater() { mainQueue().async(MainLoop::stop); }

  std::vector<std::string> ran;
};

TEST_F(MainLoopTest, DrainSaysHowManyRan) {
  EXPECT_EQ(MainLoop::drain(), 0U);
  note("1");
  note("2");
  EXPECT_EQ(MainLoop::drain(), 2U);
  EXPECT_EQ(MainLoop::drain(), 0U);
}

TEST_F(MainLoopTest, DrainLeavesWhatTheBlocksQueue) {
  mainQueue().async([this] { note("queued meanwhile"); });
  note("queued before");
  EXPECT_EQ(MainLoop::drain(), 2U);
  EXPECT_THAT(ran, ElementsAre("queued before"));
  EXPECT_EQ(MainLoop::drain(), 1U);
}

TEST_F(MainLoopTest, RunRunsWhatTheBlocksQueueUntilStop) {
  mainQueue().async([this] {
    note("queued meanwhile");
    stopLater();
  });
  MainLoop::run();
  EXPECT_THAT(ran, ElementsAre("queued meanwhile"));
}

TEST_F(MainLoopTest, StopLeavesTheBlocksBehindQueued) {
  stopLater();
  note("behind");
  MainLoop::run();
  EXPECT_TRUE(ran.empty());
  EXPECT_EQ(MainLoop::drain(), 1U);
}

TEST_F(MainLoopTest, StopBeforeRunMakesTheNextRunReturnAtOnce) {
  note("block");
  MainLoop::stop();
  MainLoop::run();
  EXPECT_TRUE(ran.empty());
}

TEST_F(MainLoopTest, StopBeforeRunStopsOneRunOnly) {
  MainLoop::stop();
  MainLoop::stop();
  MainLoop::run();
  note("block");
  stopLater();
  MainLoop::run();
  EXPECT_THAT(ran, ElementsAre("block"));
}

TEST_F(MainLoopTest, DrainDoesNotMindAStop) {
  note("block");
  MainLoop::stop();
  EXPECT_EQ(MainLoop::drain(), 1U);
  MainLoop::run();
}

TEST_F(MainLoopTest, RunForEndsWhenItsTimeIsOver) {
  const auto begin = std::chrono::steady_clock::now();
  MainLoop::runFor(20ms);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 20ms);
}

TEST_F(MainLoopTest, RunForRunsBlocksAsTheyCome) {
  mainQueue().async([this] {
    note("queued meanwhile");
    stopLater();
  });
  MainLoop::runFor(kLong);
  EXPECT_THAT(ran, ElementsAre("queued meanwhile"));
}

TEST_F(MainLoopTest, RunForEndsAlthoughBlocksKeepComing) {
  std::function<void()> again = [&] { mainQueue().async(again); };
  again();
  MainLoop::runFor(5ms);
  again = [] {};
  (void)tests::turnUntilIdle();
}

TEST_F(MainLoopTest, RunForEndsAtStop) {
  stopLater();
  const auto begin = std::chrono::steady_clock::now();
  MainLoop::runFor(kLong);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, kLong / 2);
}

TEST_F(MainLoopTest, StopWithinTheLastBlockOfRunForDoesNotStopTheNextRun) {
  mainQueue().async([] {
    MainLoop::stop();
    const auto end = std::chrono::steady_clock::now() + 5ms;
    while (std::chrono::steady_clock::now() < end) {
    }
  });
  MainLoop::runFor(1ms);
  note("block");
  stopLater();
  MainLoop::run();
  EXPECT_THAT(ran, ElementsAre("block"));
}

TEST_F(MainLoopTest, RunForTheLongestTimeRunsUntilStop) {
  note("block");
  stopLater();
  MainLoop::runFor(std::chrono::nanoseconds::max());
  EXPECT_THAT(ran, ElementsAre("block"));
}

TEST_F(MainLoopTest, RunForNegativeTimeRunsNothing) {
  note("block");
  MainLoop::runFor(-1s);
  EXPECT_TRUE(ran.empty());
}

// What `call` says on standard error when a block makes it while others are queued.
std::string saidInsideABlock(void (*call)()) {
  tests::CapturedError error;
  mainQueue().async(call);
  mainQueue().async([] {});
  (void)tests::turnUntilIdle();
  return error.text();
}

TEST_F(MainLoopTest, RunFromInsideABlockDoesNothingAndSaysSo) {
  EXPECT_EQ(saidInsideABlock([] { MainLoop::run(); }),
            "Dispatch::MainLoop::run was called from inside a block of the main queue: "
            "it does nothing.\n");
}

TEST_F(MainLoopTest, RunForFromInsideABlockDoesNothingAndSaysSo) {
  EXPECT_EQ(saidInsideABlock([] { MainLoop::runFor(kLong); }),
            "Dispatch::MainLoop::runFor was called from inside a block of the main queue: "
            "it does nothing.\n");
}

TEST_F(MainLoopTest, DrainFromInsideABlockDoesNothingAndSaysSo) {
  EXPECT_EQ(saidInsideABlock([] { EXPECT_EQ(MainLoop::drain(), 0U); }),
            "Dispatch::MainLoop::drain was called from inside a block of the main queue: "
            "it does nothing.\n");
}

TEST_F(MainLoopTest, ExceptionLeavesTheCallAndTheBlocksBehindQueued) {
  mainQueue().async([] { throw std::runtime_error("broken"); });
  note("behind");
  EXPECT_THROW((void)MainLoop::drain(), std::runtime_error);
  EXPECT_TRUE(ran.empty());
  EXPECT_EQ(MainLoop::drain(), 1U);
  EXPECT_THAT(ran, ElementsAre("behind"));
}

TEST_F(MainLoopTest, IsUsableAfterAnExceptionLeftRun) {
  mainQueue().async([] { throw std::runtime_error("broken"); });
  EXPECT_THROW(MainLoop::run(), std::runtime_error);
  note("block");
  stopLater();
  MainLoop::run();
  EXPECT_THAT(ran, ElementsAre("block"));
}

}  // namespace
}  // namespace Dispatch
