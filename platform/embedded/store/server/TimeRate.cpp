#include "platform/embedded/store/server/TimeRate.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>

namespace StoreKit {

namespace {

using Foundation::Date;
using Unit = SKProductPeriodUnit;

constexpr double kMinute = 60;
constexpr double kHour = 60 * kMinute;
constexpr double kDay = 24 * kHour;

// A thousand years, which is as far as the calendar below is sure to reach.
constexpr std::int64_t kMostMonths = 12'000;

constexpr int kRates[] = {0,  1,  2,  3,    4,    5,    6,    10,   11,
                          12, 13, 15, 1000, 1001, 1002, 1003, 1004, 1005};

// Seconds. One to three, six and twelve months have lengths of their own.
struct MonthlyRate {
  int rate;
  double week, month, twoMonths, threeMonths, sixMonths, year, weeklyGrace, grace, retry;
};

constexpr MonthlyRate kMonthlyRates[] = {
    {10, 900, 3600, 7200, 10800, 21600, 43200, 771, 1800, 7200},
    {11, 600, 1800, 3600, 5400, 10800, 21600, 514, 900, 3600},
    {12, 300, 900, 1800, 2700, 5400, 10800, 257, 450, 1800},
    {13, 180, 300, 600, 900, 1800, 3600, 154, 150, 600},
    {15, 10, 30, 60, 90, 180, 360, 9, 15, 60},
};

const MonthlyRate* monthlyRate(int rate) {
  const auto* const found = std::find_if(std::begin(kMonthlyRates), std::end(kMonthlyRates),
                                         [&](const auto& each) { return each.rate == rate; });
  return found == std::end(kMonthlyRates) ? nullptr : found;
}

// How many seconds stand for a day; absent for the other kinds of rates.
std::optional<double> secondsOfDay(int rate) {
  constexpr double kSeconds[] = {kDay, kHour, 30 * kMinute, 5 * kMinute, kMinute, 30, 1};
  if (rate < 0 || rate > 6) return std::nullopt;
  return kSeconds[rate];
}

// The length of every period, whatever it is.
std::optional<double> secondsOfAnyPeriod(int rate) {
  constexpr double kSeconds[] = {15 * kMinute, 5 * kMinute, kMinute, 30, 10, 2};
  if (rate < 1000 || rate > 1005) return std::nullopt;
  return kSeconds[rate - 1000];
}

double months(const MonthlyRate& rate, double count) {
  if (count == 2) return rate.twoMonths;
  if (count == 3) return rate.threeMonths;
  if (count == 6) return rate.sixMonths;
  return count == 12 ? rate.year : count * rate.month;
}

double scaled(const MonthlyRate& rate, const SKProductSubscriptionPeriod& period) {
  const auto count = static_cast<double>(period.numberOfUnits);
  switch (period.unit) {
    case Unit::day:
      return count * rate.week / 7;
    case Unit::week:
      return count * rate.week;
    case Unit::month:
      return months(rate, count);
    case Unit::year:
      return count * rate.year;
  }
  return rate.month;
}

double days(const SKProductSubscriptionPeriod& period) {
  const auto count = static_cast<double>(period.numberOfUnits);
  switch (period.unit) {
    case Unit::day:
      return count;
    case Unit::week:
      return count * 7;
    case Unit::month:
      return count * 30;
    case Unit::year:
      return count * 365;
  }
  return 30;
}

// The same day and time so many months later, or the month's last day when there is no such day.
Date addMonths(Date begin, std::int64_t count) {
  using namespace std::chrono;
  const double seconds = begin.timeIntervalSince1970();
  const double day = std::floor(seconds / kDay);
  const year_month_day date{sys_days{std::chrono::days(static_cast<int>(day))}};
  auto later = date + std::chrono::months(static_cast<int>(std::min(count, kMostMonths)));
  if (!later.ok()) later = later.year() / later.month() / last;
  const auto laterDay = static_cast<double>(sys_days(later).time_since_epoch().count());
  return Date::sinceEpoch(laterDay * kDay + (seconds - day * kDay));
}

Date realEnd(Date begin, const SKProductSubscriptionPeriod& period) {
  const auto count =
      static_cast<std::int64_t>(std::min<std::uint64_t>(period.numberOfUnits, kMostMonths));
  if (period.unit == Unit::month) return addMonths(begin, count);
  if (period.unit == Unit::year) return addMonths(begin, 12 * count);
  return Date::sinceEpoch(begin.timeIntervalSince1970() + days(period) * kDay);
}

bool isWeekly(const SKProductSubscriptionPeriod& period) {
  return period.unit == Unit::day || (period.unit == Unit::week && period.numberOfUnits <= 1);
}

}  // namespace

bool isTimeRate(int rate) {
  return std::find(std::begin(kRates), std::end(kRates), rate) != std::end(kRates);
}

std::string timeRates() {
  std::string text;
  for (const int rate : kRates) text += (text.empty() ? "" : ", ") + std::to_string(rate);
  return text;
}

Date periodEnd(Date begin, const SKProductSubscriptionPeriod& period, int rate) {
  if (period.numberOfUnits == 0) return periodEnd(begin, {1, period.unit}, rate);
  const auto later = [&](double seconds) {
    return Date::sinceEpoch(begin.timeIntervalSince1970() + seconds);
  };
  if (const auto seconds = secondsOfAnyPeriod(rate)) return later(*seconds);
  if (const auto* const monthly = monthlyRate(rate)) return later(scaled(*monthly, period));
  const auto day = secondsOfDay(rate);
  return rate == 0 || !day ? realEnd(begin, period) : later(days(period) * *day);
}

double graceSeconds(const SKProductSubscriptionPeriod& period, int rate) {
  const bool weekly = isWeekly(period);
  if (const auto seconds = secondsOfAnyPeriod(rate)) return *seconds / 2;
  if (const auto* const monthly = monthlyRate(rate)) {
    return weekly ? monthly->weeklyGrace : monthly->grace;
  }
  return (weekly ? 6 : 16) * secondsOfDay(rate).value_or(kDay);
}

double retrySeconds(int rate) {
  if (const auto seconds = secondsOfAnyPeriod(rate)) return 2 * *seconds;
  if (const auto* const monthly = monthlyRate(rate)) return monthly->retry;
  return 60 * secondsOfDay(rate).value_or(kDay);
}

}  // namespace StoreKit
