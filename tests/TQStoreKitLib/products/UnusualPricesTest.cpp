#include <gtest/gtest.h>

#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "platform/embedded/Foundation/EmulatedSystem.hpp"
#include "tests/TQStoreKitLib/products/pricing/TextTable.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Foundation::Decimal;
using Foundation::Locale;

// The discount's price as a failure can show it.
std::string priceText(const std::string& price, const std::string& locale) {
  const StoreKit::SKProductDiscount discount{.price = *Decimal::fromString(price),
                                             .priceLocale = Locale(locale),
                                             .subscriptionPeriod = {}};
  return visible(localizedPrice(discount).value_or("(absent)"));
}

std::string monthsText(const std::string& locale) {
  Foundation::setCurrentLocale(Locale(locale));
  const auto text = localizedSubscriptionPeriod(
      StoreKit::SKProductSubscriptionPeriod{5, StoreKit::SKProductPeriodUnit::month});
  Foundation::setCurrentLocale(std::nullopt);
  return text;
}

std::string veryLong() { return "en_US_" + std::string(10'000, 'A'); }

TEST(UnusualPrices, ThirtyDigitsAreAllShown) {
  EXPECT_EQ(priceText("1234567890123456789012345678.91", "en_US"),
            "$1,234,567,890,123,456,789,012,345,678.91");
}

TEST(UnusualPrices, ThirtyEightDigitsAreAllShown) {
  EXPECT_EQ(priceText("98765432109876543210987654321098765432", "en_US"),
            "$98,765,432,109,876,543,210,987,654,321,098,765,432.00");
  EXPECT_EQ(priceText("987654321098765432109876543210987654.32", "en_IN"),
            "\u20B99,87,65,43,21,09,87,65,43,21,09,87,65,43,21,09,87,654.32");
}

TEST(UnusualPrices, GreatestAndSmallestExponentAreShown) {
  const auto greatest = priceText("1e127", "en_US");
  EXPECT_EQ(greatest.size(), 1U + 128 + 42 + 3);
  EXPECT_EQ(greatest.substr(0, 7), "$10,000");
  EXPECT_EQ(priceText("1e-127", "en_US"), "$0.00");
}

TEST(UnusualPrices, ThatBinaryFloatingPointWouldChangeStayAsTheyAre) {
  EXPECT_EQ(priceText("9007199254740993.01", "en_US"), "$9,007,199,254,740,993.01");
}

TEST(UnusualPrices, HalvesAreRoundedToEven) {
  EXPECT_EQ(priceText("0.005", "en_US"), "$0.00");
  EXPECT_EQ(priceText("0.015", "en_US"), "$0.02");
  EXPECT_EQ(priceText("2.675", "en_US"), "$2.68");
  EXPECT_EQ(priceText("1.005", "en_US"), "$1.00");
}

TEST(UnusualPrices, MoreThanAHalfIsRoundedUp) {
  EXPECT_EQ(priceText("0.00500000000000000000000000000000000001", "en_US"), "$0.01");
}

TEST(UnusualPrices, HalvesOfACurrencyWithoutDecimalsAreRoundedToEven) {
  EXPECT_EQ(priceText("0.5", "ko_KR"), "\u20A90");
  EXPECT_EQ(priceText("1.5", "ko_KR"), "\u20A92");
}

TEST(UnusualPrices, NegativeAmountHasTheSignOfItsLocale) {
  EXPECT_EQ(priceText("-0.99", "en_US"), "-$0.99");
  EXPECT_EQ(priceText("-1234.5", "de_DE"), "-1.234,50\\u00a0\u20AC");
}

TEST(UnusualPrices, UnknownLocaleWritesTheNeutralForm) {
  EXPECT_EQ(priceText("1234.5", "xx_YY"), "\u00A4\\u00a01,234.50");
  EXPECT_EQ(priceText("1234.5", "xx_YY@currency=USD"), "US$\\u00a01,234.50");
}

TEST(UnusualPrices, LocaleOfNoRegionHasTheSignOfNoCurrency) {
  EXPECT_EQ(priceText("0.99", "en"), "\u00A40.99");
}

TEST(UnusualPrices, UnknownCurrencyIsWrittenAsItsCode) {
  EXPECT_EQ(priceText("0.99", "en_US@currency=QQQ"), "QQQ\\u00a00.99");
  EXPECT_EQ(priceText("0.99", "de_DE@currency=QQQ"), "0,99\\u00a0QQQ");
}

TEST(UnusualPrices, CurrencyMayBeInSmallLetters) {
  EXPECT_EQ(priceText("0.99", "en_US@currency=brl"), "R$0.99");
}

TEST(UnusualPrices, CurrencyThatIsNotACodeIsTheRegions) {
  EXPECT_EQ(priceText("0.99", "en_US@currency=dollars"), "$0.99");
  EXPECT_EQ(priceText("0.99", "en_US@currency=X"), "$0.99");
  EXPECT_EQ(priceText("0.99", "en_US@currency=A$B"), "$0.99");
}

TEST(UnusualPrices, LocaleWithAKeywordOfNothingWritesTheNeutralForm) {
  EXPECT_EQ(priceText("1234.5", "en_US@currency="), "US$\\u00a01,234.50");
}

TEST(UnusualPrices, EmptyLocaleWritesTheNeutralForm) {
  EXPECT_EQ(priceText("1234.5", ""), "\u00A4\\u00a01,234.50");
}

TEST(UnusualPrices, VeryLongLocaleHasSomeTextOrNone) {
  EXPECT_FALSE(priceText("0.99", veryLong()).empty());
  EXPECT_FALSE(priceText("0.99", std::string(10'000, 'x')).empty());
  EXPECT_FALSE(priceText("0.99", "en_US@currency=" + std::string(10'000, 'X')).empty());
}

TEST(UnusualPrices, LocaleThatIsNotOneCrashesNothing) {
  for (const std::string locale : {"@", "_", "en_US@", "@currency=USD", "=;@=;", "\xff\xfe",
                                   "en US", "en_US@currency=\xc3\xa9", "../../etc", "%s%n"}) {
    EXPECT_FALSE(priceText("0.99", locale).empty()) << locale;
    EXPECT_FALSE(monthsText(locale).empty()) << locale;
  }
}

TEST(UnusualPeriods, UnknownLocaleWritesTheNeutralForm) { EXPECT_EQ(monthsText("xx_YY"), "5 m"); }

TEST(UnusualPeriods, EmptyLocaleWritesTheNeutralForm) { EXPECT_EQ(monthsText(""), "5 m"); }

TEST(UnusualPeriods, VeryLongLocaleCrashesNothing) { monthsText(veryLong()); }

}  // namespace
}  // namespace TQStoreKitLib::tests
