#include "platform/Dispatch/MainQueue.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"

namespace Dispatch {

namespace {

using Clock = std::chrono::steady_clock;

// A pipe that holds one byte while blocks are queued.
class Signal {
 public:
  Signal() {
    if (::pipe(ends_.data()) != 0) return;
    for (const int end : ends_) {
      ::fcntl(end, F_SETFL, O_NONBLOCK);
      ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
  }

  void raise() {
    const char byte = 0;
    if (::write(ends_[1], &byte, 1) < 0) return;  // full: it is raised already
  }
  void lower() {
    char byte = 0;
    if (::read(ends_[0], &byte, 1) < 0) return;  // it was not raised, for lack of descriptors
  }
  [[nodiscard]] int descriptor() const { return ends_[0]; }

 private:
  std::array<int, 2> ends_ = {-1, -1};
};

class Loop {
 public:
  void push(MainQueue::Block block) {
    const std::lock_guard lock(mutex_);
    if (blocks_.empty()) signal_.raise();
    blocks_.push_back(std::move(block));
    changed_.notify_one();
  }

  std::size_t drain() {
    if (!enter("drain")) return 0;
    const Running running(*this);
    std::size_t count = 0;
    for (std::size_t left = size(); left > 0; --left, ++count) {
      if (!runOne()) break;
    }
    return count;
  }

  void runUntil(std::optional<Clock::time_point> deadline, const char* name) {
    if (!enter(name)) return;
    const Running running(*this);
    while (wait(deadline)) runOne();
  }

  void stop() {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    changed_.notify_one();
  }

  [[nodiscard]] bool isCurrentThread() {
    const std::lock_guard lock(mutex_);
    return !thread_ || *thread_ == std::this_thread::get_id();
  }

  [[nodiscard]] int descriptor() const { return signal_.descriptor(); }

 private:
  // Marks the loop as running for as long as it lives, also when a block throws.
  class Running {
   public:
    explicit Running(Loop& loop) : loop_(loop) { loop_.running_ = true; }
    ~Running() { loop_.running_ = false; }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

   private:
    Loop& loop_;
  };

  bool enter(const char* name) {
    const std::lock_guard lock(mutex_);
    if (!thread_) thread_ = std::this_thread::get_id();
    const bool mine = *thread_ == std::this_thread::get_id();
    if (mine && !running_) return true;
    Foundation::warn("Dispatch::MainLoop::" + std::string(name) +
                     (mine ? " was called from inside a block of the main queue: it does nothing."
                           : " was called on a thread that is not the main one: it does nothing."));
    return false;
  }

  std::size_t size() {
    const std::lock_guard lock(mutex_);
    return blocks_.size();
  }

  // Waits for a block; false when the loop was stopped or its time is over.
  bool wait(std::optional<Clock::time_point> deadline) {
    std::unique_lock lock(mutex_);
    const auto ready = [this] { return stopped_ || !blocks_.empty(); };
    if (deadline) {
      changed_.wait_until(lock, *deadline, ready);
    } else {
      changed_.wait(lock, ready);
    }
    if (std::exchange(stopped_, false)) return false;
    return !deadline || Clock::now() < *deadline;
  }

  bool runOne() {
    MainQueue::Block block;
    {
      const std::lock_guard lock(mutex_);
      if (blocks_.empty()) return false;
      block = std::move(blocks_.front());
      blocks_.pop_front();
      if (blocks_.empty()) signal_.lower();
    }
    if (block) block();
    return true;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<MainQueue::Block> blocks_;
  Signal signal_;
  std::optional<std::thread::id> thread_;
  bool stopped_ = false;
  std::atomic<bool> running_ = false;
};

// Absent for a time that no clock reaches.
std::optional<Clock::time_point> after(std::chrono::nanoseconds duration) {
  const auto now = Clock::now();
  if (duration > Clock::time_point::max() - now) return std::nullopt;
  return now + duration;
}

Loop& loop() {
  static auto& instance = *new Loop;
  return instance;
}

}  // namespace

MainQueue& mainQueue() {
  static auto& queue = *new MainQueue;
  return queue;
}

void MainQueue::async(Block block) { loop().push(std::move(block)); }
bool MainQueue::isCurrentThread() const { return loop().isCurrentThread(); }

std::size_t MainLoop::drain() { return loop().drain(); }
void MainLoop::run() { loop().runUntil(std::nullopt, "run"); }
void MainLoop::runFor(std::chrono::nanoseconds duration) {
  loop().runUntil(after(duration), "runFor");
}
void MainLoop::stop() { loop().stop(); }
int MainLoop::fileDescriptor() { return loop().descriptor(); }

}  // namespace Dispatch
