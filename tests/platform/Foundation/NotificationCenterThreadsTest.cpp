#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/Foundation/NotificationCenter.hpp"

namespace Foundation {
namespace {

NotificationCenter& center() { return NotificationCenter::defaultCenter(); }

void onThreads(int count, const std::function<void()>& work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back(work);
  for (auto& thread : threads) thread.join();
}

TEST(NotificationCenterThreads, EveryPostOfEveryThreadIsHeard) {
  std::atomic<int> heard = 0;
  const NotificationName name("posted everywhere");
  const auto observation = center().addObserver(name, [&](const Notification&) { ++heard; });
  onThreads(4, [&] {
    for (int i = 0; i < 500; ++i) center().post(name, {});
  });
  EXPECT_EQ(heard, 2000);
}

TEST(NotificationCenterThreads, ObserverRunsOnThePostingThread) {
  const NotificationName name("posted elsewhere");
  std::thread::id heardOn;
  const auto observation = center().addObserver(
      name, [&](const Notification&) { heardOn = std::this_thread::get_id(); });
  std::thread poster([&] { center().post(name, {}); });
  const auto postedOn = poster.get_id();
  poster.join();
  EXPECT_EQ(heardOn, postedOn);
}

TEST(NotificationCenterThreads, ObserversComeAndGoWhileOthersPost) {
  const NotificationName name("busy");
  std::atomic<int> own = 0;
  onThreads(4, [&] {
    for (int i = 0; i < 200; ++i) {
      auto observation = center().addObserver(name, [&](const Notification&) { ++own; });
      center().post(name, {});
      observation.cancel();
    }
  });
  EXPECT_GE(own, 800);
}

}  // namespace
}  // namespace Foundation
