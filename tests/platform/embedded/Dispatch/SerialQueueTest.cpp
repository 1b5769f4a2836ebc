#include "platform/embedded/Dispatch/SerialQueue.hpp"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

#include "tests/fakes/OnDestruction.hpp"

namespace Dispatch {
namespace {

using TQStoreKitLib::tests::onDestruction;

// Everything that was handed to the queue so far has run when this returns.
void finish(const SerialQueue& queue) {
  std::promise<void> done;
  queue.async([&] { done.set_value(); });
  done.get_future().wait();
}

TEST(SerialQueue, RunsBlocksInTheOrderInWhichTheyCame) {
  const SerialQueue queue;
  std::vector<int> order;
  for (int i = 0; i < 1000; ++i) queue.async([&order, i] { order.push_back(i); });
  finish(queue);

  ASSERT_EQ(order.size(), 1000U);
  for (int i = 0; i < 1000; ++i) EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
}

TEST(SerialQueue, RunsNothingInsideTheCall) {
  const SerialQueue queue;
  std::thread::id thread;
  queue.async([&] { thread = std::this_thread::get_id(); });
  finish(queue);

  EXPECT_NE(thread, std::this_thread::get_id());
}

TEST(SerialQueue, RunsABlockThatABlockHandsOverAfterIt) {
  const SerialQueue queue;
  std::vector<int> order;
  std::promise<void> done;
  queue.async([&] {
    queue.async([&] {
      order.push_back(2);
      done.set_value();
    });
    order.push_back(1);
  });
  done.get_future().wait();

  EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST(SerialQueue, DestroysABlockOnTheQueueBeforeTheNextRuns) {
  const SerialQueue queue;
  std::vector<int> order;
  queue.async(
      [&order, witness = onDestruction([&] { order.push_back(2); })] { order.push_back(1); });
  queue.async([&] { order.push_back(3); });
  finish(queue);

  EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));
}

TEST(SerialQueue, RunsWhatItWasHandedAlthoughItIsGone) {
  std::promise<void> done;
  std::make_unique<SerialQueue>()->async([&] { done.set_value(); });

  EXPECT_EQ(done.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

TEST(SerialQueue, MayBeWaitedForByManyOthers) {
  const SerialQueue awaited;
  std::vector<std::future<void>> all;
  std::promise<void> open;
  const std::shared_future<void> gate = open.get_future();
  for (int i = 0; i < 32; ++i) {
    auto done = std::make_shared<std::promise<void>>();
    all.push_back(done->get_future());
    SerialQueue().async([gate, done] {
      gate.wait();
      done->set_value();
    });
  }
  awaited.async([&] { open.set_value(); });

  for (auto& done : all) {
    EXPECT_EQ(done.wait_for(std::chrono::seconds(10)), std::future_status::ready);
  }
}

TEST(SerialQueue, TakesABlockFromOneThatIsBeingDestroyed) {
  const SerialQueue queue;
  std::promise<void> done;
  std::promise<void> isFull;
  queue.async([witness = onDestruction([&] { queue.async([&] { done.set_value(); }); }),
               full = isFull.get_future().share()] { full.wait(); });
  queue.async([] {});
  isFull.set_value();

  EXPECT_EQ(done.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
}

// Each time there is one more than there are threads left over from the time before.
TEST(SerialQueue, GetsAThreadOfItsOwnWhenTheIdleOnesAreSpokenFor) {
  for (int others = 1; others <= 20; ++others) {
    const auto open = std::make_shared<std::promise<void>>();
    const std::shared_future<void> gate = open->get_future();
    std::vector<std::future<void>> all;
    for (int i = 0; i < others; ++i) {
      auto done = std::make_shared<std::promise<void>>();
      all.push_back(done->get_future());
      SerialQueue().async([gate, done] {
        gate.wait();
        done->set_value();
      });
    }
    SerialQueue().async([open] { open->set_value(); });

    for (auto& done : all) {
      ASSERT_EQ(done.wait_for(std::chrono::seconds(10)), std::future_status::ready);
    }
  }
}

TEST(SerialQueue, TakesBlocksFromManyThreadsAndRunsOneAtATime) {
  const SerialQueue queue;
  int count = 0;  // no lock: the queue is one
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int j = 0; j < 1000; ++j) queue.async([&] { ++count; });
    });
  }
  for (auto& thread : threads) thread.join();
  finish(queue);

  EXPECT_EQ(count, 4000);
}

}  // namespace
}  // namespace Dispatch
