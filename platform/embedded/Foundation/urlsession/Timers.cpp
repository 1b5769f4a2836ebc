#include "platform/embedded/Foundation/urlsession/Timers.hpp"

namespace Foundation::detail {

void Timer::set(Clock::time_point time) {
  clear();
  time_ = time;
  timers_.set_.emplace(time, this);
}

void Timer::clear() {
  if (time_) timers_.set_.erase({*time_, this});
  time_.reset();
}

void Timers::run(Clock::time_point now) {
  // One that sets itself to now has to wait for the sockets.
  for (auto left = set_.size(); left > 0 && !set_.empty(); --left) {
    if (set_.begin()->first > now) return;
    auto& timer = *set_.begin()->second;
    timer.clear();
    timer.timeHasCome();
  }
}

std::optional<Clock::time_point> Timers::earliest() const {
  if (set_.empty()) return std::nullopt;
  return set_.begin()->first;
}

}  // namespace Foundation::detail
