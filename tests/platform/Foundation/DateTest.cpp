#include "platform/Foundation/Date.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>

namespace Foundation {
namespace {

std::string description(double seconds) { return Date::sinceEpoch(seconds).description(); }

TEST(Date, EpochPrintsInUTC) {
  EXPECT_EQ(description(0), "1970-01-01 00:00:00 +0000");
  EXPECT_EQ(Date().description(), "1970-01-01 00:00:00 +0000");
}

TEST(Date, PrintsAMomentOfToday) {
  EXPECT_EQ(description(1795247290), "2026-11-21 07:48:10 +0000");
}

TEST(Date, FractionsAreCutNotRounded) {
  EXPECT_EQ(description(59.999), "1970-01-01 00:00:59 +0000");
}

TEST(Date, FractionBeforeTheEpochBelongsToTheSecondBefore) {
  EXPECT_EQ(description(-0.5), "1969-12-31 23:59:59 +0000");
}

TEST(Date, PrintsMomentsBeforeTheEpoch) {
  EXPECT_EQ(description(-86400), "1969-12-31 00:00:00 +0000");
  EXPECT_EQ(description(-2208988800.0), "1900-01-01 00:00:00 +0000");
}

TEST(Date, KnowsLeapDays) {
  EXPECT_EQ(description(951782400), "2000-02-29 00:00:00 +0000");
  EXPECT_EQ(description(4107542400.0), "2100-03-01 00:00:00 +0000");
}

TEST(Date, WhatNoCalendarHoldsPrintsAsItsSeconds) {
  EXPECT_EQ(description(std::numeric_limits<double>::infinity()), "inf");
  EXPECT_EQ(description(-std::numeric_limits<double>::infinity()), "-inf");
  EXPECT_EQ(description(std::numeric_limits<double>::quiet_NaN()), "nan");
  EXPECT_EQ(description(1e15), "1000000000000000.000000");
  EXPECT_EQ(description(-1e15), "-1000000000000000.000000");
}

TEST(Date, TheLastYearsOfTheCalendarStillPrint) {
  EXPECT_EQ(description(253402300799.0), "9999-12-31 23:59:59 +0000");
  EXPECT_EQ(description(253402300800.0), "10000-01-01 00:00:00 +0000");
}

TEST(Date, KeepsFractionsOfSeconds) {
  EXPECT_EQ(Date::sinceEpoch(1.25).timeIntervalSince1970(), 1.25);
}

TEST(Date, OrdersByTime) {
  EXPECT_LT(Date::sinceEpoch(-1), Date::sinceEpoch(0));
  EXPECT_FALSE(Date::sinceEpoch(1) < Date::sinceEpoch(1));
  EXPECT_EQ(Date::sinceEpoch(1), Date::sinceEpoch(1));
}

TEST(Date, NowIsTheSystemClocksTime) {
  using Seconds = std::chrono::duration<double>;
  const Seconds before = std::chrono::system_clock::now().time_since_epoch();
  const auto now = Date::now().timeIntervalSince1970();
  const Seconds after = std::chrono::system_clock::now().time_since_epoch();
  EXPECT_GE(now, before.count());
  EXPECT_LE(now, after.count());
}

}  // namespace
}  // namespace Foundation
