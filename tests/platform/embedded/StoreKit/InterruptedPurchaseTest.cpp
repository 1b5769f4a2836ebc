#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using tests::books;
using tests::OpenShop;
using tests::outcome;
using tests::turnUntilIdle;

// A shop where purchases are interrupted, and one that was: three "gems" of ann, number 1.
class InterruptedPurchase : public tests::ObservedShop<OpenShop> {
 protected:
  SKPaymentTransactionPtr gems;

  InterruptedPurchase() {
    shop.session.setInterruptedPurchasesEnabled(true);
    shop.add("gems", 3, "ann");
    (void)turnUntilIdle();
    gems = queue().transactions().at(0);
  }

  std::string resolve(std::int64_t identifier = 1) {
    return outcome(shop.session.resolveIssueForTransaction(identifier));
  }
};

TEST_F(InterruptedPurchase, IsPurchasingAndThenFailsAsUnknown) {
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchasing", "updated: gems failed"));
  ASSERT_TRUE(gems->error());
  EXPECT_EQ(gems->error()->domain(), "SKErrorDomain");
  EXPECT_EQ(gems->error()->code(), 0);
}

TEST_F(InterruptedPurchase, HasAnIssueInTheBooks) {
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems failed issue"));
}

TEST_F(InterruptedPurchase, EveryOneFailsUntilTheSwitchIsOff) {
  shop.buy("coins");
  shop.buy("coins");
  shop.session.setInterruptedPurchasesEnabled(false);
  shop.buy("coins");
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems failed issue", "2 coins failed issue",
                                               "3 coins failed issue", "4 coins purchased"));
}

TEST_F(InterruptedPurchase, ResolvedBringsANewPurchasedTransaction) {
  EXPECT_EQ(resolve(), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems failed", "2 gems purchased"));
}

TEST_F(InterruptedPurchase, ResolvedHasThePaymentAndItsOwnIdentifierAndDate) {
  (void)resolve();
  (void)heard();
  const auto& purchased = *observer.seen.at(0);
  EXPECT_FALSE(purchased.isEqual(*gems));
  EXPECT_EQ(purchased.payment()->quantity(), 3);
  EXPECT_EQ(purchased.payment()->applicationUsername(), "ann");
  EXPECT_EQ(purchased.transactionIdentifier(), "102");
  EXPECT_EQ(purchased.transactionDate(), Foundation::Date::sinceEpoch(1002));
  EXPECT_FALSE(purchased.error());
}

TEST_F(InterruptedPurchase, ResolvedLeavesTheFailedOneToBeFinished) {
  (void)resolve();
  (void)heard();
  EXPECT_EQ(tests::describe(queue().transactions()), "gems failed, gems purchased");
  queue().finishTransaction(gems);
  EXPECT_THAT(heard(), ElementsAre("removed: gems failed"));
}

TEST_F(InterruptedPurchase, CanBeResolvedWhileOthersAreStillInterrupted) {
  EXPECT_EQ(resolve(), tests::kDone);
  shop.buy("coins");
  EXPECT_THAT(books(shop.session),
              ElementsAre("1 gems failed", "2 gems purchased", "3 coins failed issue"));
}

TEST_F(InterruptedPurchase, CanBeResolvedAfterItWasFinished) {
  finish(gems);
  EXPECT_EQ(resolve(), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(InterruptedPurchase, CanBeResolvedAfterARelaunch) {
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("updated: gems failed"));
  EXPECT_EQ(resolve(), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(InterruptedPurchase, IsResolvedOnce) {
  (void)resolve();
  EXPECT_EQ(resolve(), tests::kInvalidAction);
  EXPECT_EQ(books(shop.session).size(), 2U);
}

TEST_F(InterruptedPurchase, WhatFailedForAnotherReasonCannotBeResolved) {
  shop.session.cancelPurchases();
  shop.buy("coins");
  EXPECT_EQ(resolve(2), tests::kInvalidAction);
  EXPECT_EQ(resolve(77), tests::kNoTransaction);
  EXPECT_EQ(books(shop.session).size(), 2U);
}

TEST_F(InterruptedPurchase, WhatIsNotSoldAnyMoreCannotBeResolved) {
  const tests::TemporaryFolder folder;
  const auto ledger = [&] { return SqliteLedger::open(folder.file("shop.ledger")).ledger; };
  StoreSession before(tests::shop(), {}, ledger());
  before.setInterruptedPurchasesEnabled(true);
  shop.buy("gems");
  auto poorer = tests::shop();
  poorer.products.erase(poorer.products.begin());
  StoreSession after(poorer, {}, ledger());
  EXPECT_EQ(outcome(after.resolveIssueForTransaction(1)), tests::kInvalidProduct);
  EXPECT_THAT(books(after), ElementsAre("1 gems failed issue"));
}

TEST_F(InterruptedPurchase, FailsAnywayWithAnErrorThatWasOrdered) {
  shop.session.failPurchases(SKError::Code::clientInvalid);
  shop.buy("coins");
  EXPECT_EQ(queue().transactions().back()->error()->code(), 1);
  EXPECT_FALSE(shop.session.allTransactions().at(1).hasPurchaseIssue);
}

TEST_F(InterruptedPurchase, ResolvedWhileNobodyObservesIsPartOfTheNextBacklog) {
  goAway();
  (void)resolve();
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: gems failed, gems purchased"));
}

TEST_F(InterruptedPurchase, GoesBeforeAskToBuy) {
  shop.session.setAskToBuyEnabled(true);
  shop.buy("coins");
  EXPECT_EQ(books(shop.session).back(), "2 coins failed issue");
}

}  // namespace
}  // namespace StoreKit
