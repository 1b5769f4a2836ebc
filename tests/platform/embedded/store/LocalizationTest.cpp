#include "platform/embedded/store/Localization.hpp"

#include <gtest/gtest.h>

namespace StoreKit {
namespace {

// The locale of the text that a user of `locale` gets, or "none".
std::string chosen(const std::vector<std::string>& offered, std::string_view locale) {
  std::vector<StoreConfiguration::Localization> localizations;
  for (const auto& each : offered) localizations.push_back({each, "", ""});
  const auto* text = chooseLocalization(localizations, locale);
  return text ? text->locale : "none";
}

TEST(Localization, ExactLocaleWins) {
  EXPECT_EQ(chosen({"en_US", "pt_PT", "pt_BR"}, "pt_BR"), "pt_BR");
}

TEST(Localization, DashAndUnderscoreAreOne) {
  EXPECT_EQ(chosen({"en_US", "pt_PT", "pt-BR"}, "pt_BR"), "pt-BR");
  EXPECT_EQ(chosen({"en_US", "pt_PT", "pt_BR"}, "pt-BR"), "pt_BR");
}

TEST(Localization, RegionStandsForItsScript) {
  EXPECT_EQ(chosen({"zh_Hans", "zh_Hant"}, "zh_TW"), "zh_Hant");
  EXPECT_EQ(chosen({"zh_Hant", "zh_Hans"}, "zh_CN"), "zh_Hans");
  EXPECT_EQ(chosen({"zh_CN", "zh_TW"}, "zh-Hant"), "zh_TW");
}

TEST(Localization, ScriptGoesBeforeAnEarlierOneOfTheLanguage) {
  EXPECT_EQ(chosen({"sr_Latn", "sr_Cyrl_ME"}, "sr_RS"), "sr_Cyrl_ME");
}

TEST(Localization, SameLanguageIsBetterThanEnglish) {
  EXPECT_EQ(chosen({"en_US", "pt_PT"}, "pt_BR"), "pt_PT");
  EXPECT_EQ(chosen({"en_US", "zh_Hans"}, "zh_TW"), "zh_Hans");
}

TEST(Localization, OfSeveralThatFitAlikeTheFirstIsTaken) {
  EXPECT_EQ(chosen({"en_US", "de_CH", "de_AT"}, "de_DE"), "de_CH");
}

TEST(Localization, WithoutTheLanguageItIsAmericanEnglish) {
  EXPECT_EQ(chosen({"fr_FR", "en_GB", "en_US"}, "de_DE"), "en_US");
  EXPECT_EQ(chosen({"fr_FR", "en-US"}, "de_DE"), "en-US");
}

TEST(Localization, WithoutAmericanEnglishItIsTheFirst) {
  EXPECT_EQ(chosen({"fr_FR", "en_GB"}, "de_DE"), "fr_FR");
}

TEST(Localization, WithoutAnyItIsNone) { EXPECT_EQ(chosen({}, "en_US"), "none"); }

TEST(Localization, UnreadableLocalesMatchNobody) {
  EXPECT_EQ(chosen({"", "en_US"}, "_US"), "en_US");
  EXPECT_EQ(chosen({"", "fr_FR"}, "de_DE"), "");
}

}  // namespace
}  // namespace StoreKit
