#include <gtest/gtest.h>

#include "tests/platform/embedded/store/configuration/ConfigurationTexts.hpp"

namespace StoreKit::tests {
namespace {

using Settings = StoreConfiguration::Settings;

Settings settingsWith(std::string_view members) {
  const auto reading = parse(textWithSettings(members));
  return reading.configuration ? reading.configuration->settings : Settings{};
}

void expectDefaults(const Settings& settings) {
  EXPECT_EQ(settings.locale, "en_US");
  EXPECT_EQ(settings.storefront, "USA");
  EXPECT_EQ(settings.timeRate, 0);
  EXPECT_FALSE(settings.askToBuyEnabled);
  EXPECT_FALSE(settings.interruptedPurchasesEnabled);
  EXPECT_FALSE(settings.billingRetryOnRenewalEnabled);
  EXPECT_FALSE(settings.billingGracePeriodEnabled);
  EXPECT_FALSE(settings.disableDialogs);
  EXPECT_FALSE(settings.failTransactionsEnabled);
  EXPECT_EQ(settings.failureError, 0);
}

TEST(ConfigurationSettings, MissingNullAndEmptyOnesHaveTheDefaults) {
  for (const auto* text : {"{}", R"({"settings":null})", R"({"settings":{}})"}) {
    const auto reading = parse(text);
    ASSERT_TRUE(isReadWith(reading, ""));
    expectDefaults(reading.configuration->settings);
  }
}

TEST(ConfigurationSettings, OfAnotherTypeHaveTheDefaultsAndAWarning) {
  const auto reading = parse(R"({"settings":[]})");
  ASSERT_TRUE(isReadWith(
      reading, "/settings: expected an object, found a list; every setting has its default\n"));
  expectDefaults(reading.configuration->settings);
}

TEST(ConfigurationSettings, LocaleAndStorefrontAreRead) {
  const auto settings = settingsWith(R"("_locale":"pt_BR","_storefront":"BRA")");
  EXPECT_EQ(settings.locale, "pt_BR");
  EXPECT_EQ(settings.storefront, "BRA");
}

TEST(ConfigurationSettings, EachSwitchIsReadFromItsOwnKey) {
  EXPECT_TRUE(settingsWith(R"("_askToBuyEnabled":true)").askToBuyEnabled);
  EXPECT_TRUE(settingsWith(R"("_billingIssuesEnabled":true)").interruptedPurchasesEnabled);
  EXPECT_TRUE(settingsWith(R"("_renewalBillingIssuesEnabled":true)").billingRetryOnRenewalEnabled);
  EXPECT_TRUE(settingsWith(R"("_billingGracePeriodEnabled":true)").billingGracePeriodEnabled);
  EXPECT_TRUE(settingsWith(R"("_disableDialogs":true)").disableDialogs);
  EXPECT_TRUE(settingsWith(R"("_failTransactionsEnabled":true)").failTransactionsEnabled);
  EXPECT_EQ(settingsWith(R"("_storeKitError":2)").failureError, 2);
}

TEST(ConfigurationSettings, NoSwitchIsReadFromAnotherKey) {
  expectDefaults(settingsWith(
      R"("_interruptedPurchasesEnabled":true,"_compatibilityTimeRate":{"3":6},)"
      R"("_storeKitErrors":[{"enabled":true,"name":"Purchase"}],"askToBuyEnabled":true)"));
}

TEST(ConfigurationSettings, EveryKnownTimeRateIsRead) {
  for (const int rate :
       {0, 1, 2, 3, 4, 5, 6, 10, 11, 12, 13, 15, 1000, 1001, 1002, 1003, 1004, 1005}) {
    const auto reading = parse(textWithSettings(R"("_timeRate":)" + std::to_string(rate)));
    ASSERT_TRUE(isReadWith(reading, ""));
    EXPECT_EQ(reading.configuration->settings.timeRate, rate);
  }
}

TEST(ConfigurationSettings, UnknownTimeRateIsRealTimeWithAWarning) {
  for (const int rate : {-1, 7, 14, 16, 999, 1006}) {
    const auto reading = parse(textWithSettings(R"("_timeRate":)" + std::to_string(rate)));
    EXPECT_TRUE(isReadWith(reading, "/settings/_timeRate: " + std::to_string(rate) +
                                        " is no time rate; read as 0, real time\n"));
    EXPECT_EQ(reading.configuration->settings.timeRate, 0);
  }
}

TEST(ConfigurationSettings, StorefrontThatIsNoCountryCodeIsUsaWithAWarning) {
  for (const std::string storefront : {"", "US", "usa", "USAA", "U5A"}) {
    const auto reading = parse(textWithSettings(R"("_storefront":")" + storefront + "\""));
    EXPECT_TRUE(isReadWith(
        reading, "/settings/_storefront: \"" + storefront +
                     "\" is no country code of three capital letters; read as \"USA\"\n"));
    EXPECT_EQ(reading.configuration->settings.storefront, "USA");
  }
}

TEST(ConfigurationSettings, EmptyLocaleIsTheDefaultWithAWarning) {
  const auto reading = parse(textWithSettings(R"("_locale":"")"));
  EXPECT_TRUE(isReadWith(reading, "/settings/_locale: names no locale; read as \"en_US\"\n"));
  EXPECT_EQ(reading.configuration->settings.locale, "en_US");
}

TEST(ConfigurationSettings, NegativeFailureErrorIsZeroWithAWarning) {
  EXPECT_TRUE(isReadWith(parse(textWithSettings(R"("_storeKitError":-1)")),
                         "/settings/_storeKitError: -1 is no error code; read as 0\n"));
}

TEST(ConfigurationSettings, WrongTypesGiveTheDefaultsAndWarnings) {
  const auto reading = parse(
      textWithSettings(R"("_locale":7,"_storefront":null,"_timeRate":"15","_askToBuyEnabled":1)"));
  ASSERT_TRUE(isReadWith(
      reading,
      "/settings/_locale: expected a text, found a number; read as \"en_US\"\n"
      "/settings/_timeRate: expected a whole number, found a text; read as 0\n"
      "/settings/_askToBuyEnabled: expected true or false, found a number; read as false\n"));
  expectDefaults(reading.configuration->settings);
}

TEST(ConfigurationSettings, OfferSigningKeyIsNeverPrinted) {
  const auto reading =
      parse(R"({"subscriptionOffersKeyPair":{"id":"K","privateKey":["secret"]},"products":[{}]})");
  EXPECT_EQ(problemsOf(reading), "/products/0: has no productID; left out\n");
}

TEST(ConfigurationSettings, StorefrontThatDoesNotExistIsUsaWithAWarning) {
  const auto reading = parse(textWithSettings(R"("_storefront":"ZZZ")"));

  ASSERT_TRUE(isReadWith(
      reading,
      "/settings/_storefront: \"ZZZ\" is no country that has a currency; read as \"USA\"\n"));
  EXPECT_EQ(reading.configuration->settings.storefront, "USA");
}

}  // namespace
}  // namespace StoreKit::tests
