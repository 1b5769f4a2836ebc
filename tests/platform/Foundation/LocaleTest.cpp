#include "platform/Foundation/Locale.hpp"

#include <gtest/gtest.h>

namespace Foundation {
namespace {

std::optional<std::string> currency(const std::string& identifier) {
  return Locale(identifier).currencyCode();
}

TEST(Locale, KeepsItsIdentifierAsItIs) {
  EXPECT_EQ(Locale("any text").identifier(), "any text");
  EXPECT_EQ(Locale().identifier(), "");
}

TEST(Locale, CurrencyFollowsFromTheRegion) {
  EXPECT_EQ(currency("en_US"), "USD");
  EXPECT_EQ(currency("pt_BR"), "BRL");
  EXPECT_EQ(currency("ja_JP"), "JPY");
  EXPECT_EQ(currency("de_DE"), "EUR");
  EXPECT_EQ(currency("zh_Hant_TW"), "TWD");
}

TEST(Locale, CurrencyThatIsNamedWinsOverTheRegion) {
  EXPECT_EQ(currency("en_US@currency=BRL"), "BRL");
}

TEST(Locale, WithoutRegionHasNoCurrency) {
  EXPECT_EQ(currency("en"), std::nullopt);
  EXPECT_EQ(currency("zh_Hans"), std::nullopt);
  EXPECT_EQ(currency(""), std::nullopt);
}

TEST(Locale, OfAnUnknownRegionHasNoCurrency) {
  EXPECT_EQ(currency("en_QX"), std::nullopt);
  EXPECT_EQ(currency("nonsense of some length, with blanks"), std::nullopt);
}

TEST(Locale, EqualsOneWithTheSameIdentifier) {
  EXPECT_EQ(Locale("en_US"), Locale("en_US"));
  EXPECT_NE(Locale("en_US"), Locale("en_us"));
}

}  // namespace
}  // namespace Foundation
