#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::TransactionLine;

class FinishCommand : public tests::ToolOnLedger {
 protected:
  void SetUp() override { run({"buy", "gems", "--no-finish"}); }
};

const std::string kGemsFinished = TransactionLine{"1", "gems", "purchased", true};

TEST_F(FinishCommand, TakesTheNumberInTheLedger) {
  EXPECT_THAT(lines({"finish", "1"}), ElementsAre(kGemsFinished));

  EXPECT_THAT(lines({"transactions"}), IsEmpty());
}

TEST_F(FinishCommand, TakesTheIdentifierOfThePlatform) {
  EXPECT_THAT(lines({"finish", "2000000001"}), ElementsAre(kGemsFinished));
}

TEST_F(FinishCommand, FinishingTwiceIsHarmless) {
  run({"finish", "1"});

  EXPECT_THAT(lines({"finish", "1"}), ElementsAre(kGemsFinished));
}

TEST_F(FinishCommand, AnUnknownTransactionIsRefused) {
  for (const char* unknown : {"2", "0", "-1", "1.0", "01", "+1", "gems", "", " 1", "2000000002",
                              "99999999999999999999"}) {
    expectRefused({"finish", unknown}, "there is no transaction " + std::string(unknown));
  }
}

TEST_F(FinishCommand, AllFinishesEverythingInOrder) {
  run({"buy", "levels", "--no-finish"});

  EXPECT_THAT(
      lines({"finish", "--all"}),
      ElementsAre(kGemsFinished, std::string(TransactionLine{"2", "levels", "purchased", true})));
  EXPECT_THAT(lines({"transactions"}), IsEmpty());
  EXPECT_THAT(lines({"finish", "--all"}), IsEmpty());
}

TEST_F(FinishCommand, TellsAPersonThatThereIsNothingToFinish) {
  run({"finish", "--all"});

  const auto again = runForPerson({"finish", "--all"});

  EXPECT_EQ(again.exitStatus, 0);
  EXPECT_EQ(again.output, "");
  EXPECT_EQ(again.errors, "tqstore: there is nothing to finish\n");
}

TEST_F(FinishCommand, WantsEitherATransactionOrAll) {
  for (const auto& arguments :
       {std::vector<std::string>{"finish"}, std::vector<std::string>{"finish", "1", "--all"}}) {
    expectRefused(arguments,
                  "finish wants one of these: TRANSACTION | --all\n"
                  "(tqstore finish --help tells more)",
                  2);
  }
}

TEST_F(FinishCommand, AFinishedDeferredPurchaseIsStillDeliveredOnceItIsApproved) {
  run({"buy", "levels", "--ask-to-buy"});

  EXPECT_THAT(lines({"finish", "2"}),
              ElementsAre(std::string(TransactionLine{"2", "levels", "deferred", true})));
  EXPECT_THAT(lines({"approve", "2"}),
              ElementsAre(std::string(TransactionLine{"2", "levels", "purchased", false})));
}

TEST_F(FinishCommand, WhatIsPurchasingStaysAsItIs) {
  run({"storefront-buy", "levels"});
  const auto before = transaction("2");

  expectRefused({"finish", "2"}, "transaction 2 is purchasing: it cannot be finished");

  EXPECT_THAT(lines({"finish", "--all"}), ElementsAre(kGemsFinished));
  EXPECT_EQ(transaction("2"), before);
}

}  // namespace
