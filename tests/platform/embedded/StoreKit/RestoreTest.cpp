#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/fakes/OpenShop.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turn;
using tests::turnUntilIdle;

class Restore : public testing::Test {
 protected:
  OpenShop shop;
  JournalingObserver observer;

  Restore() {
    observer.observe();
    (void)turnUntilIdle();
  }

  // What the observer hears of one restore, from the request to the last turn.
  const tests::Journal& heardOf(const std::optional<std::string>& user = std::nullopt) {
    observer.forget();
    OpenShop::queue().restoreCompletedTransactions(user);
    (void)turnUntilIdle();
    return observer.journal();
  }
};

TEST_F(Restore, IsNotReportedInsideTheCall) {
  shop.own("crown");
  observer.forget();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  EXPECT_THAT(observer.journal(), IsEmpty());
}

TEST_F(Restore, OfNothingStillEndsWithFinished) {
  EXPECT_THAT(heardOf(), ElementsAre("restore finished"));
}

TEST_F(Restore, EndsInALaterTurnThanTheTransactions) {
  shop.own("crown");
  observer.forget();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  turn();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: crown restored"));
  turn();
  EXPECT_EQ(observer.journal().back(), "restore finished");
}

TEST_F(Restore, ReplaysNonConsumablesAndSubscriptionsOnlyInOrderOfPurchase) {
  for (const auto* product : {"club", "gems", "crown", "season", "cape"}) shop.own(product);
  EXPECT_THAT(heardOf(), ElementsAre("updated: club restored, crown restored, cape restored",
                                     "restore finished"));
}

TEST_F(Restore, ReplaysANonConsumableOnceAlthoughItWasBoughtTwice) {
  shop.own("crown");
  shop.own("cape");
  shop.own("crown");
  EXPECT_THAT(heardOf(), ElementsAre("updated: crown restored, cape restored", "restore finished"));
}

TEST_F(Restore, ReplaysEveryPeriodOfASubscription) {
  shop.own("club");
  ASSERT_FALSE(shop.session.forceRenewalOfSubscription("club"));
  (void)turnUntilIdle();
  shop.queue().finishTransaction(shop.queue().transactions().at(0));
  (void)turnUntilIdle();

  EXPECT_THAT(heardOf(), ElementsAre("updated: club restored, club restored", "restore finished"));
}

TEST_F(Restore, LeavesOutABuyingAgainThatBeganNoPeriod) {
  shop.own("club");
  shop.own("club");
  EXPECT_THAT(heardOf(), ElementsAre("updated: club restored", "restore finished"));
}

TEST_F(Restore, LeavesOutWhatIsNotFinished) {
  shop.buy("crown");
  EXPECT_THAT(heardOf(), ElementsAre("restore finished"));
}

TEST_F(Restore, LeavesOutWhatFailed) {
  shop.session.cancelPurchases();
  shop.own("crown");
  EXPECT_THAT(heardOf(), ElementsAre("restore finished"));
}

TEST_F(Restore, GivesNewIdentifierAndDateAndThePayment) {
  OpenShop::queue().addPayment(
      SKPayment({.productIdentifier = "crown", .quantity = 2, .applicationUsername = "ann"}));
  (void)turnUntilIdle();
  OpenShop::queue().finishTransaction(OpenShop::queue().transactions().at(0));
  (void)turnUntilIdle();
  heardOf();
  const auto& restored = *observer.seen.at(0);
  EXPECT_EQ(restored.transactionIdentifier(), "102");
  EXPECT_EQ(restored.transactionDate(), Foundation::Date::sinceEpoch(1002));
  EXPECT_EQ(restored.payment()->productIdentifier(), "crown");
  EXPECT_EQ(restored.payment()->quantity(), 2);
  EXPECT_EQ(restored.payment()->applicationUsername(), "ann");
  EXPECT_FALSE(restored.error());
}

TEST_F(Restore, GivesTheOriginalTransaction) {
  const auto bought = shop.buy("crown");
  OpenShop::queue().finishTransaction(bought);
  heardOf();
  const auto original = observer.seen.at(0)->originalTransaction();
  ASSERT_NE(original, nullptr);
  EXPECT_TRUE(original->isEqual(*bought));
  EXPECT_EQ(original->transactionState(), SKPaymentTransactionState::purchased);
  EXPECT_EQ(original->transactionIdentifier(), "101");
  EXPECT_EQ(original->transactionDate(), Foundation::Date::sinceEpoch(1001));
}

TEST_F(Restore, WithANameReplaysWhatWasBoughtWithIt) {
  shop.own("crown", "ann");
  shop.own("cape", "bob");
  shop.own("club");
  EXPECT_THAT(heardOf("bob"), ElementsAre("updated: cape restored", "restore finished"));
}

TEST_F(Restore, WithAStrangersNameReplaysNothing) {
  shop.own("crown", "ann");
  EXPECT_THAT(heardOf("Ann"), ElementsAre("restore finished"));
}

TEST_F(Restore, WithoutANameReplaysWhatWasBoughtWithAny) {
  shop.own("crown", "ann");
  shop.own("cape");
  EXPECT_THAT(heardOf(), ElementsAre("updated: crown restored, cape restored", "restore finished"));
}

TEST_F(Restore, WithANameFindsItAlthoughAnotherUserBoughtTheSameFirst) {
  shop.own("crown", "ann");
  shop.own("crown", "bob");
  EXPECT_THAT(heardOf("bob"), ElementsAre("updated: crown restored", "restore finished"));
}

TEST_F(Restore, TwiceReplaysTwice) {
  shop.own("crown");
  heardOf();
  heardOf();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "crown restored, crown restored");
}

TEST_F(Restore, TwiceInOneTurnReplaysTwiceAndEndsTwice) {
  shop.own("crown");
  observer.forget();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  (void)turnUntilIdle();
  const auto count = [&](const char* line) {
    return std::count(observer.journal().begin(), observer.journal().end(), line);
  };
  EXPECT_EQ(count("updated: crown restored"), 2);
  EXPECT_EQ(count("restore finished"), 2);
}

TEST_F(Restore, DoesNotReplayAReplay) {
  shop.own("crown");
  heardOf();
  OpenShop::queue().finishTransaction(observer.seen.at(0));
  (void)turnUntilIdle();
  EXPECT_THAT(heardOf(), ElementsAre("updated: crown restored", "restore finished"));
}

TEST_F(Restore, SeesWhatWasFinishedJustBefore) {
  OpenShop::queue().finishTransaction(shop.buy("crown"));
  EXPECT_THAT(heardOf(), ElementsAre("removed: crown purchased", "updated: crown restored",
                                     "restore finished"));
}

TEST_F(Restore, LeavesOutWhatIsNotSoldAnyMore) {
  const tests::TemporaryFolder folder;
  const auto ledger = [&] { return SqliteLedger::open(folder.file("shop.ledger")).ledger; };
  const StoreSession before(tests::shop(), {}, ledger());
  shop.own("crown");
  shop.own("cape");
  auto poorer = tests::shop();
  std::erase_if(poorer.products, [](const auto& each) { return each.productID == "crown"; });
  const StoreSession after(poorer, {}, ledger());
  EXPECT_THAT(heardOf(), ElementsAre("updated: cape restored", "restore finished"));
}

TEST_F(Restore, ThatHadNotBegunIsForgottenAtARelaunch) {
  shop.own("crown");
  observer.forget();
  OpenShop::queue().restoreCompletedTransactions(std::nullopt);
  shop.session.relaunch();
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(heardOf(), ElementsAre("updated: crown restored", "restore finished"));
}

}  // namespace
}  // namespace StoreKit
