#include <gtest/gtest.h>

#include "tests/platform/embedded/store/configuration/ConfigurationTexts.hpp"

namespace StoreKit::tests {
namespace {

ConfigurationReading withPrice(const std::string& price) {
  return parse(textWithProduct(R"("displayPrice":")" + price + "\","));
}

// The price that the only product has; empty when it was left out.
std::string priceIn(const ConfigurationReading& reading) {
  if (!reading.configuration || reading.configuration->products.empty()) return {};
  return reading.configuration->products[0].displayPrice.toString();
}

struct Price {
  std::string written, read;
};

void PrintTo(const Price& price, std::ostream* out) { *out << '"' << price.written << '"'; }

class PlainConfigurationPrice : public testing::TestWithParam<Price> {};

TEST_P(PlainConfigurationPrice, IsReadExactlyAndSilently) {
  const auto reading = withPrice(GetParam().written);
  EXPECT_EQ(priceIn(reading), GetParam().read);
  EXPECT_EQ(problemsOf(reading), "");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PlainConfigurationPrice,
    testing::Values(Price{"0.99", "0.99"}, Price{"12", "12"}, Price{"300", "300"},
                    Price{"1.5", "1.5"}, Price{"0", "0"}, Price{"0.00", "0"},
                    Price{"1.234", "1.234"}, Price{"007.10", "7.1"},
                    Price{"12345678901234567890.123456789", "12345678901234567890.123456789"}));

class OddConfigurationPrice : public testing::TestWithParam<Price> {};

TEST_P(OddConfigurationPrice, IsReadWithAWarningThatSaysWhat) {
  const auto reading = withPrice(GetParam().written);
  EXPECT_EQ(priceIn(reading), GetParam().read);
  ASSERT_EQ(reading.problems.size(), 2U);  // the other one is about the repeated key
  EXPECT_EQ(reading.problems[1].place, "/products/0/displayPrice");
  EXPECT_TRUE(reading.problems[1].message.ends_with("; read as " + GetParam().read));
}

INSTANTIATE_TEST_SUITE_P(Texts, OddConfigurationPrice,
                         testing::Values(Price{"2,99", "2.99"}, Price{"2,9", "2.9"},
                                         Price{"¥18", "18"}, Price{"18 €", "18"},
                                         Price{"2,99\u00A0€", "2.99"}, Price{"$1.99", "1.99"},
                                         Price{"USD 1.99", "1.99"}, Price{"1.99USD", "1.99"},
                                         Price{"R$ 4,90", "4.9"}, Price{" 0.99 ", "0.99"}));

class UnreadableConfigurationPrice : public testing::TestWithParam<std::string> {};

TEST_P(UnreadableConfigurationPrice, LeavesTheProductOutWithAWarning) {
  const auto reading = withPrice(GetParam());
  ASSERT_TRUE(reading.configuration);
  EXPECT_TRUE(reading.configuration->products.empty());
  ASSERT_EQ(reading.problems.size(), 2U);
  EXPECT_EQ(reading.problems[1].place, "/products/0/displayPrice");
  EXPECT_TRUE(reading.problems[1].message.ends_with("; left out"));
}

INSTANTIATE_TEST_SUITE_P(Texts, UnreadableConfigurationPrice,
                         testing::Values("", " ", "free", "1,234.56", "1.234,56", "1,234", "1 000",
                                         "1'000", "-1", "$-1", "-$1", "1-", "+1", "1.", ".99",
                                         "1.2.3", "1,2,3", "1e3", "0x10", "99¢", "$1.99 USD", "$$1",
                                         "ABC 1", "1 kr", "1/2", "١٢", "NaN", "Infinity",
                                         "1.99 or 2.99",
                                         "123456789012345678901234567890123456789"));

TEST(ConfigurationPrice, UnreadableOneIsNamedWithItsReason) {
  EXPECT_EQ(problemsOf(withPrice("1,234.56")),
            "/products/0/displayPrice: the price \"1,234.56\" is not one plain number; left out\n");
  EXPECT_EQ(problemsOf(withPrice("")),
            "/products/0/displayPrice: the price \"\" is empty; left out\n");
  EXPECT_EQ(problemsOf(withPrice("-1")),
            "/products/0/displayPrice: the price \"-1\" is negative; left out\n");
}

TEST(ConfigurationPrice, MissingOneLeavesTheProductOut) {
  const auto reading = parse(R"({"products":[{"productID":"a","type":"Consumable"}]})");
  EXPECT_TRUE(isReadWith(reading, "/products/0: has no displayPrice; left out\n"));
  EXPECT_TRUE(reading.configuration->products.empty());
}

TEST(ConfigurationPrice, EntryLeftOutForItsPriceDoesNotHideALaterOne) {
  const auto reading = parse(R"({"products":[{"productID":"a","displayPrice":"?"},)"
                             R"({"productID":"a","type":"Consumable","displayPrice":"2"}]})");
  EXPECT_EQ(priceIn(reading), "2");
}

}  // namespace
}  // namespace StoreKit::tests
