// Purchases outside the application, and transactions that are taken out of the books.

#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::books;
using tests::outcome;
using tests::SubscriptionShop;
using tests::turn;
using tests::turnUntilIdle;

using OutsidePurchase = tests::ObservedShop<SubscriptionShop>;

TEST_F(OutsidePurchase, IsPurchasedWithoutHavingBeenPurchasing) {
  EXPECT_EQ(outcome(shop.session.buyProduct("gems")), tests::kDone);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(OutsidePurchase, HasIdentifierDateAndPayment) {
  (void)shop.session.buyProduct("gems");
  (void)heard();
  const auto& gems = *observer.seen.at(0);
  EXPECT_EQ(gems.transactionIdentifier(), "101");
  EXPECT_EQ(gems.transactionDate(), Foundation::Date::sinceEpoch(tests::ManualClock::kStart));
  EXPECT_EQ(gems.payment()->quantity(), 1);
  EXPECT_EQ(gems.originalTransaction(), nullptr);
}

TEST_F(OutsidePurchase, SucceedsWhateverPurchasesAreMadeToDo) {
  shop.session.setAskToBuyEnabled(true);
  shop.session.setInterruptedPurchasesEnabled(true);
  shop.session.setFailTransactionsEnabled(true);
  shop.session.setCanMakePayments(false);
  shop.session.failPurchases(SKError::Code::unknown, kAlways);
  EXPECT_EQ(outcome(shop.session.buyProduct("gems")), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(OutsidePurchase, WhileNobodyObservesIsPartOfTheNextBacklog) {
  goAway();
  (void)shop.session.buyProduct("gems");
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: gems purchased"));
}

TEST_F(OutsidePurchase, ThatIsFinishedCanBeRestored) {
  (void)shop.session.buyProduct("crown");
  (void)heard();
  finish(observer.seen.at(0));
  EXPECT_THAT(heardOfRestore(), ElementsAre("updated: crown restored", "restore finished"));
}

TEST_F(OutsidePurchase, OfASubscriptionBeginsItsFirstPeriod) {
  (void)shop.session.buyProduct("monthly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
}

TEST_F(OutsidePurchase, OfAnUnknownProductIsAnError) {
  EXPECT_EQ(outcome(shop.session.buyProduct("nothing")), tests::kInvalidProduct);
  EXPECT_EQ(outcome(shop.session.buyProduct("")), tests::kInvalidProduct);
  EXPECT_THAT(heard(), IsEmpty());
}

using TransactionRemoval = tests::ObservedShop<SubscriptionShop>;

TEST_F(TransactionRemoval, OfAllIsHeardAsARemovalOfWhatWasInTheQueue) {
  shop.own("crown");
  shop.buy("gems");
  shop.session.cancelPurchases();
  shop.buy("gems");
  EXPECT_EQ(outcome(shop.session.clearTransactions()), tests::kDone);
  EXPECT_THAT(books(shop.session), IsEmpty());
  EXPECT_THAT(heard(), ElementsAre("removed: gems purchased, gems failed"));
  EXPECT_THAT(queue().transactions(), IsEmpty());
}

TEST_F(TransactionRemoval, OfAllLeavesNothingToRestoreOrToComeBack) {
  shop.own("crown");
  shop.buy("gems");
  (void)shop.session.clearTransactions();
  EXPECT_EQ(heardOfRestore().back(), "restore finished");
  EXPECT_EQ(observer.seen.size(), 0U);
  shop.session.relaunch();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(TransactionRemoval, OfAllEndsSubscriptions) {
  shop.own("monthly");
  (void)shop.session.clearTransactions();
  shop.wait(10 * tests::kFastMonth);
  EXPECT_THAT(books(shop.session), IsEmpty());
}

TEST_F(TransactionRemoval, OfAllTakesTheNewsOfARefundAway) {
  shop.own("crown");
  (void)shop.session.refundTransaction(1);
  (void)shop.session.clearTransactions();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(TransactionRemoval, NeverLetsANumberBeGivenTwice) {
  shop.own("crown");
  (void)shop.session.clearTransactions();
  shop.own("crown");
  EXPECT_THAT(books(shop.session), ElementsAre("2 crown purchased finished"));
}

TEST_F(TransactionRemoval, OfAllWithNothingThereIsDone) {
  EXPECT_EQ(outcome(shop.session.clearTransactions()), tests::kDone);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(TransactionRemoval, OfOneLeavesTheOthers) {
  shop.buy("gems");
  shop.buy("gems");
  EXPECT_EQ(outcome(shop.session.deleteTransaction(1)), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("removed: gems purchased"));
  EXPECT_THAT(books(shop.session), ElementsAre("2 gems purchased"));
}

TEST_F(TransactionRemoval, OfAPurchaseTakesItsRestoredCopies) {
  shop.own("crown");
  (void)heardOfRestore();
  (void)heardOfRestore();
  (void)shop.session.deleteTransaction(1);
  EXPECT_THAT(heard(), ElementsAre("removed: crown restored, crown restored"));
  EXPECT_THAT(books(shop.session), IsEmpty());
}

TEST_F(TransactionRemoval, OfARestoredCopyLeavesThePurchase) {
  shop.own("crown");
  (void)heardOfRestore();
  (void)shop.session.deleteTransaction(2);
  EXPECT_THAT(books(shop.session), ElementsAre("1 crown purchased finished"));
}

TEST_F(TransactionRemoval, OfAFirstPeriodTakesItsRenewals) {
  shop.own("monthly");
  shop.own("crown");
  shop.wait(2 * tests::kFastMonth);
  (void)shop.session.deleteTransaction(1);
  EXPECT_THAT(heard(), ElementsAre("removed: monthly purchased, monthly purchased"));
  EXPECT_THAT(books(shop.session), ElementsAre("2 crown purchased finished"));
  shop.wait(10 * tests::kFastMonth);
  EXPECT_THAT(books(shop.session), ElementsAre("2 crown purchased finished"));
}

TEST_F(TransactionRemoval, OfWhatIsNotThereIsAnError) {
  shop.own("crown");
  (void)shop.session.deleteTransaction(1);
  EXPECT_EQ(outcome(shop.session.deleteTransaction(1)), tests::kNoTransaction);
  EXPECT_EQ(outcome(shop.session.deleteTransaction(0)), tests::kNoTransaction);
}

TEST_F(TransactionRemoval, OfAPurchaseUnderWayEndsItWithoutAnOutcome) {
  shop.add("gems");
  turn();
  (void)shop.session.deleteTransaction(1);
  EXPECT_THAT(heard(), ElementsAre("removed: gems purchasing"));
  EXPECT_THAT(books(shop.session), IsEmpty());
  shop.session.relaunch();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(TransactionRemoval, OfADeferredOneLeavesNothingToApprove) {
  shop.session.setAskToBuyEnabled(true);
  shop.buy("gems");
  (void)shop.session.deleteTransaction(1);
  EXPECT_EQ(outcome(shop.session.approveAskToBuyTransaction(1)), tests::kNoTransaction);
  EXPECT_THAT(heard(), ElementsAre("removed: gems deferred"));
}

TEST_F(TransactionRemoval, OfANonConsumableLetsItBeOwnedAfresh) {
  shop.own("crown");
  (void)shop.session.deleteTransaction(1);
  shop.own("crown");
  EXPECT_THAT(heardOfRestore(), ElementsAre("updated: crown restored", "restore finished"));
  EXPECT_EQ(shop.session.allTransactions().back().originalTransactionIdentifier, 2);
}

TEST_F(TransactionRemoval, FinishingWhatWasRemovedIsHarmless) {
  const auto gems = shop.buy("gems");
  (void)shop.session.deleteTransaction(1);
  queue().finishTransaction(gems);
  EXPECT_THAT(heard(), ElementsAre("removed: gems purchased"));
  EXPECT_THAT(books(shop.session), IsEmpty());
}

}  // namespace
}  // namespace StoreKit
