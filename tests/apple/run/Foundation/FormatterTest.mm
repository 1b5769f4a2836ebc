#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/Foundation/DateComponentsFormatter.hpp"
#include "platform/Foundation/DateFormatter.hpp"
#include "platform/Foundation/NumberFormatter.hpp"

// The texts of this Foundation's formatters are not the platform's: it writes no cents, and a period
// without its count. So little is asked here; the texts are looked at on the platform.
#include "platform/embedded/Foundation/EmulatedSystem.hpp"

namespace Foundation {
namespace {

using testing::AllOf;
using testing::HasSubstr;

std::string priceText(const char* amount, const char* locale) {
  NumberFormatter formatter;
  formatter.setNumberStyle(NumberFormatter::Style::currency);
  formatter.setLocale(Locale(locale));
  return formatter.stringFromNumber(Decimal::fromString(amount).value()).value_or("none");
}

TEST(AppleNumberFormatter, WritesTheAmountInTheLocalesCurrency) {
  EXPECT_THAT(priceText("1234", "en_US"), AllOf(HasSubstr("$"), HasSubstr("1,234")));
}

TEST(AppleNumberFormatter, WritesTheAmountAsTheLocaleDoes) {
  EXPECT_THAT(priceText("1234", "de_DE"), AllOf(HasSubstr("€"), HasSubstr("1.234")));
}

TEST(AppleDateComponentsFormatter, WritesTheUnit) {
  DateComponentsFormatter formatter;
  formatter.setUnitsStyle(DateComponentsFormatter::UnitsStyle::full);
  EXPECT_THAT(formatter.stringFromDateComponents({.month = 3}).value_or("none"),
              HasSubstr("month"));
}

TEST(AppleDateComponentsFormatter, HasNothingToSayOfNothing) {
  EXPECT_EQ(DateComponentsFormatter().stringFromDateComponents({}), std::nullopt);
}

TEST(AppleDateFormatter, ReadsThePattern) {
  DateFormatter formatter;
  formatter.setTimeZone("UTC");
  formatter.setDateFormat("yyyy-MM-dd HH:mm:ss");
  EXPECT_EQ(formatter.dateFromString("2026-11-21 07:48:10"), Date::sinceEpoch(1'795'247'290));
}

TEST(AppleDateFormatter, ReadsInTheZoneThatWasSet) {
  DateFormatter formatter;
  formatter.setTimeZone("America/New_York");
  formatter.setDateFormat("yyyy-MM-dd HH:mm");
  EXPECT_EQ(formatter.dateFromString("2020-01-02 03:04").value().description(),
            "2020-01-02 08:04:00 +0000");
}

TEST(AppleDateFormatter, KeepsTheLocaleOfItsBeginning) {
  setCurrentLocale(Locale("de_DE"));
  DateFormatter formatter;
  setCurrentLocale(std::nullopt);
  formatter.setTimeZone("UTC");
  formatter.setDateFormat("d. MMMM yyyy");
  EXPECT_TRUE(formatter.dateFromString("2. Januar 2020"));
}

TEST(AppleDateFormatter, ReadsNothingFromAnotherText) {
  DateFormatter formatter;
  formatter.setDateFormat("yyyy-MM-dd");
  EXPECT_EQ(formatter.dateFromString("soon"), std::nullopt);
}

}  // namespace
}  // namespace Foundation
