#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <latch>
#include <thread>

#include "TQStoreKitLib/manager/TQStoreKitEvent.hpp"

namespace TQStoreKitLib::tests {
namespace {

TQStoreKitEvent anEvent() {
  return TQStoreKitEvent::restore(TQStoreKitEvent::RestoreEvent::success());
}

// Runs `work` with its number on eight threads at the same moment.
template <class Work>
void onEightThreads(Work work) {
  std::latch together(8);
  std::array<std::thread, 8> threads;
  for (std::size_t i = 0; i < threads.size(); ++i) {
    threads[i] = std::thread([&together, &work, i] {
      together.arrive_and_wait();
      work(i);
    });
  }
  for (auto& thread : threads) thread.join();
}

TEST(EventThreads, NameFirstReadBySeveralThreadsIsOneObject) {
  std::array<const Foundation::NotificationName*, 8> names{};

  onEightThreads([&](std::size_t i) { names[i] = &TQStoreKitEvent::kTQStoreKitEvent(); });

  for (const auto* name : names) {
    EXPECT_EQ(name, names[0]);
    EXPECT_EQ(name->rawValue(), "kTQStoreKitEvent");
  }
}

TEST(EventThreads, ObserverRunsOnTheThreadThatBroadcasts) {
  std::thread::id heardOn;
  std::thread::id postedOn;
  const auto listening = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(),
      [&](const auto&) { heardOn = std::this_thread::get_id(); });

  std::thread([&] {
    postedOn = std::this_thread::get_id();
    TQStoreKitEvent::broadcastEvent(anEvent(), false);
  }).join();

  EXPECT_EQ(heardOn, postedOn);
}

TEST(EventThreads, EventsOfSeveralThreadsAreAllHeard) {
  std::atomic<int> heard = 0;
  const auto listening = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const Foundation::Notification& notification) {
        if (notification.object.as<TQStoreKitEvent>()->asRestore()) ++heard;
      });

  onEightThreads([](std::size_t) {
    for (int i = 0; i < 100; ++i) TQStoreKitEvent::broadcastEvent(anEvent(), false);
  });

  EXPECT_EQ(heard, 800);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
