#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::books;
using tests::OpenShop;
using tests::outcome;
using tests::turn;
using tests::turnUntilIdle;

// A shop where somebody has to approve, and one purchase that waits for it: "gems", number 1.
class AskToBuy : public tests::ObservedShop<OpenShop> {
 protected:
  SKPaymentTransactionPtr gems;

  AskToBuy() {
    shop.session.setAskToBuyEnabled(true);
    gems = shop.buy("gems", "ann");
  }
};

TEST_F(AskToBuy, APurchaseIsPurchasingAndThenDeferred) {
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchasing", "updated: gems deferred"));
}

TEST_F(AskToBuy, ADeferredOneHasOnlyItsPayment) {
  EXPECT_EQ(gems->payment()->applicationUsername(), "ann");
  EXPECT_FALSE(gems->transactionIdentifier());
  EXPECT_FALSE(gems->transactionDate());
  EXPECT_FALSE(gems->error());
  EXPECT_EQ(gems->originalTransaction(), nullptr);
}

TEST_F(AskToBuy, TheBooksSayThatItWaitsForConfirmation) {
  EXPECT_TRUE(shop.session.allTransactions().at(0).pendingAskToBuyConfirmation);
  EXPECT_EQ(outcome(shop.session.approveAskToBuyTransaction(1)), tests::kDone);
  EXPECT_FALSE(shop.session.allTransactions().at(0).pendingAskToBuyConfirmation);
}

TEST_F(AskToBuy, AnApprovedOneIsDeliveredAsPurchasedInALaterTurn) {
  observer.forget();
  EXPECT_EQ(outcome(shop.session.approveAskToBuyTransaction(1)), tests::kDone);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(AskToBuy, AnApprovedOneIsCommittedBeforeTheCallReturns) {
  (void)shop.session.approveAskToBuyTransaction(1);
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchased"));
}

TEST_F(AskToBuy, AnApprovedOneIsTheSameTransactionWithIdentifierAndDateOfTheApproval) {
  (void)shop.session.approveAskToBuyTransaction(1);
  (void)turnUntilIdle();
  EXPECT_EQ(gems->transactionState(), SKPaymentTransactionState::purchased);
  EXPECT_EQ(gems->transactionIdentifier(), "101");
  EXPECT_EQ(gems->transactionDate(), Foundation::Date::sinceEpoch(1002));
  EXPECT_EQ(gems->payment()->applicationUsername(), "ann");
}

TEST_F(AskToBuy, ADeclinedOneFailsAsCancelledAndStaysUntilItIsFinished) {
  EXPECT_EQ(outcome(shop.session.declineAskToBuyTransaction(1)), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems failed"));
  ASSERT_TRUE(gems->error());
  EXPECT_EQ(gems->error()->domain(), "SKErrorDomain");
  EXPECT_EQ(gems->error()->code(), 2);
  EXPECT_FALSE(gems->transactionIdentifier());
  EXPECT_FALSE(gems->transactionDate());
  EXPECT_EQ(queue().transactions().size(), 1U);
}

TEST_F(AskToBuy, IsSettledOnce) {
  (void)shop.session.approveAskToBuyTransaction(1);
  EXPECT_EQ(outcome(shop.session.approveAskToBuyTransaction(1)), tests::kInvalidAction);
  EXPECT_EQ(outcome(shop.session.declineAskToBuyTransaction(1)), tests::kInvalidAction);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(AskToBuy, WhatWasBoughtBeforeIsNotDeferred) {
  shop.session.setAskToBuyEnabled(false);
  shop.buy("coins");
  EXPECT_EQ(outcome(shop.session.approveAskToBuyTransaction(2)), tests::kInvalidAction);
}

TEST_F(AskToBuy, ADeferredOneComesBackAtEveryRelaunch) {
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("updated: gems deferred"));
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("updated: gems deferred"));
}

TEST_F(AskToBuy, AnApprovalAfterARelaunchIsDelivered) {
  shop.session.relaunch();
  (void)heard();
  (void)shop.session.approveAskToBuyTransaction(1);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(AskToBuy, AnApprovalWhileNobodyObservesIsPartOfTheNextBacklog) {
  goAway();
  (void)shop.session.approveAskToBuyTransaction(1);
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: gems purchased"));
}

TEST_F(AskToBuy, ADeclineWhileNobodyObservesIsPartOfTheNextBacklog) {
  goAway();
  (void)shop.session.declineAskToBuyTransaction(1);
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: gems failed"));
}

TEST_F(AskToBuy, ADeferredOneThatIsFinishedLeavesTheQueueAndStaysInTheLedger) {
  observer.forget();
  finish(gems);
  EXPECT_THAT(observer.journal(), ElementsAre("removed: gems deferred"));
  EXPECT_THAT(queue().transactions(), IsEmpty());
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems deferred finished"));
}

TEST_F(AskToBuy, ADeferredOneThatWasFinishedDoesNotComeBack) {
  finish(gems);
  shop.session.relaunch();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(AskToBuy, AnApprovalAfterTheFinishIsStillDelivered) {
  finish(gems);
  (void)shop.session.approveAskToBuyTransaction(1);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchased"));
}

TEST_F(AskToBuy, AnApprovalAfterTheFinishComesBackUntilItIsFinishedAgain) {
  finish(gems);
  (void)shop.session.approveAskToBuyTransaction(1);
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
  finish(queue().transactions().at(0));
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchased finished"));
}

TEST_F(AskToBuy, ADeclineAfterTheFinishIsStillDelivered) {
  finish(gems);
  (void)shop.session.declineAskToBuyTransaction(1);
  EXPECT_THAT(heard(), ElementsAre("updated: gems failed"));
}

TEST_F(AskToBuy, AFinishThatWasMeantForTheDeferredOneLeavesThePurchasedOne) {
  (void)shop.session.approveAskToBuyTransaction(1);
  queue().finishTransaction(gems);  // still deferred for all that the application knows
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchased"));
}

TEST_F(AskToBuy, AnApprovalJustAfterTheFinishWins) {
  queue().finishTransaction(gems);
  (void)shop.session.approveAskToBuyTransaction(1);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchased"));
}

TEST_F(AskToBuy, TheSameProductAgainIsASecondTransaction) {
  shop.buy("gems");
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems deferred", "2 gems deferred"));
}

TEST_F(AskToBuy, OfTwoRequestsForOneProductEachIsSettledByItself) {
  shop.buy("gems");
  (void)shop.session.declineAskToBuyTransaction(1);
  (void)shop.session.approveAskToBuyTransaction(2);
  EXPECT_THAT(heard(), ElementsAre("updated: gems failed, gems purchased"));
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems failed", "2 gems purchased"));
}

TEST_F(AskToBuy, SwitchedOffBuysAtOnceAndLeavesWhatWaits) {
  shop.session.setAskToBuyEnabled(false);
  shop.buy("coins");
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems deferred", "2 coins purchased"));
}

TEST_F(AskToBuy, SwitchedOnAfterThePaymentWasAddedStillDefersIt) {
  shop.session.setAskToBuyEnabled(false);
  shop.add("coins");
  turn();
  shop.session.setAskToBuyEnabled(true);
  (void)turnUntilIdle();
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems deferred", "2 coins deferred"));
}

TEST_F(AskToBuy, OnePaymentMayAskForIt) {
  shop.session.setAskToBuyEnabled(false);
  queue().addPayment(SKPayment({.productIdentifier = "coins", .simulatesAskToBuyInSandbox = true}));
  queue().addPayment(SKPayment({.productIdentifier = "crown"}));
  (void)turnUntilIdle();
  EXPECT_THAT(books(shop.session),
              ElementsAre("1 gems deferred", "2 coins deferred", "3 crown purchased"));
  EXPECT_EQ(outcome(shop.session.approveAskToBuyTransaction(2)), tests::kDone);
}

TEST_F(AskToBuy, APaymentThatCannotBeSoldFailsAtOnce) {
  shop.buy("nothing");
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems deferred", "2 nothing failed"));
}

TEST_F(AskToBuy, WhatIsNotSoldAnyMoreCannotBeApprovedAndStaysDeferred) {
  const tests::TemporaryFolder folder;
  const auto ledger = [&] { return SqliteLedger::open(folder.file("shop.ledger")).ledger; };
  StoreSession before(tests::shop(), {}, ledger());
  before.setAskToBuyEnabled(true);
  shop.buy("gems");
  auto poorer = tests::shop();
  poorer.products.erase(poorer.products.begin());
  StoreSession after(poorer, {}, ledger());
  EXPECT_EQ(outcome(after.approveAskToBuyTransaction(1)), tests::kInvalidProduct);
  EXPECT_THAT(books(after), ElementsAre("1 gems deferred"));
}

TEST_F(AskToBuy, NobodyApprovesWhatDoesNotExist) {
  EXPECT_EQ(outcome(shop.session.approveAskToBuyTransaction(77)), tests::kNoTransaction);
  EXPECT_EQ(outcome(shop.session.declineAskToBuyTransaction(0)), tests::kNoTransaction);
}

}  // namespace
}  // namespace StoreKit
