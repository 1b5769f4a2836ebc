#include "platform/Dispatch/MainQueue.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "tests/fakes/MainQueueTurns.hpp"

namespace Dispatch {
namespace {

using testing::ElementsAre;
using tests::turn;

class MainQueueTest : public testing::Test {
 protected:
  void note(const std::string& what) {
    mainQueue().async([this, what] { ran.push_back(what); });
  }
  ~MainQueueTest() override { (void)tests::turnUntilIdle(); }

  std::vector<std::string> ran;
};

TEST_F(MainQueueTest, NeverRunsABlockInsideTheCall) {
  note("block");
  EXPECT_TRUE(ran.empty());
  turn();
  EXPECT_THAT(ran, ElementsAre("block"));
}

TEST_F(MainQueueTest, NeverRunsABlockInsideTheCallFromABlock) {
  mainQueue().async([this] {
    note("inner");
    ran.push_back("outer");
  });
  (void)tests::turnUntilIdle();
  EXPECT_THAT(ran, ElementsAre("outer", "inner"));
}

TEST_F(MainQueueTest, RunsBlocksInTheOrderInWhichTheyCame) {
  for (const auto* name : {"1", "2", "3", "4"}) note(name);
  turn();
  EXPECT_THAT(ran, ElementsAre("1", "2", "3", "4"));
}

TEST_F(MainQueueTest, RunsABlockOnce) {
  note("block");
  turn();
  turn();
  EXPECT_THAT(ran, ElementsAre("block"));
}

TEST_F(MainQueueTest, EmptyBlockDoesNothing) {
  mainQueue().async(nullptr);
  note("next");
  turn();
  EXPECT_THAT(ran, ElementsAre("next"));
}

TEST_F(MainQueueTest, BlockIsDestroyedWhenItHasRun) {
  const auto capture = std::make_shared<int>(1);
  mainQueue().async([capture] {});
  note("next");
  mainQueue().async([&] { EXPECT_EQ(capture.use_count(), 1); });
  EXPECT_EQ(capture.use_count(), 2);
  turn();
  EXPECT_EQ(capture.use_count(), 1);
}

TEST_F(MainQueueTest, DestroyingABlockMayQueueAnother) {
  struct QueuesAtTheEnd {
    explicit QueuesAtTheEnd(std::function<void()> what) : queue(std::move(what)) {}
    ~QueuesAtTheEnd() { queue(); }
    std::function<void()> queue;
  };
  mainQueue().async(
      [owned = std::make_shared<QueuesAtTheEnd>([this] { note("from the destructor"); })] {});
  turn();
  EXPECT_TRUE(ran.empty());
  turn();
  EXPECT_THAT(ran, ElementsAre("from the destructor"));
}

TEST_F(MainQueueTest, IsOne) { EXPECT_EQ(&mainQueue(), &mainQueue()); }

TEST_F(MainQueueTest, RunsBlocksOnItsThread) {
  bool itsThread = false;
  mainQueue().async([&] { itsThread = mainQueue().isCurrentThread(); });
  turn();
  EXPECT_TRUE(itsThread);
}

}  // namespace
}  // namespace Dispatch
