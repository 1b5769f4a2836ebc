#include "platform/embedded/store/WakeUp.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <future>
#include <thread>
#include <vector>

namespace StoreKit {
namespace {

using namespace std::chrono_literals;

// Counts its calls.
class Alarm {
 public:
  // False when it does not come to so many calls in ten seconds.
  bool rang(int times) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, 10s, [&] { return calls_ >= times; });
  }
  int calls() {
    const std::lock_guard lock(mutex_);
    return calls_;
  }
  std::function<void()> whenItRings() {
    return [this] {
      const std::lock_guard lock(mutex_);
      ++calls_;
      caller_ = std::this_thread::get_id();
      changed_.notify_all();
    };
  }
  std::thread::id caller() {
    const std::lock_guard lock(mutex_);
    return caller_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int calls_ = 0;
  std::thread::id caller_;
};

TEST(WakeUp, CallsOnAThreadOfItsOwn) {
  Alarm alarm;
  WakeUp wakeUp(alarm.whenItRings());
  wakeUp.setIn(0.001);
  EXPECT_TRUE(alarm.rang(1));
  EXPECT_NE(alarm.caller(), std::this_thread::get_id());
}

TEST(WakeUp, CallsAtOnceForAMomentThatHasGoneBy) {
  Alarm alarm;
  WakeUp wakeUp(alarm.whenItRings());
  for (const double seconds : {-1.0, -1e300, -HUGE_VAL}) {
    const int before = alarm.calls();
    wakeUp.setIn(seconds);
    EXPECT_TRUE(alarm.rang(before + 1)) << seconds;
  }
}

TEST(WakeUp, CallsOncePerAlarm) {
  Alarm alarm;
  {
    WakeUp wakeUp(alarm.whenItRings());
    wakeUp.setIn(0);
    EXPECT_TRUE(alarm.rang(1));
    wakeUp.setIn(0);
    EXPECT_TRUE(alarm.rang(2));
  }
  EXPECT_EQ(alarm.calls(), 2);
}

TEST(WakeUp, AnEarlierAlarmTakesThePlaceOfALaterOne) {
  Alarm alarm;
  WakeUp wakeUp(alarm.whenItRings());
  wakeUp.setIn(3600);
  wakeUp.setIn(0.001);
  EXPECT_TRUE(alarm.rang(1));
}

TEST(WakeUp, ALaterAlarmTakesThePlaceOfAnEarlierOne) {
  Alarm alarm;
  WakeUp wakeUp(alarm.whenItRings());
  const auto before = std::chrono::steady_clock::now();
  wakeUp.setIn(0.01);
  wakeUp.setIn(0.05);
  EXPECT_TRUE(alarm.rang(1));
  EXPECT_GE(std::chrono::steady_clock::now() - before, 50ms);
}

TEST(WakeUp, ACancelledAlarmDoesNotRing) {
  Alarm alarm;
  {
    WakeUp wakeUp(alarm.whenItRings());
    const auto before = std::chrono::steady_clock::now();
    wakeUp.setIn(0.01);
    wakeUp.cancel();
    wakeUp.setIn(0.05);
    EXPECT_TRUE(alarm.rang(1));
    EXPECT_GE(std::chrono::steady_clock::now() - before, 50ms);
  }
  EXPECT_EQ(alarm.calls(), 1);
}

TEST(WakeUp, CanBeSetAgainAfterItWasCancelled) {
  Alarm alarm;
  WakeUp wakeUp(alarm.whenItRings());
  wakeUp.setIn(3600);
  wakeUp.cancel();
  wakeUp.setIn(0);
  EXPECT_TRUE(alarm.rang(1));
}

TEST(WakeUp, CanBeSetByItsOwnCall) {
  Alarm alarm;
  WakeUp* self = nullptr;
  WakeUp wakeUp([&, ring = alarm.whenItRings()] {
    ring();
    if (alarm.calls() < 3) self->setIn(0);
  });
  self = &wakeUp;
  wakeUp.setIn(0.001);
  EXPECT_TRUE(alarm.rang(3));
}

TEST(WakeUp, EndsAtOnceWhileAnAlarmIsSet) {
  Alarm alarm;
  const auto before = std::chrono::steady_clock::now();
  {
    WakeUp wakeUp(alarm.whenItRings());
    wakeUp.setIn(1e9);  // longer than it sleeps
  }
  EXPECT_LT(std::chrono::steady_clock::now() - before, 10s);
  EXPECT_EQ(alarm.calls(), 0);
}

TEST(WakeUp, WithoutAnAlarmHasNothingToEnd) {
  Alarm alarm;
  {
    const WakeUp wakeUp(alarm.whenItRings());
  }
  EXPECT_EQ(alarm.calls(), 0);
}

TEST(WakeUp, WaitsForTheCallThatIsUnderWay) {
  std::promise<void> begun;
  std::atomic<bool> ended = false;
  {
    WakeUp wakeUp([&] {
      begun.set_value();
      std::this_thread::yield();
      ended = true;
    });
    wakeUp.setIn(0);
    begun.get_future().wait();
  }
  EXPECT_TRUE(ended);
}

TEST(WakeUp, MayBeSetAndCancelledByManyThreads) {
  Alarm alarm;
  WakeUp wakeUp(alarm.whenItRings());
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int round = 0; round < 200; ++round) {
        wakeUp.setIn(round % 3 == 0 ? 0 : 0.0001);
        if (round % 5 == 0) wakeUp.cancel();
      }
    });
  }
  for (auto& thread : threads) thread.join();
  const int before = alarm.calls();
  wakeUp.setIn(0);
  EXPECT_TRUE(alarm.rang(before + 1));
}

}  // namespace
}  // namespace StoreKit
