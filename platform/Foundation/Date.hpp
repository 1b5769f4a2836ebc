#pragma once

#include <string>

namespace Foundation {

/// A point in time: seconds since 1 January 1970 00:00:00 UTC, as a double, as the platform has it.
///
/// Thread: a plain value.
class Date {
 public:
  constexpr Date() = default;

  /// `seconds` may be negative and may have a fraction.
  [[nodiscard]] static constexpr Date sinceEpoch(double seconds) {
    Date date;
    date.seconds_ = seconds;
    return date;
  }

  /// The system clock's time.
  [[nodiscard]] static Date now();

  [[nodiscard]] constexpr double timeIntervalSince1970() const { return seconds_; }

  /// "2026-11-21 07:48:10 +0000": in UTC, cut to whole seconds, as the platform prints a date.
  /// A value that no calendar holds (not a number, or beyond 30,000 years) prints as its seconds.
  [[nodiscard]] std::string description() const;

  friend constexpr bool operator==(const Date&, const Date&) = default;
  friend constexpr bool operator<(const Date& a, const Date& b) { return a.seconds_ < b.seconds_; }

 private:
  double seconds_ = 0;
};

}  // namespace Foundation
