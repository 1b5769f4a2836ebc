#include <gtest/gtest.h>
#include <poll.h>

#include <stdexcept>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tests/fakes/MainQueueTurns.hpp"

namespace Dispatch {
namespace {

bool isReadable() {
  pollfd wanted{MainLoop::fileDescriptor(), POLLIN, 0};
  return ::poll(&wanted, 1, 0) == 1 && (wanted.revents & POLLIN) != 0;
}

void queueNothing() {
  mainQueue().async([] {});
}

TEST(MainLoopDescriptor, IsThere) {
  EXPECT_GE(MainLoop::fileDescriptor(), 0);
  EXPECT_EQ(MainLoop::fileDescriptor(), MainLoop::fileDescriptor());
}

TEST(MainLoopDescriptor, IsNotReadableWhileNothingIsQueued) {
  ASSERT_TRUE(tests::turnUntilIdle());
  EXPECT_FALSE(isReadable());
}

TEST(MainLoopDescriptor, IsReadableWhileBlocksAreQueued) {
  queueNothing();
  EXPECT_TRUE(isReadable());
  queueNothing();
  EXPECT_TRUE(isReadable());
  tests::turn();
  EXPECT_FALSE(isReadable());
}

TEST(MainLoopDescriptor, StaysReadableForWhatABlockQueued) {
  mainQueue().async(queueNothing);
  tests::turn();
  EXPECT_TRUE(isReadable());
  tests::turn();
  EXPECT_FALSE(isReadable());
}

TEST(MainLoopDescriptor, InsideABlockTellsWhetherOthersWait) {
  bool first = false;
  bool last = true;
  mainQueue().async([&] { first = isReadable(); });
  mainQueue().async([&] { last = isReadable(); });
  tests::turn();
  EXPECT_TRUE(first);
  EXPECT_FALSE(last);
}

TEST(MainLoopDescriptor, StaysReadableForTheBlocksBehindAnException) {
  mainQueue().async([] { throw std::runtime_error("broken"); });
  queueNothing();
  EXPECT_THROW(tests::turn(), std::runtime_error);
  EXPECT_TRUE(isReadable());
  tests::turn();
  EXPECT_FALSE(isReadable());
}

TEST(MainLoopDescriptor, ManyBlocksAndTurnsLeaveItTrue) {
  for (int i = 0; i < 200; ++i) {
    for (int j = 0; j < 30; ++j) queueNothing();
    ASSERT_TRUE(isReadable());
    tests::turn();
    ASSERT_FALSE(isReadable());
  }
}

}  // namespace
}  // namespace Dispatch
