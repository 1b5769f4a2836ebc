#include "platform/embedded/store/WakeUp.hpp"

#include <algorithm>

namespace StoreKit {

namespace {

constexpr double kLongest = 24 * 60 * 60;

}  // namespace

WakeUp::~WakeUp() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) thread_.join();
}

void WakeUp::setIn(double seconds) {
  const std::chrono::duration<double> wait(std::clamp(seconds, 0.0, kLongest));
  const std::lock_guard lock(mutex_);
  alarm_ = Clock::now() + std::chrono::duration_cast<Clock::duration>(wait);
  if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
  changed_.notify_one();
}

void WakeUp::cancel() {
  const std::lock_guard lock(mutex_);
  alarm_.reset();
}

void WakeUp::run() {
  std::unique_lock lock(mutex_);
  while (!ending_) {
    if (!alarm_) {
      changed_.wait(lock);
    } else if (const auto until = *alarm_; Clock::now() < until) {
      changed_.wait_until(lock, until);
    } else {
      alarm_.reset();
      lock.unlock();
      call_();
      lock.lock();
    }
  }
}

}  // namespace StoreKit
