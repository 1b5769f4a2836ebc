#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/OpenShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turn;
using tests::turnUntilIdle;

// What an observer does inside a callback, and what it hears then.
class ReentrantOrder : public testing::Test {
 protected:
  OpenShop shop;
  JournalingObserver observer;

  ReentrantOrder() {
    observer.observe();
    (void)turnUntilIdle();
  }

  // Runs `deed` inside the first update that has this state.
  void once(SKPaymentTransactionState state, std::function<void()> deed) {
    observer.onUpdated = [this, state, deed = std::move(deed)](const auto& transactions) {
      if (transactions.at(0)->transactionState() != state) return;
      observer.onUpdated = nullptr;
      deed();
      observer.forget();  // nothing may have been told inside the deed, and `seen` starts anew
    };
  }
};

TEST_F(ReentrantOrder, PaymentAddedInsideACallbackBeginsInALaterTurn) {
  observer.onUpdated = [this](const auto& transactions) {
    if (transactions.at(0)->payment()->productIdentifier() != "gems") return;
    if (transactions.at(0)->transactionState() != SKPaymentTransactionState::purchased) return;
    shop.add("crown");
  };
  shop.add("gems");
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchasing", "updated: gems purchased",
                          "updated: crown purchasing", "updated: crown purchased"));
}

TEST_F(ReentrantOrder, FinishingInsideTheCallbackRemovesInALaterTurn) {
  once(SKPaymentTransactionState::purchased, [this] {
    OpenShop::queue().finishTransaction(observer.seen.back());
    EXPECT_EQ(observer.journal().size(), 2U);
  });
  shop.add("gems");
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("removed: gems purchased"));
}

TEST_F(ReentrantOrder, RelaunchInsideACallbackDeliversAnew) {
  once(SKPaymentTransactionState::purchased, [this] { shop.session.relaunch(); });
  shop.add("gems");
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
}

TEST_F(ReentrantOrder, RelaunchWhileTheBacklogIsDeliveredDeliversTheRestOnce) {
  shop.buy("gems");
  shop.add("crown");
  turn();
  shop.session.relaunch();
  once(SKPaymentTransactionState::purchased, [this] { shop.session.relaunch(); });
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchased", "updated: crown purchasing",
                          "updated: crown purchased"));
}

TEST_F(ReentrantOrder, RelaunchInsideARestoreForgetsTheRestoresBehindIt) {
  shop.own("crown");
  once(SKPaymentTransactionState::restored, [this] { shop.session.relaunch(); });
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: crown restored"));
}

TEST_F(ReentrantOrder, RestoreAfterARelaunchInsideARestoreReplaysAndEnds) {
  shop.own("crown");
  once(SKPaymentTransactionState::restored, [this] { shop.session.relaunch(); });
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  observer.forget();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: crown restored", "restore finished"));
}

TEST_F(ReentrantOrder, AnotherStoreOpenedInsideACallbackForgetsWhatWasUnderWay) {
  once(SKPaymentTransactionState::purchasing, [] { (void)StoreSession(tests::shop()); });
  shop.add("gems");
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
}

TEST_F(ReentrantOrder, RestoreInsideARestoresEndBeginsAnother) {
  shop.own("crown");
  observer.forget();
  observer.onRestoreFinished = [this] {
    observer.onRestoreFinished = nullptr;
    OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  };
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: crown restored", "restore finished",
                                              "updated: crown restored", "restore finished"));
}

}  // namespace
}  // namespace StoreKit
