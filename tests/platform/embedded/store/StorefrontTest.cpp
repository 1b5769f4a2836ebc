#include "platform/embedded/store/Storefront.hpp"

#include <gtest/gtest.h>

namespace StoreKit {
namespace {

TEST(Storefront, ChargesInItsCountrysCurrency) {
  EXPECT_EQ(storefrontCurrency("USA"), "USD");
  EXPECT_EQ(storefrontCurrency("BRA"), "BRL");
  EXPECT_EQ(storefrontCurrency("JPN"), "JPY");
  EXPECT_EQ(storefrontCurrency("DEU"), "EUR");
  EXPECT_EQ(storefrontCurrency("GBR"), "GBP");
}

TEST(Storefront, OfNoCountryHasNoCurrency) {
  EXPECT_EQ(storefrontCurrency("XYZ"), std::nullopt);
  EXPECT_EQ(storefrontCurrency(""), std::nullopt);
  EXPECT_EQ(storefrontCurrency("US"), std::nullopt);
  EXPECT_EQ(storefrontCurrency("United States"), std::nullopt);
}

TEST(Storefront, IsWrittenInCapitals) { EXPECT_EQ(storefrontCurrency("usa"), std::nullopt); }

TEST(PriceLocale, IsTheLocaleWithTheStorefrontsCurrency) {
  EXPECT_EQ(priceLocale("en_US", "BRA").identifier(), "en_US@currency=BRL");
  EXPECT_EQ(priceLocale("de_DE", "JPN").identifier(), "de_DE@currency=JPY");
}

TEST(PriceLocale, WithoutACurrencyIsTheLocale) {
  EXPECT_EQ(priceLocale("pt_BR", "XYZ").identifier(), "pt_BR");
  EXPECT_EQ(priceLocale("pt_BR", "").identifier(), "pt_BR");
}

}  // namespace
}  // namespace StoreKit
