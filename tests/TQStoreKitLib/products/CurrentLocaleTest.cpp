#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "platform/Foundation/Locale.hpp"

// The environment is read once in a process: each of these tests wants one of its own.
namespace TQStoreKitLib::tests {
namespace {

using Foundation::Locale;

// What the system's locale is when the environment has these variables and no others that matter.
Locale localeOf(const std::map<std::string, std::string>& variables) {
  for (const auto* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) ::unsetenv(name);
  for (const auto& [name, value] : variables) ::setenv(name.c_str(), value.c_str(), 1);
  return Locale::current();
}

TEST(CurrentLocale, IsTheOneOfLang) {
  EXPECT_EQ(localeOf({{"LANG", "pl_PL.UTF-8"}}), Locale("pl_PL"));
}

TEST(CurrentLocale, MessagesWinOverLang) {
  EXPECT_EQ(localeOf({{"LANG", "pl_PL.UTF-8"}, {"LC_MESSAGES", "fr_FR.UTF-8"}}), Locale("fr_FR"));
}

TEST(CurrentLocale, AllWinsOverMessagesAndLang) {
  EXPECT_EQ(
      localeOf(
          {{"LANG", "pl_PL.UTF-8"}, {"LC_MESSAGES", "fr_FR.UTF-8"}, {"LC_ALL", "de_DE.UTF-8"}}),
      Locale("de_DE"));
}

TEST(CurrentLocale, WithoutAnyIsAmericanEnglish) { EXPECT_EQ(localeOf({}), Locale("en_US")); }

TEST(CurrentLocale, OfTheCLanguageIsAmericanEnglish) {
  EXPECT_EQ(localeOf({{"LC_ALL", "C"}}), Locale("en_US"));
}

TEST(CurrentLocale, OfTheCLanguageInUtf8IsAmericanEnglish) {
  EXPECT_EQ(localeOf({{"LANG", "C.UTF-8"}}), Locale("en_US"));
}

TEST(CurrentLocale, OfThePosixLanguageIsAmericanEnglish) {
  EXPECT_EQ(localeOf({{"LANG", "POSIX"}}), Locale("en_US"));
}

TEST(CurrentLocale, OfTheEnvironmentSpellsPeriodsOut) {
  localeOf({{"LC_ALL", "de_DE.UTF-8"}});
  EXPECT_EQ(localizedSubscriptionPeriod(
                StoreKit::SKProductSubscriptionPeriod{5, StoreKit::SKProductPeriodUnit::month}),
            "5 Monate");
}

}  // namespace
}  // namespace TQStoreKitLib::tests
