#include "TQStoreKitLib/products/ProductPricing.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "platform/embedded/Foundation/EmulatedSystem.hpp"
#include "tests/fakes/CapturedPrints.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Foundation::Decimal;
using Foundation::Locale;
using StoreKit::SKProduct;
using StoreKit::SKProductDiscount;
using StoreKit::SKProductPeriodUnit;
using StoreKit::SKProductSubscriptionPeriod;

constexpr auto kUnknownUnit = SKProductPeriodUnit(7);

std::optional<std::string> productPrice(const std::string& price, const std::string& locale) {
  return regularPrice(
      SKProduct({.price = *Decimal::fromString(price), .priceLocale = Locale(locale)}));
}

SKProductDiscount aDiscount(const std::string& price, const std::string& locale) {
  return {.price = *Decimal::fromString(price),
          .priceLocale = Locale(locale),
          .subscriptionPeriod = {3, SKProductPeriodUnit::week}};
}

TEST(ProductPricing, ProductThatCostsNothingIsFreeWhateverItsLocale) {
  for (const auto* locale : {"en_US", "de_DE", "ja_JP", "ar_EG", "he_IL", "xx_YY", ""}) {
    EXPECT_EQ(productPrice("0", locale), "Free") << locale;
  }
}

TEST(ProductPricing, ProductThatCostsNothingIsFreeHoweverItsZeroIsWritten) {
  EXPECT_EQ(productPrice("0.00", "de_DE"), "Free");
  EXPECT_EQ(productPrice("0e5", "de_DE"), "Free");
}

TEST(ProductPricing, ProductThatCostsLessThanIsShownIsNotFree) {
  EXPECT_EQ(productPrice("0.001", "en_US"), "$0.00");
}

TEST(ProductPricing, DiscountThatCostsNothingIsAnAmountOfZero) {
  EXPECT_EQ(localizedPrice(aDiscount("0", "en_US")), "$0.00");
  EXPECT_EQ(localizedPrice(aDiscount("0.00", "ja_JP")), "\uFFE50");
}

class SubscriptionPeriod : public testing::Test {
 protected:
  SubscriptionPeriod() { Foundation::setCurrentLocale(Locale("en_US")); }
  ~SubscriptionPeriod() override { Foundation::setCurrentLocale(std::nullopt); }
};

TEST_F(SubscriptionPeriod, OfADiscountOfThreeWeeks) {
  EXPECT_EQ(localizedSubscriptionPeriod(aDiscount("0.99", "en_US")), "3 weeks");
}

TEST_F(SubscriptionPeriod, IsInTheCurrentLocaleWhateverThePriceLocaleIs) {
  EXPECT_EQ(localizedSubscriptionPeriod(aDiscount("0.99", "de_DE")), "3 weeks");
  Foundation::setCurrentLocale(Locale("de_DE"));
  EXPECT_EQ(localizedSubscriptionPeriod(aDiscount("0.99", "en_US")), "3 Wochen");
}

TEST_F(SubscriptionPeriod, LocaleThatIsNoLongerSetIsNotTheCurrentOne) {
  const auto before = (Foundation::setCurrentLocale(std::nullopt), Locale::current());
  Foundation::setCurrentLocale(Locale("pl_PL"));
  EXPECT_EQ(Locale::current(), Locale("pl_PL"));
  Foundation::setCurrentLocale(std::nullopt);
  EXPECT_EQ(Locale::current(), before);
}

TEST_F(SubscriptionPeriod, OfAnUnknownUnitWarnsOnceForEachCall) {
  const std::string warning =
      "WARNING: Bramble localizedSubscriptionPeriod does not handle all SKProduct.PeriodUnit "
      "cases.";
  const CapturedPrints prints;
  const SKProductDiscount discount{.subscriptionPeriod = {5, kUnknownUnit}};
  static_cast<void>(localizedSubscriptionPeriod(discount));
  EXPECT_EQ(prints.lines(), (Journal{warning}));
  static_cast<void>(localizedSubscriptionPeriod(discount));
  EXPECT_EQ(prints.lines(), (Journal{warning, warning}));
}

TEST_F(SubscriptionPeriod, OfAnUnknownUnitIsTakenForMonths) {
  const CapturedPrints prints;
  EXPECT_EQ(localizedSubscriptionPeriod(SKProductSubscriptionPeriod{1, kUnknownUnit}), "1 month");
  const SKProductDiscount discount{
      .subscriptionPeriod = {5, SKProductPeriodUnit(std::numeric_limits<std::uint64_t>::max())}};
  EXPECT_EQ(localizedSubscriptionPeriod(discount), "5 months");
}

TEST_F(SubscriptionPeriod, OfAKnownUnitWarnsOfNothing) {
  const CapturedPrints prints;
  for (const auto unit : {SKProductPeriodUnit::day, SKProductPeriodUnit::week,
                          SKProductPeriodUnit::month, SKProductPeriodUnit::year}) {
    static_cast<void>(localizedSubscriptionPeriod(SKProductSubscriptionPeriod{1, unit}));
  }
  EXPECT_EQ(prints.lines(), Journal{});
}

TEST_F(SubscriptionPeriod, OfASubscriptionIsThatOfADiscountAsLong) {
  const SKProductSubscriptionPeriod period{11, SKProductPeriodUnit::day};
  EXPECT_EQ(localizedSubscriptionPeriod(period), "11 days");
  EXPECT_EQ(localizedSubscriptionPeriod(SKProductDiscount{.subscriptionPeriod = period}),
            "11 days");
}

TEST_F(SubscriptionPeriod, OfNoUnitsSaysSo) {
  EXPECT_EQ(localizedSubscriptionPeriod(SKProductSubscriptionPeriod{0, SKProductPeriodUnit::year}),
            "0 years");
}

TEST_F(SubscriptionPeriod, OfManyUnitsShowsEveryDigit) {
  const SKProductSubscriptionPeriod period{9'007'199'254'740'993, SKProductPeriodUnit::day};
  EXPECT_EQ(localizedSubscriptionPeriod(period), "9,007,199,254,740,993 days");
}

TEST_F(SubscriptionPeriod, OfMoreUnitsThanAComponentHoldsShowsTheMostThatItHolds) {
  constexpr auto kMost = std::uint64_t{9'223'372'036'854'775'807};
  for (const auto count : {kMost, kMost + 1, std::numeric_limits<std::uint64_t>::max()}) {
    const SKProductSubscriptionPeriod period{count, SKProductPeriodUnit::day};
    EXPECT_EQ(localizedSubscriptionPeriod(period), "9,223,372,036,854,775,807 days") << count;
  }
}

}  // namespace
}  // namespace TQStoreKitLib::tests
