#include "platform/embedded/store/StoreSettings.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using Settings = StoreConfiguration::Settings;

TEST(StoreSettings, HaveTheNamesOfTheSessionsProperties) {
  EXPECT_THAT(settingNames(),
              ElementsAre("answerDelay", "askToBuyEnabled", "billingGracePeriodEnabled",
                          "billingRetryOnRenewalEnabled", "canMakePayments", "disableDialogs",
                          "downloadSpeed", "failTransactionsEnabled", "failureError",
                          "interruptedPurchasesEnabled", "locale", "storefront", "timeRate"));
}

TEST(StoreSettings, AreTheDefaultsAsText) {
  const Settings settings;
  EXPECT_EQ(settingText(settings, "answerDelay"), "0");
  EXPECT_EQ(settingText(settings, "askToBuyEnabled"), "false");
  EXPECT_EQ(settingText(settings, "canMakePayments"), "true");
  EXPECT_EQ(settingText(settings, "failureError"), "0");
  EXPECT_EQ(settingText(settings, "locale"), "en_US");
  EXPECT_EQ(settingText(settings, "storefront"), "USA");
  EXPECT_EQ(settingText(settings, "timeRate"), "0");
}

struct Value {
  const char* name;
  const char* text;
};
void PrintTo(const Value& value, std::ostream* out) {
  *out << value.name << " = \"" << value.text << '"';
}

class GoodSetting : public testing::TestWithParam<Value> {};

TEST_P(GoodSetting, IsWhatWasSetAndNothingElseChanges) {
  Settings settings;
  EXPECT_EQ(setSetting(settings, GetParam().name, GetParam().text), std::nullopt);
  for (const auto name : settingNames()) {
    const auto before = settingText(Settings(), name);
    EXPECT_EQ(settingText(settings, name), name == GetParam().name ? GetParam().text : before)
        << name;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Each, GoodSetting,
    testing::Values(Value{"answerDelay", "2.5"}, Value{"answerDelay", "1234567.5"},
                    Value{"answerDelay", "0.1"}, Value{"askToBuyEnabled", "true"},
                    Value{"billingGracePeriodEnabled", "true"},
                    Value{"billingRetryOnRenewalEnabled", "true"},
                    Value{"canMakePayments", "false"}, Value{"disableDialogs", "true"},
                    Value{"failTransactionsEnabled", "true"}, Value{"failureError", "12"},
                    Value{"failureError", "77"}, Value{"interruptedPurchasesEnabled", "true"},
                    Value{"locale", "zh_Hans"}, Value{"locale", "xx_nobody"},
                    Value{"locale", "de_CH@currency=CHF"}, Value{"storefront", "BRA"},
                    Value{"timeRate", "13"}, Value{"timeRate", "1005"}));

class BadSetting : public testing::TestWithParam<Value> {};

TEST_P(BadSetting, IsRefusedWithItsNameAndValueAndChangesNothing) {
  Settings settings;
  const auto problem = setSetting(settings, GetParam().name, GetParam().text);
  ASSERT_TRUE(problem);
  EXPECT_THAT(*problem, StartsWith(std::string(GetParam().name) + " is "));
  EXPECT_THAT(*problem, HasSubstr("not \"" + std::string(GetParam().text) + "\""));
  for (const auto name : settingNames()) {
    EXPECT_EQ(settingText(settings, name), settingText(Settings(), name)) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Each, BadSetting,
    testing::Values(
        Value{"answerDelay", ""}, Value{"answerDelay", "-0.5"}, Value{"answerDelay", "soon"},
        Value{"answerDelay", "1s"}, Value{"answerDelay", "1 "}, Value{"answerDelay", "nan"},
        Value{"answerDelay", "inf"}, Value{"answerDelay", "1e999"}, Value{"answerDelay", "1,5"},
        Value{"askToBuyEnabled", "yes"}, Value{"askToBuyEnabled", "TRUE"},
        Value{"askToBuyEnabled", "1"}, Value{"billingGracePeriodEnabled", ""},
        Value{"billingRetryOnRenewalEnabled", "true "}, Value{"canMakePayments", "no"},
        Value{"disableDialogs", "0"}, Value{"failTransactionsEnabled", "on"},
        Value{"failureError", "-1"}, Value{"failureError", "1.5"}, Value{"failureError", "unknown"},
        Value{"failureError", "99999999999"}, Value{"failureError", ""},
        Value{"interruptedPurchasesEnabled", "maybe"}, Value{"locale", ""}, Value{"locale", "\xFF"},
        Value{"locale", "de DE"}, Value{"locale", "../en"}, Value{"storefront", "US"},
        Value{"storefront", "bra"}, Value{"storefront", "XYZ"}, Value{"timeRate", "14"},
        Value{"timeRate", "fast"}, Value{"timeRate", "-1"}, Value{"timeRate", "1.0"}));

TEST(StoreSettings, WithAnotherNameAreRefused) {
  Settings settings;
  for (const char* name : {"", "askToBuy", "ASKTOBUYENABLED", "_locale"}) {
    EXPECT_EQ(setSetting(settings, name, "true"), std::string(name) + " is no setting");
    EXPECT_EQ(settingText(settings, name), std::nullopt);
  }
}

TEST(StoreSettings, SayWhichTimeRatesThereAre) {
  Settings settings;
  EXPECT_THAT(setSetting(settings, "timeRate", "7").value_or(""), HasSubstr("0, 1, 2"));
}

}  // namespace
}  // namespace StoreKit
