#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/OpenShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turn;
using tests::turnUntilIdle;

class Finish : public testing::Test {
 protected:
  OpenShop shop;
  JournalingObserver observer;

  Finish() {
    observer.observe();
    (void)turnUntilIdle();
  }

  static void finish(const SKPaymentTransactionPtr& transaction) {
    OpenShop::queue().finishTransaction(transaction);
  }
};

TEST_F(Finish, RemovesInALaterTurnAndSaysSo) {
  const auto transaction = shop.buy("gems");
  observer.forget();
  finish(transaction);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_EQ(OpenShop::queue().transactions().size(), 1U);
  turn();
  EXPECT_THAT(observer.journal(), ElementsAre("removed: gems purchased"));
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
}

TEST_F(Finish, ReportsTheVeryTransaction) {
  const auto transaction = shop.buy("gems");
  finish(transaction);
  (void)turnUntilIdle();
  ASSERT_EQ(observer.removed.size(), 1U);
  EXPECT_TRUE(observer.removed[0]->isEqual(*transaction));
}

TEST_F(Finish, RemovesFailedOnesToo) {
  shop.session.cancelPurchases();
  finish(shop.buy("gems"));
  (void)turnUntilIdle();
  EXPECT_EQ(observer.journal().back(), "removed: gems failed");
}

TEST_F(Finish, LeavesTheOthersInTheirOrder) {
  shop.buy("gems");
  const auto crown = shop.buy("crown");
  shop.buy("club");
  finish(crown);
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems purchased, club purchased");
}

TEST_F(Finish, SeveralOfOneTurnAreOneBatch) {
  const auto gems = shop.buy("gems");
  const auto crown = shop.buy("crown");
  observer.forget();
  finish(gems);
  finish(crown);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("removed: gems purchased, crown purchased"));
}

TEST_F(Finish, TwiceInOneTurnRemovesOnce) {
  const auto transaction = shop.buy("gems");
  observer.forget();
  finish(transaction);
  finish(transaction);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("removed: gems purchased"));
}

TEST_F(Finish, AgainAfterTheRemovalIsHarmless) {
  const auto transaction = shop.buy("gems");
  finish(transaction);
  (void)turnUntilIdle();
  observer.forget();
  finish(transaction);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
}

TEST_F(Finish, OfAPurchasingOneIsRefusedWithALine) {
  shop.add("gems");
  turn();
  tests::CapturedError error;
  finish(observer.seen.at(0));
  EXPECT_EQ(error.text(),
            "A purchasing transaction cannot be finished: gems stays in the queue.\n");
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems purchased");
}

TEST_F(Finish, OfAForeignOneIsIgnored) {
  struct Foreign final : SKPaymentTransaction {
    SKPaymentPtr payment() const override { return nullptr; }
    SKPaymentTransactionState transactionState() const override {
      return SKPaymentTransactionState::purchased;
    }
    std::optional<std::string> transactionIdentifier() const override { return {}; }
    std::optional<Foundation::Date> transactionDate() const override { return {}; }
    std::optional<Foundation::NSError> error() const override { return {}; }
    SKPaymentTransactionPtr originalTransaction() const override { return nullptr; }
    SKDownloads downloads() const override { return {}; }
  };
  shop.buy("gems");
  finish(std::make_shared<const Foreign>());
  finish(nullptr);
  (void)turnUntilIdle();
  EXPECT_EQ(OpenShop::queue().transactions().size(), 1U);
}

TEST_F(Finish, OfAnEarlierStoresOneIsIgnored) {
  const auto earlier = shop.buy("gems");
  const StoreSession another(tests::shop());
  shop.buy("crown");
  finish(earlier);
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "crown purchased");
}

TEST_F(Finish, KeepsItFromComingBackAfterARelaunch) {
  finish(shop.buy("gems"));
  (void)turnUntilIdle();
  observer.forget();
  shop.session.relaunch();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
}

TEST_F(Finish, ThatDidNotHappenBeforeTheRelaunchIsForgotten) {
  finish(shop.buy("gems"));
  shop.session.relaunch();
  observer.forget();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
}

TEST_F(Finish, AfterOneThatARelaunchForgotHappens) {
  shop.buy("crown");
  finish(shop.buy("gems"));
  shop.session.relaunch();
  (void)turnUntilIdle();
  finish(OpenShop::queue().transactions().front());
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems purchased");
}

TEST_F(Finish, WithTheTransactionOfARunBeforeTheRelaunchCounts) {
  const auto earlier = shop.buy("gems");
  shop.session.relaunch();
  (void)turnUntilIdle();
  finish(earlier);
  (void)turnUntilIdle();
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
}

TEST_F(Finish, OfTheOriginalOfARestoredOneLeavesTheRestoredOne) {
  shop.own("crown");
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  finish(OpenShop::queue().transactions().at(0)->originalTransaction());
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "crown restored");
}

}  // namespace
}  // namespace StoreKit
