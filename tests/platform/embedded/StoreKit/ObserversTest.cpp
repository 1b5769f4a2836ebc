#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "tests/fakes/OpenShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::Journal;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turn;
using tests::turnUntilIdle;

class Observers : public testing::Test {
 protected:
  OpenShop shop;
  std::shared_ptr<Journal> journal = std::make_shared<Journal>();
  JournalingObserver first{journal, "first"};
  JournalingObserver second{journal, "second"};
  JournalingObserver third{journal, "third"};

  // One turn that reports to all, with the lines before it forgotten.
  void reportPurchasing() {
    (void)turnUntilIdle();
    shop.add("gems");
    journal->clear();
    turn();
  }
};

TEST_F(Observers, AreToldInTheOrderInWhichTheyCame) {
  second.observe();
  first.observe();
  reportPurchasing();
  EXPECT_THAT(*journal,
              ElementsAre("second updated: gems purchasing", "first updated: gems purchasing"));
}

TEST_F(Observers, NoneMeansThatPurchasesWait) {
  shop.add("gems");
  (void)turnUntilIdle();
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
  first.observe();
  EXPECT_THAT(*journal, IsEmpty());
  (void)turnUntilIdle();
  EXPECT_THAT(*journal,
              ElementsAre("first updated: gems purchasing", "first updated: gems purchased"));
}

TEST_F(Observers, NoneMeansThatOutcomesWait) {
  first.observe();
  reportPurchasing();
  first.stop();
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems purchasing");
  second.observe();
  (void)turnUntilIdle();
  EXPECT_EQ(journal->back(), "second updated: gems purchased");
}

TEST_F(Observers, NoneMeansThatRestoresWait) {
  first.observe();
  shop.own("crown");
  first.stop();
  journal->clear();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  first.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(*journal, ElementsAre("first updated: crown restored", "first restore finished"));
}

TEST_F(Observers, NoneMeansThatTheEndOfARestoreWaits) {
  first.observe();
  shop.own("crown");
  journal->clear();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  turn();
  first.stop();
  (void)turnUntilIdle();
  second.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(*journal, ElementsAre("first updated: crown restored", "second restore finished"));
}

TEST_F(Observers, NoneMeansThatAFinishIsCommittedAndNobodyIsTold) {
  first.observe();
  const auto transaction = shop.buy("gems");
  journal->clear();
  OpenShop::queue().finishTransaction(transaction);
  first.stop();
  (void)turnUntilIdle();
  second.observe();
  (void)turnUntilIdle();
  EXPECT_THAT(*journal, IsEmpty());
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
}

TEST_F(Observers, SameOneIsNotAddedTwice) {
  first.observe();
  first.observe();
  reportPurchasing();
  EXPECT_THAT(*journal, ElementsAre("first updated: gems purchasing"));
  first.stop();
  reportPurchasing();
  EXPECT_THAT(*journal, IsEmpty());
}

TEST_F(Observers, RemovingAStrangerIsHarmless) {
  first.observe();
  second.stop();
  reportPurchasing();
  EXPECT_THAT(*journal, ElementsAre("first updated: gems purchasing"));
}

TEST_F(Observers, RemovedOneIsNotToldAnyMore) {
  first.observe();
  second.observe();
  first.stop();
  reportPurchasing();
  EXPECT_THAT(*journal, ElementsAre("second updated: gems purchasing"));
}

TEST_F(Observers, MayRemoveThemselvesWhileBeingTold) {
  first.observe();
  second.observe();
  first.onUpdated = [this](const auto&) { first.stop(); };
  reportPurchasing();
  turn();
  EXPECT_THAT(*journal,
              ElementsAre("first updated: gems purchasing", "second updated: gems purchasing",
                          "second updated: gems purchased"));
}

TEST_F(Observers, MayRemoveALaterOneWhichIsNotToldThen) {
  first.observe();
  second.observe();
  third.observe();
  first.onUpdated = [this](const auto&) { second.stop(); };
  reportPurchasing();
  EXPECT_THAT(*journal,
              ElementsAre("first updated: gems purchasing", "third updated: gems purchasing"));
}

TEST_F(Observers, MayRemoveAnEarlierOneAndNoneIsLeftOut) {
  first.observe();
  second.observe();
  third.observe();
  second.onUpdated = [this](const auto&) { first.stop(); };
  reportPurchasing();
  EXPECT_THAT(*journal,
              ElementsAre("first updated: gems purchasing", "second updated: gems purchasing",
                          "third updated: gems purchasing"));
}

TEST_F(Observers, OneAddedWhileOthersAreToldIsToldTheNextThing) {
  first.observe();
  first.onUpdated = [this](const auto&) { second.observe(); };
  reportPurchasing();
  EXPECT_THAT(*journal, ElementsAre("first updated: gems purchasing"));
  turn();
  EXPECT_THAT(*journal,
              ElementsAre("first updated: gems purchasing", "first updated: gems purchased",
                          "second updated: gems purchased"));
}

TEST_F(Observers, OneThatLeavesAndComesBackMeanwhileIsNotToldYet) {
  first.observe();
  second.observe();
  first.onUpdated = [this](const auto&) {
    second.stop();
    second.observe();
  };
  reportPurchasing();
  EXPECT_THAT(*journal, ElementsAre("first updated: gems purchasing"));
}

TEST_F(Observers, OneMadeWhereAnotherStoodIsNotToldYet) {
  alignas(JournalingObserver) std::byte place[sizeof(JournalingObserver)];
  auto* standing = new (place) JournalingObserver(journal, "old");
  first.observe();
  standing->observe();
  first.onUpdated = [&](const auto&) {
    first.onUpdated = nullptr;
    standing->~JournalingObserver();
    standing = new (place) JournalingObserver(journal, "new");
    standing->observe();
  };
  reportPurchasing();
  EXPECT_THAT(*journal, ElementsAre("first updated: gems purchasing"));
  turn();
  EXPECT_EQ(journal->back(), "new updated: gems purchased");
  standing->~JournalingObserver();
}

TEST_F(Observers, StayWhenAnotherStoreIsOpened) {
  first.observe();
  const StoreSession another(tests::shop());
  reportPurchasing();
  EXPECT_THAT(*journal, ElementsAre("first updated: gems purchasing"));
}

}  // namespace
}  // namespace StoreKit
