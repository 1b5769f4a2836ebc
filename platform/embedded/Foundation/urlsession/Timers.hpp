#pragma once

#include <chrono>
#include <optional>
#include <set>
#include <utility>

namespace Foundation::detail {

using Clock = std::chrono::steady_clock;

class Timers;

/// Tells, once, that the time it was set to has come. Off at the start.
class Timer {
 public:
  explicit Timer(Timers& timers) : timers_(timers) {}
  virtual ~Timer() { clear(); }
  Timer(const Timer&) = delete;
  Timer& operator=(const Timer&) = delete;

  /// Sets it, instead of what it was set to.
  void set(Clock::time_point time);
  void clear();

  /// The timer is off by then and may be set again.
  virtual void timeHasCome() = 0;

 private:
  using Set = std::set<std::pair<Clock::time_point, Timer*>>;
  friend class Timers;

  Timers& timers_;
  Set::node_type off_;  // kept for the next time
  std::optional<Set::iterator> on_;
};

/// All timers of one thread.
class Timers {
 public:
  /// Tells those whose time has come by `now`.
  void run(Clock::time_point now);
  [[nodiscard]] std::optional<Clock::time_point> earliest() const;

 private:
  friend class Timer;
  Timer::Set set_;
};

}  // namespace Foundation::detail
