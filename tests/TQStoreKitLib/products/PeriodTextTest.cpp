#include <gtest/gtest.h>

#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "platform/embedded/Foundation/EmulatedSystem.hpp"
#include "tests/TQStoreKitLib/products/pricing/TextTable.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKProductPeriodUnit;
using StoreKit::SKProductSubscriptionPeriod;

const std::vector<LocaleTexts>& table() {
  static const auto& instance = *new auto(readTextTable("periods.tsv"));
  return instance;
}

SKProductPeriodUnit unitOf(const std::string& name) {
  if (name == "day") return SKProductPeriodUnit::day;
  if (name == "week") return SKProductPeriodUnit::week;
  return name == "month" ? SKProductPeriodUnit::month : SKProductPeriodUnit::year;
}

class PeriodText : public testing::TestWithParam<LocaleTexts> {
 protected:
  PeriodText() { Foundation::setCurrentLocale(Foundation::Locale(GetParam().locale)); }
  ~PeriodText() override { Foundation::setCurrentLocale(std::nullopt); }
};

TEST_P(PeriodText, IsSpelledOutAsTheCurrentLocaleDoes) {
  for (const auto& row : GetParam().rows) {
    const SKProductSubscriptionPeriod period{std::stoull(row[1]), unitOf(row[2])};
    const auto text =
        localizedSubscriptionPeriod(StoreKit::SKProductDiscount{.subscriptionPeriod = period});
    EXPECT_TRUE(text == row[3]) << row[0] << ", " << row[1] << " " << row[2]
                                << "\n  is:     " << visible(text)
                                << "\n  wanted: " << visible(row[3]) << "\n  from:   " << row[4];
  }
}

INSTANTIATE_TEST_SUITE_P(Cldr, PeriodText, testing::ValuesIn(table()),
                         [](const auto& test) { return testName(test.param.locale); });

TEST(PeriodTextTable, HasFourCountsOfFourUnitsInEachOfManyLocales) {
  EXPECT_GE(table().size(), 16U);
  for (const auto& texts : table()) EXPECT_EQ(texts.rows.size(), 16U) << texts.locale;
}

}  // namespace
}  // namespace TQStoreKitLib::tests
