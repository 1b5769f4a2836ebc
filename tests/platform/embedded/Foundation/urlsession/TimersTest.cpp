#include "platform/embedded/Foundation/urlsession/Timers.hpp"

#include <gtest/gtest.h>

namespace Foundation::detail {
namespace {

using namespace std::chrono_literals;

class CountingTimer final : public Timer {
 public:
  using Timer::Timer;
  void timeHasCome() override {
    ++count;
    if (again) set(*again);
  }
  int count = 0;
  std::optional<Clock::time_point> again;
};

class TimersOfAThread : public testing::Test {
 protected:
  const Clock::time_point now = Clock::now();
  Timers timers;
  CountingTimer timer{timers};
};

TEST_F(TimersOfAThread, TellOnceAndNotBeforeTheirTime) {
  timer.set(now + 10ms);
  timers.run(now + 9ms);
  EXPECT_EQ(timer.count, 0);
  timers.run(now + 10ms);
  timers.run(now + 20ms);

  EXPECT_EQ(timer.count, 1);
}

TEST_F(TimersOfAThread, TellOfTheTimeThatWasSetLast) {
  timer.set(now + 10ms);
  timer.set(now + 30ms);
  timers.run(now + 20ms);
  EXPECT_EQ(timer.count, 0);
  timers.run(now + 30ms);

  EXPECT_EQ(timer.count, 1);
}

TEST_F(TimersOfAThread, CanBeSetToAnyTimeAfterTheyWereCleared) {
  timer.set(now + 10ms);
  timer.clear();
  timers.run(now + 20ms);
  EXPECT_EQ(timer.count, 0);
  timer.set(now + 30ms);
  EXPECT_EQ(timers.earliest(), now + 30ms);
  timer.clear();
  timer.set(now + 25ms);

  EXPECT_EQ(timers.earliest(), now + 25ms);
}

TEST_F(TimersOfAThread, ThatAreGoneTellNothing) {
  {
    CountingTimer gone(timers);
    gone.set(now);
    gone.set(now + 1ms);
  }
  EXPECT_FALSE(timers.earliest());
  timers.run(now + 1ms);
}

TEST_F(TimersOfAThread, OfTheSameTimeAllTell) {
  CountingTimer other(timers);
  timer.set(now);
  other.set(now);
  timers.run(now);

  EXPECT_EQ(timer.count + other.count, 2);
}

TEST_F(TimersOfAThread, ThatSetThemselvesToNowWaitForTheNextRun) {
  timer.again = now;
  timer.set(now);
  timers.run(now);
  EXPECT_EQ(timer.count, 1);
  timers.run(now);

  EXPECT_EQ(timer.count, 2);
}

}  // namespace
}  // namespace Foundation::detail
