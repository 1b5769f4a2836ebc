#include "platform/embedded/Dispatch/SerialQueue.hpp"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <utility>

#include "platform/embedded/Dispatch/SystemThread.hpp"

namespace Dispatch {

class SerialQueue::State {
 public:
  // True when the queue had nothing to do and now needs a thread.
  bool push(Block block) {
    const std::lock_guard lock(mutex_);
    blocks_.push_back(std::move(block));
    return !std::exchange(running_, true);
  }

  // False when there is none; the queue needs no thread then.
  bool pop(Block& block) {
    const std::lock_guard lock(mutex_);
    running_ = !blocks_.empty();
    if (!running_) return false;
    block = std::move(blocks_.front());
    blocks_.pop_front();
    return true;
  }

 private:
  std::mutex mutex_;
  std::deque<Block> blocks_;
  bool running_ = false;
};

namespace {

using namespace std::chrono_literals;

constexpr auto kIdleTimeOfAThread = 5s;

// The threads that queues borrow.
template <class Queue>
class Threads {
 public:
  static Threads& instance() {
    static auto& threads = *new Threads;
    return threads;
  }

  void lendTo(std::shared_ptr<Queue> queue) {
    bool isOneIdle = false;
    {
      const std::lock_guard lock(mutex_);
      waiting_.push_back(std::move(queue));
      isOneIdle = idle_ >= waiting_.size();
    }
    if (isOneIdle) {
      changed_.notify_one();
    } else {
      startSystemThread("TQ queue", [this] { work(); }).detach();
    }
  }

 private:
  Threads() {
    std::atexit([] { instance().stopped_ = true; });
  }

  void work() {
    while (const auto queue = next()) {
      SerialQueue::Block block;
      while (!stopped_ && queue->pop(block)) {
        block();
        block = nullptr;
      }
    }
  }

  // Null when none came for long enough. One idle thread is always kept: to wait without an end is
  // cheaper than to set a timer each time.
  std::shared_ptr<Queue> next() {
    std::unique_lock lock(mutex_);
    const auto isThere = [this] { return !waiting_.empty(); };
    if (idle_++ == 0) {
      changed_.wait(lock, isThere);
    } else {
      changed_.wait_for(lock, kIdleTimeOfAThread, isThere);
    }
    --idle_;
    if (waiting_.empty()) return nullptr;
    auto queue = std::move(waiting_.front());
    waiting_.pop_front();
    return queue;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::shared_ptr<Queue>> waiting_;
  std::size_t idle_ = 0;
  std::atomic<bool> stopped_ = false;
};

}  // namespace

SerialQueue::SerialQueue() : state_(std::make_shared<State>()) {}

void SerialQueue::async(Block block) const {
  const auto state = state_;  // the block may take the last copy of the queue with it
  if (state->push(std::move(block))) Threads<State>::instance().lendTo(state);
}

}  // namespace Dispatch
