#include <csignal>

#include "tests/tools/RunningTool.hpp"
#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::TransactionLine;

class ControlCommands : public tests::ToolOnLedger {
 protected:
  void askToBuy(const std::string& product) const { run({"buy", product, "--ask-to-buy"}); }
  void interruptPurchase(const std::string& product) const {
    run({"settings", "interruptedPurchasesEnabled", "true"});
    run({"buy", product});
    run({"settings", "--reset"});
  }
};

const std::string kUnknown = "there is no transaction ";

std::string declinedLevels(bool finished) {
  return R"({"identifier":"1","transactionIdentifier":null,"productIdentifier":"levels",)"
         R"("quantity":1,"state":"failed","date":null,"originalTransactionIdentifier":null,)"
         R"("applicationUsername":"","error":{"domain":"SKErrorDomain","code":2,"message":)"
         R"~("The operation couldn’t be completed. (SKErrorDomain error 2.)"},"finished":)~" +
         std::string(finished ? "true}" : "false}");
}

TEST_F(ControlCommands, ApproveMakesADeferredPurchasePurchased) {
  askToBuy("levels");
  const std::string purchased = TransactionLine{"1", "levels", "purchased"};

  EXPECT_THAT(lines({"approve", "1"}), ElementsAre(purchased));

  EXPECT_THAT(lines({"launch"}), ElementsAre(purchased));
}

TEST_F(ControlCommands, ApproveLeavesTheBacklogToTheApplication) {
  run({"buy", "gems", "--no-finish"});
  run({"storefront-buy", "gems"});
  const auto before = lines({"transactions"});
  askToBuy("levels");

  run({"approve", "3"});
  run({"finish", "3"});

  EXPECT_THAT(before, SizeIs(2));
  EXPECT_EQ(transaction("1"), before[0]);
}

TEST_F(ControlCommands, ApproveLeavesAPurchaseBegunInTheStoreUnasked) {
  run({"storefront-buy", "gems"});
  const auto before = transaction("1");
  run({"settings", "askToBuyEnabled", "true"});

  EXPECT_EQ(run({"approve", "1"}).exitStatus, 1);

  EXPECT_EQ(transaction("1"), before);
}

TEST_F(ControlCommands, DeclineMakesADeferredPurchaseFail) {
  askToBuy("levels");

  EXPECT_THAT(lines({"decline", "1"}), ElementsAre(declinedLevels(false)));

  EXPECT_THAT(lines({"launch"}), ElementsAre(declinedLevels(true)));
  EXPECT_EQ(transaction("1"), declinedLevels(true));
}

TEST_F(ControlCommands, WhatWaitsForNoApprovalIsNeitherApprovedNorDeclined) {
  run({"buy", "gems"});
  const auto before = transaction("1");

  expectRefused({"approve", "1"}, "Transaction 1 waits for no approval.");
  expectRefused({"decline", "2000000001"}, "Transaction 1 waits for no approval.");

  EXPECT_EQ(transaction("1"), before);
}

TEST_F(ControlCommands, RefundTakesBackWhatWasPurchased) {
  run({"buy", "levels"});

  EXPECT_THAT(lines({"refund", "2000000001"}),
              ElementsAre(std::string(TransactionLine{"1", "levels", "purchased", true})));

  EXPECT_THAT(lines({"restore"}), ElementsAre(R"({"result":"success","restored":0})"));
}

TEST_F(ControlCommands, NothingIsRefundedTwice) {
  run({"buy", "levels"});
  run({"refund", "1"});

  expectRefused({"refund", "1"}, "Transaction 1 was refunded before.");
}

TEST_F(ControlCommands, WhatWasNotPaidIsNotRefunded) {
  askToBuy("levels");

  expectRefused({"refund", "1"}, "Transaction 1 was not paid.");
}

TEST_F(ControlCommands, ResolveShowsTheTransactionThatPays) {
  interruptPurchase("levels");
  const std::string paid = TransactionLine{"2", "levels", "purchased"};

  EXPECT_THAT(lines({"resolve", "1"}), ElementsAre(paid));

  EXPECT_THAT(lines({"launch"}), ElementsAre(paid));
}

TEST_F(ControlCommands, WhatWasNotInterruptedIsNotResolved) {
  run({"buy", "levels"});

  expectRefused({"resolve", "1"}, "Transaction 1 has no issue.");
}

TEST_F(ControlCommands, AnUnknownTransactionIsRefused) {
  askToBuy("levels");
  for (const char* command : {"approve", "decline", "refund", "resolve"}) {
    for (const char* unknown : {"2", "levels", "", "2000000001"}) {
      expectRefused({command, unknown}, kUnknown + unknown);
    }
  }
}

TEST_F(ControlCommands, APersonSeesATable) {
  askToBuy("levels");

  const auto table = runForPerson({"approve", "1"}).lines();

  ASSERT_EQ(table.size(), 2U);
  EXPECT_THAT(table[1], testing::MatchesRegex("1  levels          1  purchased  2000000001 .*"));
}

TEST_F(ControlCommands, AnApplicationThatWaitsReceivesWhatIsApproved) {
  run({"settings", "askToBuyEnabled", "true"});
  RunningTool application(WAITING_APPLICATION, {shop_.path(), ledger_, "levels"});
  ASSERT_EQ(application.line(), "deferred");

  run({"approve", "1"});

  EXPECT_EQ(application.line(), "bought levels");
}

TEST_F(ControlCommands, AnApplicationThatWaitsHearsWhatIsDeclined) {
  run({"settings", "askToBuyEnabled", "true"});
  RunningTool application(WAITING_APPLICATION, {shop_.path(), ledger_, "levels"});
  ASSERT_EQ(application.line(), "deferred");

  run({"decline", "1"});

  EXPECT_EQ(application.line(), "failed");
}

TEST_F(ControlCommands, AnApplicationThatRunsIsToldOfARefund) {
  RunningTool application(WAITING_APPLICATION, {shop_.path(), ledger_, "levels"});
  ASSERT_EQ(application.line(), "bought levels");

  run({"refund", "1"});

  EXPECT_EQ(application.line(), "lost levels");
}

}  // namespace
