#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/StoreKit/SKError.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turn;
using tests::turnUntilIdle;

class LedgerRefusal : public testing::Test {
 protected:
  OpenShop shop;
  JournalingObserver observer;

  LedgerRefusal() {
    observer.observe();
    (void)turnUntilIdle();
  }

  void refuse() {
    shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
  }
  void accept() { shop.ledger->refusal.reset(); }

  // What standard error says while the turns run out.
  static std::string saidUntilIdle() {
    tests::CapturedError error;
    (void)turnUntilIdle();
    return error.text();
  }
};

// The ledger's own codes mean something else to an application.
TEST_F(LedgerRefusal, PurchaseThatCannotBeginFailsWithTheStoresErrorOverTheLedgers) {
  refuse();
  shop.add("gems");
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems failed"));
  const auto error = observer.seen.at(0)->error();
  ASSERT_TRUE(error);
  EXPECT_EQ(error->domain(), SKErrorDomain);
  EXPECT_EQ(error->code(), 0);
  EXPECT_EQ(error->localizedDescription(), "No space left.");
  ASSERT_TRUE(error->underlyingError());
  EXPECT_EQ(error->underlyingError()->domain(), "disk");
  EXPECT_EQ(error->underlyingError()->code(), 28);
}

TEST_F(LedgerRefusal, PurchaseThatCouldNotBeginIsGoneAfterARelaunch) {
  refuse();
  shop.add("gems");
  (void)turnUntilIdle();
  accept();
  shop.session.relaunch();
  (void)turnUntilIdle();
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
}

TEST_F(LedgerRefusal, PurchasesThatCouldNotBeginAreInTheirOrder) {
  refuse();
  shop.add("gems");
  shop.add("coins");
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems failed, coins failed");
}

TEST_F(LedgerRefusal, PurchaseThatCouldNotBeginCanBeFinished) {
  refuse();
  const auto transaction = shop.buy("gems");
  accept();
  OpenShop::queue().finishTransaction(transaction);
  (void)turnUntilIdle();
  EXPECT_EQ(observer.journal().back(), "removed: gems failed");
}

TEST_F(LedgerRefusal, OutcomeThatCannotBeWrittenIsNotReported) {
  shop.add("gems");
  turn();
  refuse();
  EXPECT_EQ(saidUntilIdle(),
            "The ledger refused a change: No space left. "
            "The purchases are carried on later.\n");
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchasing"));
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems purchasing");
}

TEST_F(LedgerRefusal, PurchaseWithoutOutcomeIsCarriedOnAfterARelaunch) {
  shop.add("gems");
  turn();
  refuse();
  (void)saidUntilIdle();
  accept();
  shop.session.relaunch();
  observer.forget();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchasing", "updated: gems purchased"));
}

TEST(LedgerRefusalForAWhile, PurchaseWithoutOutcomeIsTriedAgainSomeSecondsLater) {
  tests::SubscriptionShop shop;
  JournalingObserver observer;
  observer.observe();
  shop.add("gems");
  turn();
  shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
  tests::CapturedError error;
  (void)turnUntilIdle();
  shop.ledger->refusal.reset();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchasing"));
  shop.wait(5);
  EXPECT_EQ(observer.journal().back(), "updated: gems purchased");
}

TEST(LedgerRefusalForAWhile, PurchasesWithoutOutcomeAreTriedAgainTogether) {
  tests::SubscriptionShop shop;
  JournalingObserver observer;
  observer.observe();
  tests::CapturedError before;
  for (const auto* product : {"gems", "coins"}) {
    shop.ledger->refusal.reset();
    shop.add(product);
    turn();
    shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
    (void)turnUntilIdle();
  }
  (void)before.text();
  tests::CapturedError afterwards;
  shop.wait(5);
  EXPECT_EQ(afterwards.text(),
            "The ledger refused a change: No space left. The purchases are carried on later.\n");
}

TEST_F(LedgerRefusal, FailureThatWasSetUpIsNotUsedUpByAnOutcomeThatWasNotWritten) {
  shop.session.cancelPurchases();
  shop.add("gems");
  turn();
  refuse();
  (void)saidUntilIdle();
  accept();
  shop.session.relaunch();
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems failed");
}

TEST_F(LedgerRefusal, FinishThatCannotBeWrittenLeavesTheTransaction) {
  OpenShop::queue().finishTransaction(shop.buy("gems"));
  observer.forget();
  refuse();
  EXPECT_EQ(saidUntilIdle(),
            "The ledger refused a change: No space left. The transactions stay in the queue.\n");
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems purchased");
}

TEST_F(LedgerRefusal, FinishCanBeTriedAgain) {
  const auto transaction = shop.buy("gems");
  OpenShop::queue().finishTransaction(transaction);
  refuse();
  (void)saidUntilIdle();
  accept();
  OpenShop::queue().finishTransaction(transaction);
  (void)turnUntilIdle();
  EXPECT_EQ(observer.journal().back(), "removed: gems purchased");
}

TEST_F(LedgerRefusal, FinishThatWasNotWrittenComesBackAfterARelaunch) {
  OpenShop::queue().finishTransaction(shop.buy("gems"));
  refuse();
  (void)saidUntilIdle();
  accept();
  shop.session.relaunch();
  observer.forget();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
}

TEST_F(LedgerRefusal, RestoreThatCannotBeWrittenEndsWithTheFailedMessage) {
  shop.own("crown");
  observer.forget();
  refuse();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("restore failed: No space left."));
  EXPECT_EQ(observer.restoreErrors.at(0).domain(), SKErrorDomain);
  EXPECT_EQ(observer.restoreErrors.at(0).code(), 0);
  EXPECT_EQ(observer.restoreErrors.at(0).underlyingError()->code(), 28);
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
}

TEST_F(LedgerRefusal, RestoreCanBeTriedAgain) {
  shop.own("crown");
  refuse();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  accept();
  observer.forget();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: crown restored", "restore finished"));
}

}  // namespace
}  // namespace StoreKit
