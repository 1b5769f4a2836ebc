#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace StoreKit {

/// Calls back once, when a while has gone by: an alarm clock with one alarm.
///
/// Thread: any; the call comes on a thread of its own, which begins with the first alarm.
class WakeUp {
 public:
  explicit WakeUp(std::function<void()> call) : call_(std::move(call)) {}
  WakeUp(const WakeUp&) = delete;
  WakeUp& operator=(const WakeUp&) = delete;
  /// Waits for a call that is under way.
  ~WakeUp();

  /// Takes the place of the alarm that was set before. At most a day ahead: longer ones come then.
  void setIn(double seconds);
  void cancel();

 private:
  using Clock = std::chrono::steady_clock;

  void run();

  std::function<void()> call_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<Clock::time_point> alarm_;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace StoreKit
