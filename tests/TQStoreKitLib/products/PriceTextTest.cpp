#include <gtest/gtest.h>

#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "tests/TQStoreKitLib/products/pricing/TextTable.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Foundation::Decimal;
using Foundation::Locale;

const std::vector<LocaleTexts>& table() {
  static const auto& instance = *new auto(readTextTable("prices.tsv"));
  return instance;
}

std::string said(const std::optional<std::string>& text) {
  return text ? visible(*text) : "(absent)";
}

class PriceText : public testing::TestWithParam<LocaleTexts> {};

TEST_P(PriceText, IsAsTheLocaleWritesIt) {
  for (const auto& row : GetParam().rows) {
    const auto text = StoreKit::localizedPrice({.price = *Decimal::fromString(row[1]),
                                                .priceLocale = Locale(row[0]),
                                                .subscriptionPeriod = {}});
    EXPECT_TRUE(text == row[2]) << row[0] << ", price " << row[1] << "\n  is:     " << said(text)
                                << "\n  wanted: " << visible(row[2]) << "\n  from:   " << row[3];
  }
}

INSTANTIATE_TEST_SUITE_P(Cldr, PriceText, testing::ValuesIn(table()),
                         [](const auto& test) { return testName(test.param.locale); });

// The rows of every locale.
std::vector<std::vector<std::string>> allRows() {
  std::vector<std::vector<std::string>> rows;
  for (const auto& texts : table()) rows.insert(rows.end(), texts.rows.begin(), texts.rows.end());
  return rows;
}

TEST(PriceTextTable, ProductsPriceIsTheSameUnlessItIsFree) {
  for (const auto& row : allRows()) {
    const auto price = *Decimal::fromString(row[1]);
    const auto text = regularPrice(StoreKit::SKProduct(
        StoreKit::SKProduct::Values{.price = price, .priceLocale = Locale(row[0])}));
    const auto wanted = price.isZero() ? "Free" : row[2];
    EXPECT_TRUE(text == wanted) << row[0] << ", price " << row[1] << "\n  is:     " << said(text)
                                << "\n  wanted: " << visible(wanted);
  }
}

TEST(PriceTextTable, HasSixPricesInEachOfManyLocales) {
  EXPECT_GE(table().size(), 44U);
  for (const auto& texts : table()) EXPECT_EQ(texts.rows.size(), 6U) << texts.locale;
}

}  // namespace
}  // namespace TQStoreKitLib::tests
