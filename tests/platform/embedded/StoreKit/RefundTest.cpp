#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::books;
using tests::outcome;
using tests::SubscriptionShop;
using tests::turnUntilIdle;

class Refund : public tests::ObservedShop<SubscriptionShop> {
 protected:
  std::string refund(std::int64_t identifier) {
    return outcome(shop.session.refundTransaction(identifier));
  }
};

TEST_F(Refund, IsToldInALaterTurnWithTheProduct) {
  shop.own("crown");
  observer.forget();
  EXPECT_EQ(refund(1), tests::kDone);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(heard(), ElementsAre("revoked: crown"));
}

TEST_F(Refund, IsInTheBooksAtOnceWithItsDate) {
  shop.own("crown");
  shop.clock.set(tests::ManualClock::kStart + 60);
  (void)refund(1);
  EXPECT_THAT(books(shop.session), ElementsAre("1 crown purchased finished refunded"));
  EXPECT_EQ(SubscriptionShop::sinceStart(shop.transaction(1).cancelDate), "60");
}

TEST_F(Refund, OfSeveralInOneTurnIsOneMessageInTheirOrder) {
  shop.own("gems");
  shop.own("crown");
  (void)refund(2);
  (void)refund(1);
  EXPECT_THAT(heard(), ElementsAre("revoked: crown gems"));
}

TEST_F(Refund, LeavesAnUnfinishedTransactionInTheQueueAsItIs) {
  const auto gems = shop.buy("gems");
  EXPECT_EQ(refund(1), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("revoked: gems"));
  EXPECT_EQ(gems->transactionState(), SKPaymentTransactionState::purchased);
  EXPECT_EQ(tests::describe(queue().transactions()), "gems purchased");
}

TEST_F(Refund, IsNotRestoredAnyMore) {
  shop.own("crown");
  (void)refund(1);
  (void)turnUntilIdle();
  EXPECT_THAT(heardOfRestore(), ElementsAre("restore finished"));
}

TEST_F(Refund, LetsALaterPurchaseOfTheSameBeRestored) {
  shop.own("crown");
  (void)refund(1);
  shop.own("crown");
  EXPECT_THAT(heardOfRestore(), ElementsAre("updated: crown restored", "restore finished"));
  EXPECT_EQ(shop.session.allTransactions().back().originalTransactionIdentifier, 2);
}

TEST_F(Refund, IsToldOnceAndNotAgainAtTheNextStart) {
  shop.own("crown");
  (void)refund(1);
  (void)turnUntilIdle();
  shop.session.relaunch();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Refund, WhileNobodyObservesIsToldAtTheNextStart) {
  shop.own("crown");
  goAway();
  (void)refund(1);
  (void)turnUntilIdle();
  EXPECT_THAT(heardAtStart(), ElementsAre("revoked: crown"));
  shop.session.relaunch();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Refund, IsToldAfterTheBacklog) {
  shop.own("crown");
  shop.buy("gems");
  goAway();
  (void)refund(1);
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: gems purchased", "revoked: crown"));
}

TEST_F(Refund, IsToldAfterTheBacklogOfARunThatBeginsInsideOne) {
  shop.own("crown");
  shop.buy("gems");
  goAway();
  (void)refund(1);
  observer.onUpdated = [this](const auto&) {
    observer.onUpdated = nullptr;
    shop.session.relaunch();
  };
  EXPECT_THAT(heardAtStart(),
              ElementsAre("updated: gems purchased", "updated: gems purchased", "revoked: crown"));
}

TEST_F(Refund, IsNotToldAgainWhenItsTransactionIsFinishedLater) {
  const auto gems = shop.buy("gems");
  (void)refund(1);
  (void)turnUntilIdle();
  queue().finishTransaction(gems);
  EXPECT_THAT(heard(), ElementsAre("removed: gems purchased"));
  shop.session.relaunch();
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Refund, ThatTheLedgerDoesNotNoteAsToldIsToldAgainAtTheNextStart) {
  shop.own("crown");
  (void)refund(1);
  shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
  tests::CapturedError error;
  EXPECT_THAT(heard(), ElementsAre("revoked: crown"));
  EXPECT_EQ(error.text(),
            "The ledger refused a change: No space left. "
            "Refunds are told again at the next start.\n");
  shop.ledger->refusal.reset();
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("revoked: crown"));
}

TEST_F(Refund, IsNotedAsToldOnlyAfterTheObserversHaveHeardOfIt) {
  const auto untold = [] { return EmbeddedStore::current().ledger().untoldRefunds().size(); };
  std::size_t whileTold = 0;
  observer.onRevoked = [&] { whileTold = untold(); };
  shop.own("crown");
  (void)refund(1);
  EXPECT_THAT(heard(), ElementsAre("revoked: crown"));
  EXPECT_EQ(whileTold, 1U);
  EXPECT_EQ(untold(), 0U);
}

TEST_F(Refund, ToldToAnObserverThatOpensTheStoreAnewIsToldAgain) {
  observer.onRevoked = [this] {
    observer.onRevoked = nullptr;
    shop.session.relaunch();
  };
  shop.own("crown");
  (void)refund(1);
  EXPECT_THAT(heard(), ElementsAre("revoked: crown", "revoked: crown"));
}

TEST_F(Refund, OfWhatIsJustBeingFinishedDoesNotKeepItInTheQueue) {
  queue().finishTransaction(shop.buy("gems"));
  EXPECT_EQ(refund(1), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("removed: gems purchased", "revoked: gems"));
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchased finished refunded"));
}

TEST_F(Refund, WaitsForTheApplicationWhenThisProgramIsNone) {
  StoreSession::setIsForApplication(false);
  shop.own("crown");
  (void)refund(1);
  EXPECT_THAT(heard(), IsEmpty());
  goAway();
  EXPECT_THAT(heardAtStart(), IsEmpty());
  goAway();
  StoreSession::setIsForApplication(true);
  EXPECT_THAT(heardAtStart(), ElementsAre("revoked: crown"));
}

TEST_F(Refund, HappensOnce) {
  shop.own("crown");
  (void)refund(1);
  EXPECT_EQ(refund(1), tests::kInvalidAction);
  EXPECT_THAT(heard(), ElementsAre("revoked: crown"));
}

TEST_F(Refund, OfSomethingThatWasNotPaidIsAnError) {
  shop.session.cancelPurchases();
  shop.buy("gems");
  EXPECT_EQ(refund(1), tests::kInvalidAction);
  EXPECT_EQ(refund(0), tests::kNoTransaction);
  EXPECT_EQ(refund(-1), tests::kNoTransaction);
  EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(Refund, OfARestoredCopyIsAnError) {
  shop.own("crown");
  (void)heardOfRestore();
  EXPECT_EQ(refund(2), tests::kInvalidAction);
}

TEST_F(Refund, OfARunningPeriodEndsTheSubscription) {
  shop.own("monthly");
  (void)refund(1);
  EXPECT_FALSE(shop.transaction(1).autoRenewingEnabled);
  shop.wait(10 * tests::kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
}

TEST_F(Refund, OfAnEarlierPeriodLeavesTheSubscriptionRunning) {
  shop.own("monthly");
  shop.wait(tests::kFastMonth);
  EXPECT_EQ(refund(1), tests::kDone);
  shop.wait(tests::kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600", "monthly 600-900"));
}

TEST_F(Refund, AfterOneOfASubscriptionItCanBeBoughtAnew) {
  shop.own("monthly");
  (void)refund(1);
  shop.wait(60);
  shop.own("monthly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 60-360"));
}

}  // namespace
}  // namespace StoreKit
