#include "platform/embedded/Foundation/urlsession/Timers.hpp"

namespace Foundation::detail {

void Timer::set(Clock::time_point time) {
  clear();
  if (off_.empty()) {
    on_ = timers_.set_.emplace(time, this).first;
  } else {
    off_.value().first = time;
    on_ = timers_.set_.insert(std::move(off_)).position;
  }
}

void Timer::clear() {
  if (on_) off_ = timers_.set_.extract(*on_);
  on_.reset();
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
