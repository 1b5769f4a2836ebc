#include <sys/stat.h>
#include <unistd.h>

#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;

class SettingsCommand : public tests::ToolOnLedger {
 protected:
  std::string json(const std::vector<std::string>& arguments) const {
    const auto answer = lines(arguments);
    EXPECT_EQ(answer.size(), 1U);
    return answer.empty() ? "" : answer.front();
  }
};

TEST_F(SettingsCommand, ShowsAllAsOneObjectInTheirOrder) {
  EXPECT_EQ(json({"settings"}),
            R"({"answerDelay":0,"askToBuyEnabled":false,"billingGracePeriodEnabled":false,)"
            R"("billingRetryOnRenewalEnabled":false,"canMakePayments":true,)"
            R"("disableDialogs":false,"downloadSpeed":0,"failTransactionsEnabled":false,)"
            R"("failureError":0,"interruptedPurchasesEnabled":false,"locale":"en_US",)"
            R"("storefront":"BRA","timeRate":0})");
}

TEST_F(SettingsCommand, ShowsOne) {
  EXPECT_EQ(json({"settings", "storefront"}), R"({"storefront":"BRA"})");
}

TEST_F(SettingsCommand, SetsOneAndShowsIt) {
  EXPECT_EQ(json({"settings", "askToBuyEnabled", "true"}), R"({"askToBuyEnabled":true})");
  EXPECT_EQ(json({"settings", "answerDelay", "0.25"}), R"({"answerDelay":0.25})");
  EXPECT_EQ(json({"settings", "timeRate", "13"}), R"({"timeRate":13})");
}

TEST_F(SettingsCommand, ALocaleIsTextWhateverItReadsLike) {
  EXPECT_EQ(json({"settings", "locale", "12"}), R"({"locale":"12"})");
}

TEST_F(SettingsCommand, AVersionOfContentIsTextWhateverItReadsLike) {
  const auto folder = folder_.file("content");
  ::mkdir(folder.c_str(), 0700);
  run({"settings", "hostedContent.levels", folder});

  EXPECT_EQ(json({"settings", "hostedContentVersion.levels", "1.10"}),
            R"({"hostedContentVersion.levels":"1.10"})");
}

TEST_F(SettingsCommand, WhatIsSetHoldsForOtherPrograms) {
  run({"settings", "storefront", "JPN"});

  EXPECT_EQ(run({"products", "gems"}).json().at(0)["currency"], "JPY");
}

TEST_F(SettingsCommand, TakesOneBack) {
  run({"settings", "storefront", "JPN"});
  run({"settings", "timeRate", "13"});

  EXPECT_EQ(json({"settings", "storefront", "--reset"}), R"({"storefront":"BRA"})");
  EXPECT_EQ(json({"settings", "timeRate"}), R"({"timeRate":13})");
}

TEST_F(SettingsCommand, TakesAllBack) {
  const auto before = json({"settings"});
  run({"settings", "storefront", "JPN"});
  run({"settings", "timeRate", "13"});

  EXPECT_EQ(json({"settings", "--reset"}), before);
  EXPECT_EQ(json({"settings"}), before);
}

TEST_F(SettingsCommand, ANameThatNoSettingHasIsWrongUsage) {
  for (const auto& arguments : {std::vector<std::string>{"settings", "nope"},
                                {"settings", "nope", "true"},
                                {"settings", "nope", "--reset"},
                                {"settings", "ASKTOBUYENABLED"}}) {
    expectRefused(arguments, arguments[1] + " is no setting", 2);
  }
}

TEST_F(SettingsCommand, AValueThatASettingCannotHaveIsWrongUsageAndChangesNothing) {
  const auto before = json({"settings"});

  expectRefused({"settings", "askToBuyEnabled", "maybe"},
                "askToBuyEnabled is \"true\" or \"false\", not \"maybe\"", 2);
  for (const auto& [name, value] :
       std::vector<std::pair<std::string, std::string>>{{"timeRate", "99"},
                                                        {"timeRate", ""},
                                                        {"answerDelay", "-1"},
                                                        {"failureError", "one"},
                                                        {"storefront", "usa"},
                                                        {"locale", ""}}) {
    EXPECT_EQ(run({"settings", name, value}).exitStatus, 2) << name << " " << value;
  }

  EXPECT_EQ(json({"settings"}), before);
}

TEST_F(SettingsCommand, APersonSeesWhereAValueIsFrom) {
  run({"settings", "storefront", "JPN"});

  EXPECT_THAT(runForPerson({"settings", "storefront"}).lines(),
              ElementsAre("Setting     Value  From", "storefront  JPN    settings"));
  EXPECT_THAT(runForPerson({"settings", "storefront", "--reset"}).lines(),
              ElementsAre("Setting     Value  From", "storefront  BRA    configuration"));
}

TEST_F(SettingsCommand, HostedContentIsASettingOfItsProduct) {
  const auto folder = folder_.file("content");
  ::mkdir(folder.c_str(), 0700);

  EXPECT_EQ(json({"settings", "hostedContent.levels", folder}),
            R"({"hostedContent.levels":")" + folder + "\"}");
  EXPECT_NE(json({"settings"}).find("\"hostedContent.levels\":"), std::string::npos);
}

}  // namespace
