#include "platform/embedded/store/server/TimeRate.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace StoreKit {
namespace {

using Foundation::Date;
using Unit = SKProductPeriodUnit;

constexpr double kMinute = 60;
constexpr double kHour = 60 * kMinute;
constexpr double kDay = 24 * kHour;

double length(std::uint64_t count, Unit unit, int rate) {
  return periodEnd(Date::sinceEpoch(5000), {count, unit}, rate).timeIntervalSince1970() - 5000;
}

// "2024-02-29 12:00:00 +0000", in real time.
std::string after(const char* what, double begin, std::uint64_t count, Unit unit) {
  SCOPED_TRACE(what);
  return periodEnd(Date::sinceEpoch(begin), {count, unit}, 0).description();
}

TEST(TimeRate, KnowsThePlatformsNumbersAndNoOthers) {
  for (const int rate :
       {0, 1, 2, 3, 4, 5, 6, 10, 11, 12, 13, 15, 1000, 1001, 1002, 1003, 1004, 1005}) {
    EXPECT_TRUE(isTimeRate(rate)) << rate;
  }
  for (const int rate : {-1, 7, 9, 14, 16, 999, 1006}) EXPECT_FALSE(isTimeRate(rate)) << rate;
}

TEST(TimeRate, ListsThemForAMessage) {
  EXPECT_EQ(timeRates(),
            "0, 1, 2, 3, 4, 5, 6, 10, 11, 12, 13, 15, 1000, 1001, 1002, 1003, 1004, 1005");
}

struct Row {
  int rate;
  double week, month, twoMonths, threeMonths, sixMonths, year, weeklyGrace, grace, retry;
};

void PrintTo(const Row& row, std::ostream* out) { *out << "rate " << row.rate; }

class MonthlyRates : public testing::TestWithParam<Row> {};

TEST_P(MonthlyRates, HaveTheDocumentedLengths) {
  const auto& row = GetParam();
  EXPECT_EQ(length(1, Unit::week, row.rate), row.week);
  EXPECT_EQ(length(1, Unit::month, row.rate), row.month);
  EXPECT_EQ(length(2, Unit::month, row.rate), row.twoMonths);
  EXPECT_EQ(length(3, Unit::month, row.rate), row.threeMonths);
  EXPECT_EQ(length(6, Unit::month, row.rate), row.sixMonths);
  EXPECT_EQ(length(1, Unit::year, row.rate), row.year);
  EXPECT_EQ(length(12, Unit::month, row.rate), row.year);
}

TEST_P(MonthlyRates, HaveTheDocumentedGraceAndRetry) {
  const auto& row = GetParam();
  EXPECT_EQ(graceSeconds({1, Unit::week}, row.rate), row.weeklyGrace);
  EXPECT_EQ(graceSeconds({1, Unit::month}, row.rate), row.grace);
  EXPECT_EQ(graceSeconds({1, Unit::year}, row.rate), row.grace);
  EXPECT_EQ(retrySeconds(row.rate), row.retry);
}

TEST_P(MonthlyRates, CountOtherLengthsByTheirUnit) {
  const auto& row = GetParam();
  EXPECT_NEAR(length(3, Unit::day, row.rate), 3 * row.week / 7, 1e-9);
  EXPECT_EQ(length(2, Unit::week, row.rate), 2 * row.week);
  EXPECT_EQ(length(4, Unit::month, row.rate), 4 * row.month);
  EXPECT_EQ(length(2, Unit::year, row.rate), 2 * row.year);
}

INSTANTIATE_TEST_SUITE_P(
    All, MonthlyRates,
    testing::Values(Row{10, 15 * kMinute, kHour, 2 * kHour, 3 * kHour, 6 * kHour, 12 * kHour,
                        12 * kMinute + 51, 30 * kMinute, 2 * kHour},
                    Row{11, 10 * kMinute, 30 * kMinute, kHour, 1.5 * kHour, 3 * kHour, 6 * kHour,
                        8 * kMinute + 34, 15 * kMinute, kHour},
                    Row{12, 5 * kMinute, 15 * kMinute, 30 * kMinute, 45 * kMinute, 1.5 * kHour,
                        3 * kHour, 4 * kMinute + 17, 7.5 * kMinute, 30 * kMinute},
                    Row{13, 3 * kMinute, 5 * kMinute, 10 * kMinute, 15 * kMinute, 30 * kMinute,
                        kHour, 2 * kMinute + 34, 2.5 * kMinute, 10 * kMinute},
                    Row{15, 10, 30, kMinute, 1.5 * kMinute, 3 * kMinute, 6 * kMinute, 9, 15,
                        kMinute}));

using DayRate = std::pair<int, double>;
class DayRates : public testing::TestWithParam<DayRate> {};

TEST_P(DayRates, MakeADayThatLong) {
  const auto [rate, day] = GetParam();
  EXPECT_EQ(length(1, Unit::day, rate), day);
  EXPECT_EQ(length(1, Unit::week, rate), 7 * day);
  EXPECT_EQ(length(1, Unit::month, rate), 30 * day);
  EXPECT_EQ(length(1, Unit::year, rate), 365 * day);
  EXPECT_EQ(graceSeconds({1, Unit::week}, rate), 6 * day);
  EXPECT_EQ(graceSeconds({1, Unit::month}, rate), 16 * day);
  EXPECT_EQ(retrySeconds(rate), 60 * day);
}

INSTANTIATE_TEST_SUITE_P(All, DayRates,
                         testing::Values(DayRate{1, kHour}, DayRate{2, 30 * kMinute},
                                         DayRate{3, 5 * kMinute}, DayRate{4, kMinute},
                                         DayRate{5, 30}, DayRate{6, 1}));

class PeriodRates : public testing::TestWithParam<DayRate> {};

TEST_P(PeriodRates, MakeEveryPeriodThatLong) {
  const auto [rate, period] = GetParam();
  EXPECT_EQ(length(1, Unit::week, rate), period);
  EXPECT_EQ(length(6, Unit::month, rate), period);
  EXPECT_EQ(length(1, Unit::year, rate), period);
}

INSTANTIATE_TEST_SUITE_P(All, PeriodRates,
                         testing::Values(DayRate{1000, 15 * kMinute}, DayRate{1001, 5 * kMinute},
                                         DayRate{1002, kMinute}, DayRate{1003, 30},
                                         DayRate{1004, 10}, DayRate{1005, 2}));

TEST(RealTime, CountsCalendarMonthsInUTC) {
  EXPECT_EQ(after("a month", 1'700'000'000, 1, Unit::month), "2023-12-14 22:13:20 +0000");
  EXPECT_EQ(after("two months", 1'700'000'000, 2, Unit::month), "2024-01-14 22:13:20 +0000");
  EXPECT_EQ(after("six months", 1'700'000'000, 6, Unit::month), "2024-05-14 22:13:20 +0000");
  EXPECT_EQ(after("a year", 1'700'000'000, 1, Unit::year), "2024-11-14 22:13:20 +0000");
  EXPECT_EQ(after("a week", 1'700'000'000, 1, Unit::week), "2023-11-21 22:13:20 +0000");
  EXPECT_EQ(after("three days", 1'700'000'000, 3, Unit::day), "2023-11-17 22:13:20 +0000");
}

TEST(RealTime, EndsOnTheMonthsLastDayWhereThereIsNoSuchDay) {
  constexpr double kLastOfJanuary2024 = 1'706'702'400;  // 31 January 2024, 12:00
  EXPECT_EQ(after("leap", kLastOfJanuary2024, 1, Unit::month), "2024-02-29 12:00:00 +0000");
  EXPECT_EQ(after("common", kLastOfJanuary2024, 13, Unit::month), "2025-02-28 12:00:00 +0000");
  constexpr double kLeapDay = 1'709'208'000;  // 29 February 2024, 12:00
  EXPECT_EQ(after("leap year", kLeapDay, 1, Unit::year), "2025-02-28 12:00:00 +0000");
}

TEST(RealTime, CountsBeforeTheEpochToo) {
  EXPECT_EQ(after("before", -1, 1, Unit::month), "1970-01-31 23:59:59 +0000");
}

TEST(RealTime, KeepsFractionsOfASecond) {
  const auto end = periodEnd(Date::sinceEpoch(1'700'000'000.25), {1, Unit::month}, 0);
  EXPECT_EQ(end.timeIntervalSince1970(), 1'702'592'000.25);
}

TEST(RealTime, HasDocumentedGraceAndRetry) {
  EXPECT_EQ(graceSeconds({1, Unit::week}, 0), 6 * kDay);
  EXPECT_EQ(graceSeconds({1, Unit::month}, 0), 16 * kDay);
  EXPECT_EQ(retrySeconds(0), 60 * kDay);
}

TEST(TimeRate, ANumberThatIsNoneCountsAsRealTime) {
  EXPECT_EQ(length(1, Unit::day, 77), kDay);
  EXPECT_EQ(length(1, Unit::day, -5), kDay);
}

TEST(TimeRate, ALengthOfNothingIsOneUnit) {
  for (const int rate : {0, 4, 13, 1003}) {
    EXPECT_EQ(length(0, Unit::week, rate), length(1, Unit::week, rate)) << rate;
  }
}

TEST(TimeRate, ALengthWithoutEndEndsAllTheSame) {
  const auto end = periodEnd(Date::sinceEpoch(0), {UINT64_MAX, Unit::year}, 0);
  EXPECT_LT(Date::sinceEpoch(100 * 365 * kDay), end);
}

}  // namespace
}  // namespace StoreKit
