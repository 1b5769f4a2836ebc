#include "platform/embedded/store/downloads/DownloadPace.hpp"

#include <algorithm>
#include <cmath>

namespace StoreKit {

namespace {

// Of a byte: what a difference between two dates is off by.
constexpr double kRounding = 1e-3;
constexpr double kMost = 1e18;

}  // namespace

double DownloadPace::secondsUntil(Foundation::Date now) const {
  return std::max(0.0, now.timeIntervalSince1970() - begin.timeIntervalSince1970());
}

std::int64_t DownloadPace::due(Foundation::Date now, int speed) const {
  const double bytes = std::min(kMost, std::floor(secondsUntil(now) * speed + kRounding));
  return atBegin + static_cast<std::int64_t>(bytes);
}

std::optional<double> DownloadPace::secondsFor(std::int64_t left, std::int64_t copied,
                                               Foundation::Date now, int speed) const {
  if (speed > 0) return static_cast<double>(left) / speed;
  const double seconds = secondsUntil(now);
  if (copied <= atBegin || seconds <= 0) return std::nullopt;
  return static_cast<double>(left) * seconds / static_cast<double>(copied - atBegin);
}

}  // namespace StoreKit
