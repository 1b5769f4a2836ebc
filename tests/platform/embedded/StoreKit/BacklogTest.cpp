#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/StoreKit/SKProductsRequest.hpp"
#include "tests/fakes/OpenShop.hpp"
#include "tests/fakes/RecordingDelegate.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turn;
using tests::turnUntilIdle;

class Backlog : public testing::Test {
 protected:
  OpenShop shop;
  JournalingObserver observer;

  // Runs `work` as an earlier run of the application, with an observer of its own.
  static void earlierRun(const std::function<void()>& work) {
    JournalingObserver earlier;
    earlier.observe();
    work();
    (void)turnUntilIdle();
  }
  void watch() {
    observer.observe();
    (void)turnUntilIdle();
  }
  void relaunch() {
    shop.session.relaunch();
    observer.forget();
  }
};

TEST_F(Backlog, ComesBackInOrderAfterARelaunch) {
  watch();
  shop.buy("gems");
  shop.session.cancelPurchases();
  shop.buy("crown");
  shop.buy("club");
  relaunch();
  EXPECT_THAT(observer.journal(), IsEmpty());
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchased, crown failed, club purchased"));
}

TEST_F(Backlog, ComesBackEqualFieldByField) {
  watch();
  const auto before = shop.buy("gems", "ann");
  relaunch();
  (void)turnUntilIdle();
  const auto& after = *observer.seen.at(0);
  EXPECT_EQ(after.transactionState(), before->transactionState());
  EXPECT_EQ(after.transactionIdentifier(), before->transactionIdentifier());
  EXPECT_EQ(after.transactionDate(), before->transactionDate());
  EXPECT_EQ(after.payment()->productIdentifier(), "gems");
  EXPECT_EQ(after.payment()->applicationUsername(), "ann");
}

TEST_F(Backlog, FailedOneComesBackWithItsError) {
  watch();
  shop.session.failPurchases(SKError::Code::invalidSignature);
  shop.buy("gems");
  relaunch();
  (void)turnUntilIdle();
  ASSERT_TRUE(observer.seen.at(0)->error());
  EXPECT_EQ(observer.seen.at(0)->error()->code(), 12);
}

TEST_F(Backlog, ComesBackAsNewButEqualObjects) {
  watch();
  const auto before = shop.buy("gems");
  relaunch();
  (void)turnUntilIdle();
  const auto after = observer.seen.at(0);
  EXPECT_NE(after, before);
  EXPECT_TRUE(after->isEqual(*before));
  EXPECT_EQ(after->hash(), before->hash());
}

TEST_F(Backlog, OfAnotherStoreIsNotEqual) {
  watch();
  const auto before = shop.buy("gems");
  const OpenShop other;
  const auto after = other.buy("gems");
  EXPECT_FALSE(after->isEqual(*before));
}

TEST_F(Backlog, ComesBackAtEveryRelaunchUntilItIsFinished) {
  watch();
  shop.buy("gems");
  for (int i = 0; i < 3; ++i) {
    relaunch();
    (void)turnUntilIdle();
    EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
  }
}

TEST_F(Backlog, IsDeliveredInALaterTurnThanTheObserversComing) {
  earlierRun([this] { shop.add("gems"); });
  shop.session.relaunch();
  (void)turnUntilIdle();
  observer.observe();
  EXPECT_THAT(observer.journal(), IsEmpty());
  turn();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
}

TEST_F(Backlog, IsDeliveredOncePerRun) {
  watch();
  shop.buy("gems");
  relaunch();
  (void)turnUntilIdle();
  observer.stop();
  observer.forget();
  observer.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
}

TEST_F(Backlog, IsNotForAnObserverThatComesLater) {
  watch();
  shop.buy("gems");
  relaunch();
  (void)turnUntilIdle();
  JournalingObserver second;
  second.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(second.journal(), IsEmpty());
}

TEST_F(Backlog, WaitsForTheFirstObserver) {
  earlierRun([this] { shop.add("gems"); });
  shop.session.relaunch();
  (void)turnUntilIdle();
  EXPECT_EQ(OpenShop::queue().transactions().size(), 1U);
  observer.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchased"));
}

TEST_F(Backlog, ComesBeforeThePurchasesOfTheNewRun) {
  earlierRun([this] { shop.add("gems"); });
  shop.session.relaunch();
  shop.add("crown");
  observer.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchased", "updated: crown purchasing",
                          "updated: crown purchased"));
}

TEST_F(Backlog, ComesBeforeAnyProductsAnswer) {
  earlierRun([this] { shop.add("gems"); });
  shop.session.relaunch();
  (void)turnUntilIdle();
  observer.observe();
  const auto delegate = std::make_shared<tests::RecordingDelegate>();
  std::size_t reported = 0;
  delegate->onAnswer = [&] { reported = observer.journal().size(); };
  SKProductsRequest request({"gems"});
  request.setDelegate(delegate);
  request.start();
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 1U);
  EXPECT_EQ(reported, 1U);
}

TEST_F(Backlog, PurchaseThatHadBegunIsCarriedOn) {
  watch();
  shop.add("gems");
  turn();
  relaunch();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchasing", "updated: gems purchased"));
}

TEST_F(Backlog, PurchaseThatHadNotBegunIsGone) {
  watch();
  shop.add("gems");
  relaunch();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
}

TEST_F(Backlog, WhatHadBegunIsReportedApartFromWhatHadEnded) {
  watch();
  shop.buy("gems");
  shop.add("crown");
  turn();
  relaunch();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchased", "updated: crown purchasing",
                          "updated: crown purchased"));
}

TEST_F(Backlog, RestoredOneComesBackWithItsOriginal) {
  watch();
  shop.own("crown");
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  const auto original = OpenShop::queue().transactions().at(0)->originalTransaction();
  relaunch();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: crown restored"));
  ASSERT_NE(observer.seen.at(0)->originalTransaction(), nullptr);
  EXPECT_TRUE(observer.seen.at(0)->originalTransaction()->isEqual(*original));
}

TEST_F(Backlog, PartThatTheOnlyObserverLeftBehindWaitsForTheNextOne) {
  watch();
  shop.buy("gems");
  shop.add("crown");
  turn();
  relaunch();
  observer.onUpdated = [this](const auto&) { observer.stop(); };
  (void)turnUntilIdle();
  JournalingObserver next;
  next.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(next.journal(), ElementsAre("updated: crown purchasing", "updated: crown purchased"));
}

}  // namespace
}  // namespace StoreKit
