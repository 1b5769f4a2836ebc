#include <gtest/gtest.h>

#include "tests/tools/RefusingLedger.hpp"
#include "tests/tools/ToolOnLedger.hpp"
#include "tests/tools/ToolRun.hpp"

namespace {

using Lines = std::vector<std::string>;

class BuyCommand : public testing::Test {
 protected:
  ToolRun buy(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--config", shop_.path(), "--json", "buy"});
    return runTool(arguments);
  }

  TemporaryFile shop_{shopConfiguration()};
};

TEST_F(BuyCommand, ShowsTheEventsAndThenTheResult) {
  const auto run = buy({"gems"});

  EXPECT_EQ(
      run.lines(),
      (Lines{R"({"event":"purchase.begin","productIdentifier":"gems"})",
             R"({"event":"purchase.success","productIdentifier":"gems"})",
             R"({"result":"success","productIdentifier":"gems","quantity":1,"identifier":"1",)"
             R"("transactionIdentifier":"2000000001","needsFinishTransaction":false})"}));
  EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(BuyCommand, BuysTheQuantityThatIsAskedFor) {
  EXPECT_EQ(buy({"gems", "--quantity", "3"}).json().back()["quantity"], 3);
}

TEST_F(BuyCommand, LeavesTheTransactionUnfinishedWhenTold) {
  EXPECT_EQ(buy({"gems", "--no-finish"}).json().back()["needsFinishTransaction"], true);
}

TEST_F(BuyCommand, ACancelledPurchaseIsACancelEventAndAnErrorResult) {
  const auto run = buy({"gems", "--cancel"});

  EXPECT_EQ(run.lines(),
            (Lines{R"({"event":"purchase.begin","productIdentifier":"gems"})",
                   R"({"event":"purchase.cancel","productIdentifier":"gems"})",
                   R"({"result":"error","message":"If you’ve purchased a Premium Subscription, )"
                   R"(you may need to restore your subscription to continually enjoy the )"
                   R"(Premium features"})"}));
  EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(BuyCommand, AFailedPurchaseIsAFailedEventAndAnErrorResult) {
  const auto run = buy({"gems", "--fail", "5"});

  EXPECT_EQ(run.lines(),
            (Lines{R"({"event":"purchase.begin","productIdentifier":"gems"})",
                   R"({"event":"purchase.failed","productIdentifier":"gems"})",
                   R"({"result":"error","message":"The product is not available in the )"
                   R"(current storefront"})"}));
  EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(BuyCommand, ACodeWithoutASentenceShowsThePlatformsDescription) {
  EXPECT_EQ(buy({"gems", "--fail", "99"}).json().back()["message"],
            "The operation couldn’t be completed. (SKErrorDomain error 99.)");
}

TEST_F(BuyCommand, ACodeThatNoErrorHasIsWrongUsage) {
  const auto run = buy({"gems", "--fail", "-1"});

  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_THAT(run.errors, testing::HasSubstr("an error code is 0 or more, not -1"));
}

TEST_F(BuyCommand, AnUnknownProductHasItsResultBeforeTheEvent) {
  const auto run = buy({"nope"});

  EXPECT_EQ(run.lines(),
            (Lines{R"({"result":"error","message":"The purchase identifier was invalid"})",
                   R"({"event":"purchase.failed","productIdentifier":"nope"})"}));
  EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(BuyCommand, AQuantityThatTheStoreDoesNotSellFails) {
  for (const char* quantity : {"0", "-1", "11"}) {
    const auto run = buy({"gems", "--quantity", quantity});
    EXPECT_EQ(run.json().back()["message"], "The purchase identifier was invalid") << quantity;
    EXPECT_EQ(run.exitStatus, 1) << quantity;
  }
}

TEST_F(BuyCommand, AQuantityThatIsNoWholeNumberIsWrongUsage) {
  for (const std::string quantity : {"", "0x3", "1e1", "2.0", " 3"}) {
    const auto run = buy({"gems", "--quantity", quantity});
    EXPECT_EQ(run.exitStatus, 2);
    EXPECT_THAT(run.errors, testing::StartsWith("tqstore: --quantity: \"" + quantity +
                                                "\" is no whole number\n"));
  }
  EXPECT_THAT(buy({"gems", "--quantity", "99999999999999999999"}).errors,
              testing::HasSubstr("\"99999999999999999999\" is out of range\n"));
}

TEST_F(BuyCommand, TheLibrarysOwnLinesGoToStandardErrorBesideJson) {
  EXPECT_EQ(buy({"gems"}).errors,
            "TQStoreKit.completeTransactions() should be called once when the app launches.\n");
}

TEST_F(BuyCommand, APurchaseThatSomebodyHasToApproveEndsAsDeferred) {
  const auto run = buy({"gems", "--quantity", "2", "--ask-to-buy"});

  EXPECT_EQ(run.lines(), (Lines{R"({"event":"purchase.begin","productIdentifier":"gems"})",
                                R"({"result":"deferred","productIdentifier":"gems","quantity":2,)"
                                R"("identifier":"1","transactionIdentifier":null})"}));
  EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(BuyCommand, TellsAPersonWhichTransactionIsToBeApproved) {
  const auto run = runTool({"--config", shop_.path(), "buy", "gems", "--ask-to-buy"});

  EXPECT_NE(run.output.find("\nresult  deferred  1 x gems, to be approved or declined as "
                            "transaction 1\n"),
            std::string::npos)
      << run.output;
}

TEST_F(BuyCommand, TellsAPersonWhatHappened) {
  const auto run = runTool({"--config", shop_.path(), "buy", "gems"});

  EXPECT_EQ(run.lines(), (Lines{"event   purchase.begin  gems", "event   purchase.success  gems",
                                "result  bought  1 x gems, transaction 2000000001, finished"}));
}

using BuyOnALedger = tests::ToolOnLedger;

TEST_F(BuyOnALedger, LeavesTheBacklogAsItIs) {
  run({"buy", "gems", "--no-finish"});
  const auto before = lines({"transactions"});

  run({"buy", "gems"});

  EXPECT_EQ(lines({"transactions"}), before);
}

TEST_F(BuyOnALedger, AnOlderDeferredPurchaseOfTheProductIsNotItsResult) {
  run({"buy", "gems", "--ask-to-buy"});

  EXPECT_EQ(run({"buy", "gems"}).json().back()["result"], "success");
  EXPECT_EQ(run({"buy", "gems", "--ask-to-buy"}).json().back()["identifier"], "3");
}

TEST_F(BuyOnALedger, LeavesWhatIsTheApplicationsToTheApplicationAsProductsDoes) {
  run({"buy", "levels"});
  run({"refund", "1"});
  run({"storefront-buy", "levels"});

  EXPECT_EQ(run({"buy", "gems"}).lines().size(), 3U);
  EXPECT_EQ(run({"products", "gems"}).lines().size(), 1U);

  EXPECT_THAT(
      lines({"launch"}),
      testing::ElementsAre(
          R"({"event":"revoked","productIdentifier":"levels"})",
          R"({"event":"storePurchase","productIdentifier":"levels","accepted":true})",
          std::string(tests::TransactionLine{"2", "levels", "purchased", false, "", true})));
}

TEST_F(BuyOnALedger, AFinishThatTheLedgerRefusesIsSaidAndEndsWithOne) {
  run({"transactions"});
  tests::refuseChanges(ledger_, "new.finished = 1");

  const auto answer = run({"buy", "gems"});

  EXPECT_EQ(answer.exitStatus, 1);
  EXPECT_EQ(answer.json().back()["result"], "success");
  EXPECT_EQ(answer.json().back()["needsFinishTransaction"], true);
  EXPECT_THAT(answer.errors, testing::HasSubstr("tqstore: the finish of transaction 1 could not be "
                                                "written down: it is still to be finished\n"));
  EXPECT_THAT(runForPerson({"buy", "gems"}).output, testing::HasSubstr(", still to be finished\n"));
}

// Takes as long as the tool waits: eight seconds.
TEST_F(BuyOnALedger, AnOutcomeThatCannotBeWrittenDownEndsWithOne) {
  run({"transactions"});
  tests::refuseChanges(ledger_, "new.state = 1");

  const auto answer = run({"buy", "gems"});

  EXPECT_EQ(answer.exitStatus, 1);
  EXPECT_EQ(answer.json().size(), 1U);  // it has begun
  EXPECT_THAT(
      answer.errors,
      testing::EndsWith("tqstore: the outcome of the purchase could not be written down; the "
                        "next application that starts on the ledger carries the purchase "
                        "on\n"));
  tests::changeLedger(ledger_, "DROP TRIGGER refusal");
  EXPECT_THAT(lines({"launch"}),
              testing::ElementsAre(std::string(tests::TransactionLine{"1", "gems", "purchased"})));
}

}  // namespace
