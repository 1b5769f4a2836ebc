#include "platform/Foundation/Date.hpp"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace Foundation {

namespace {

constexpr double kFurthestSeconds = 30000.0 * 366 * 86400;

std::string calendarText(std::chrono::sys_seconds time) {
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss clock{time - day};
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d +0000", int(date.year()),
                unsigned(date.month()), unsigned(date.day()), int(clock.hours().count()),
                int(clock.minutes().count()), int(clock.seconds().count()));
  return text.data();
}

}  // namespace

Date Date::now() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Date::sinceEpoch(std::chrono::duration<double>(sinceEpoch).count());
}

std::string Date::description() const {
  if (!(std::fabs(seconds_) < kFurthestSeconds)) return std::to_string(seconds_);
  const auto whole = static_cast<std::int64_t>(std::floor(seconds_));
  return calendarText(std::chrono::sys_seconds{std::chrono::seconds{whole}});
}

}  // namespace Foundation
