#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>

#include "platform/Dispatch/MainQueue.hpp"

namespace Dispatch {
namespace {

// In a process of its own, in which no loop has run.
TEST(MainQueueDeathTest, BeforeAnythingRanAnyThreadMayBeItsThread) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  EXPECT_EXIT(
      {
        bool other = false;
        std::thread([&] { other = mainQueue().isCurrentThread(); }).join();
        std::exit(other && mainQueue().isCurrentThread() ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace Dispatch
