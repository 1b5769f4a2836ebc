#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "TQStoreKitLib/utilities/OptionalString.hpp"
#include "platform/Foundation/DateFormatter.hpp"
#include "platform/embedded/Foundation/EmulatedSystem.hpp"

namespace TQStoreKitLib {
namespace {

using namespace std::string_view_literals;

// The user's locale is en_US unless a test says otherwise.
class ToDate : public testing::Test {
 protected:
  ToDate() { useLocale("en_US"); }
  ~ToDate() override { Foundation::setCurrentLocale(std::nullopt); }

  static void useLocale(const char* identifier) {
    Foundation::setCurrentLocale(Foundation::Locale(identifier));
  }
  // The date as it prints in UTC, or "absent".
  static std::string parsed(std::optional<std::string_view> text, const char* format) {
    const auto date = toDate(text, format);
    return date ? date->description() : "absent";
  }
};

TEST_F(ToDate, ReadsADayInUTC) {
  EXPECT_EQ(parsed("2020-01-02", "yyyy-MM-dd"), "2020-01-02 00:00:00 +0000");
}

TEST_F(ToDate, DoesNotDependOnTheSystemsZone) {
  ::setenv("TZ", "America/New_York", 1);
  ::tzset();
  EXPECT_EQ(parsed("2020-01-02", "yyyy-MM-dd"), "2020-01-02 00:00:00 +0000");
}

TEST_F(ToDate, ReadsTimesAndMilliseconds) {
  EXPECT_EQ(parsed("2020-01-02 13:45:59", "yyyy-MM-dd HH:mm:ss"), "2020-01-02 13:45:59 +0000");
  const auto date = toDate("2020-01-02 00:00:00.123", "yyyy-MM-dd HH:mm:ss.SSS");
  EXPECT_EQ(date->timeIntervalSince1970(), 1577923200123.0 / 1000.0);
}

TEST_F(ToDate, IsAbsentWithoutAText) {
  EXPECT_EQ(parsed(std::nullopt, "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed(std::nullopt, ""), "absent");
}

TEST_F(ToDate, IsAbsentForAnEmptyPattern) { EXPECT_EQ(parsed("2020", ""), "absent"); }

TEST_F(ToDate, IsAbsentForAPatternThatIsNone) {
  EXPECT_EQ(parsed("2020-01-02", "nonsense"), "absent");
  EXPECT_EQ(parsed("nonsense", "nonsense"), "absent");
  EXPECT_EQ(parsed("2020-01-02", "yyyy-\xFF-dd"), "absent");
}

TEST_F(ToDate, IsAbsentForATextOfAnotherForm) {
  EXPECT_EQ(parsed("02.01.2020", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("soon", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("2020-01-\xFF", "yyyy-MM-dd"), "absent");
}

TEST_F(ToDate, IsAbsentWhenSomethingIsLeft) {
  EXPECT_EQ(parsed("2020-01-02 ", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("2020-01-02T10:00", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("2020-01-02\0"sv, "yyyy-MM-dd"), "absent");
}

TEST_F(ToDate, IsAbsentWhenThePatternGoesOn) {
  EXPECT_EQ(parsed("2020-01", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("2020-01-", "yyyy-MM-dd"), "absent");
}

TEST_F(ToDate, AQuoteThatIsNotClosedGoesToTheEnd) {
  EXPECT_EQ(parsed("2020-01-02 shut", "yyyy-MM-dd 'open"), "absent");
  EXPECT_EQ(parsed("2020-01-02 open", "yyyy-MM-dd 'open"), "2020-01-02 00:00:00 +0000");
}

TEST_F(ToDate, QuotesMarkPlainText) {
  EXPECT_EQ(parsed("2020-01-02T10:20", "yyyy-MM-dd'T'HH:mm"), "2020-01-02 10:20:00 +0000");
  EXPECT_EQ(parsed("5 o'clock", "h 'o''clock'"), "2000-01-01 05:00:00 +0000");
}

TEST_F(ToDate, WhatThePatternLeavesOpenIsThatOfTheFirstOfJanuary2000) {
  EXPECT_EQ(parsed("23:59", "HH:mm"), "2000-01-01 23:59:00 +0000");
  EXPECT_EQ(parsed("02-29", "MM-dd"), "2000-02-29 00:00:00 +0000");
  EXPECT_EQ(parsed("2021", "yyyy"), "2021-01-01 00:00:00 +0000");
}

TEST_F(ToDate, UnderstandsEras) {
  EXPECT_EQ(parsed("0044-03-15 BC", "yyyy-MM-dd G"), "-043-03-13 00:00:00 +0000");
  EXPECT_EQ(parsed("2020 AD", "yyyy G"), "2020-01-01 00:00:00 +0000");
}

TEST_F(ToDate, AZoneInTheTextWins) {
  EXPECT_EQ(parsed("2020-01-02 10:00 +0200", "yyyy-MM-dd HH:mm Z"), "2020-01-02 08:00:00 +0000");
  EXPECT_EQ(parsed("2020-01-02T10:00Z", "yyyy-MM-dd'T'HH:mmXXX"), "2020-01-02 10:00:00 +0000");
  EXPECT_EQ(parsed("2020-01-02 10:00 PST", "yyyy-MM-dd HH:mm zzz"), "2020-01-02 18:00:00 +0000");
}

TEST_F(ToDate, UnderstandsWeekYears) {
  useLocale("de_DE");
  EXPECT_EQ(parsed("2020-W01-1", "YYYY-'W'ww-e"), "2019-12-30 00:00:00 +0000");
}

TEST_F(ToDate, KnowsLeapDays) {
  EXPECT_EQ(parsed("2020-02-29", "yyyy-MM-dd"), "2020-02-29 00:00:00 +0000");
  EXPECT_EQ(parsed("2019-02-29", "yyyy-MM-dd"), "absent");
}

TEST_F(ToDate, IsAbsentForADayThatDoesNotExist) {
  EXPECT_EQ(parsed("2020-04-31", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("2020-13-01", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("2020-01-00", "yyyy-MM-dd"), "absent");
  EXPECT_EQ(parsed("25:00", "HH:mm"), "absent");
}

TEST_F(ToDate, NamesOfMonthsAreTheUsers) {
  EXPECT_EQ(parsed("2 January 2020", "d MMMM yyyy"), "2020-01-02 00:00:00 +0000");
  useLocale("de_DE");
  EXPECT_EQ(parsed("2. Januar 2020", "d. MMMM yyyy"), "2020-01-02 00:00:00 +0000");
  EXPECT_EQ(parsed("2 January 2020", "d MMMM yyyy"), "absent");
}

TEST_F(ToDate, TheCalendarIsTheUsers) {
  useLocale("th_TH@calendar=buddhist");
  EXPECT_EQ(parsed("2563-01-02", "yyyy-MM-dd"), "2020-01-02 00:00:00 +0000");
  useLocale("fa_IR@calendar=persian");
  EXPECT_EQ(parsed("1398-10-12", "yyyy-MM-dd"), "2020-01-02 00:00:00 +0000");
}

TEST_F(ToDate, TheDigitsMayBeTheUsers) {
  useLocale("fa_IR@calendar=persian");
  EXPECT_EQ(parsed("۱۳۹۸-۱۰-۱۲", "yyyy-MM-dd"), "2020-01-02 00:00:00 +0000");
  useLocale("ar_EG@calendar=gregorian");
  EXPECT_EQ(parsed("٢٠٢٠-٠١-٠٢", "yyyy-MM-dd"), "2020-01-02 00:00:00 +0000");
}

TEST_F(ToDate, EachCallMakesItsOwnFormatter) {
  EXPECT_EQ(parsed("2 January 2020", "d MMMM yyyy"), "2020-01-02 00:00:00 +0000");
  useLocale("fr_FR");
  EXPECT_EQ(parsed("2 janvier 2020", "d MMMM yyyy"), "2020-01-02 00:00:00 +0000");
}

TEST_F(ToDate, AZoneThatIsUnknownLeavesTheSystemsOwn) {
  ::setenv("TZ", "Etc/GMT+3", 1);
  ::tzset();
  Foundation::DateFormatter formatter;
  formatter.setDateFormat("yyyy-MM-dd");
  formatter.setTimeZone("Nowhere/Land");
  EXPECT_EQ(formatter.dateFromString("2020-01-02")->description(), "2020-01-02 03:00:00 +0000");
}

}  // namespace
}  // namespace TQStoreKitLib
