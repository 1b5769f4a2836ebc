#include <dispatch/dispatch.h>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include "platform/embedded/Dispatch/MainLoop.hpp"

// The platform's main queue, and over it the loop that the embedded realisation gives to programs:
// tests that turn the queue by hand find the handle that they know.

struct dispatch_queue_s {};

namespace {

struct Work {
  void* context;
  dispatch_function_t function;
};

struct Queue {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<Work> waiting;
  bool stopped = false;
};

Queue& queue() {
  static auto& queue = *new Queue;
  return queue;
}

std::optional<Work> next() {
  const std::lock_guard lock(queue().mutex);
  if (queue().waiting.empty()) return std::nullopt;
  const Work work = queue().waiting.front();
  queue().waiting.pop_front();
  return work;
}

std::size_t waiting() {
  const std::lock_guard lock(queue().mutex);
  return queue().waiting.size();
}

using Clock = std::chrono::steady_clock;

// False when it is time to return.
bool awaitWork(Clock::time_point end) {
  std::unique_lock lock(queue().mutex);
  const auto isWanted = [] { return queue().stopped || !queue().waiting.empty(); };
  const bool inTime = queue().changed.wait_until(lock, end, isWanted);
  const bool stopped = queue().stopped;
  queue().stopped = false;
  return inTime && !stopped;
}

}  // namespace

extern "C" dispatch_queue_t dispatch_get_main_queue(void) {
  static dispatch_queue_s main;
  return &main;
}

extern "C" void dispatch_async_f(dispatch_queue_t, void* context, dispatch_function_t work) {
  const std::lock_guard lock(queue().mutex);
  queue().waiting.push_back({context, work});
  queue().changed.notify_all();
}

namespace Dispatch {

std::size_t MainLoop::drain() {
  const auto count = waiting();
  for (std::size_t i = 0; i < count; ++i) {
    if (const auto work = next()) work->function(work->context);
  }
  return count;
}

void MainLoop::runFor(std::chrono::nanoseconds duration) {
  const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(duration);
  while (awaitWork(end)) {
    if (const auto work = next()) work->function(work->context);
  }
}

void MainLoop::run() { runFor(std::chrono::hours(1)); }

void MainLoop::stop() {
  const std::lock_guard lock(queue().mutex);
  queue().stopped = true;
  queue().changed.notify_all();
}

}  // namespace Dispatch
