#include "platform/embedded/store/server/Renewals.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::books;
using tests::kFastMonth;
using tests::kFastWeek;
using tests::ManualClock;
using tests::outcome;
using tests::SubscriptionShop;
using tests::turnUntilIdle;

using SubscriptionRenewal = tests::ObservedShop<SubscriptionShop>;

TEST_F(SubscriptionRenewal, APurchaseBeginsTheFirstPeriod) {
  const auto monthly = shop.buy("monthly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  EXPECT_TRUE(shop.transaction(1).autoRenewingEnabled);
  EXPECT_EQ(monthly->originalTransaction(), nullptr);
}

TEST_F(SubscriptionRenewal, WhatIsNoSubscriptionHasNoPeriod) {
  shop.own("gems");
  EXPECT_FALSE(shop.transaction(1).expirationDate);
  EXPECT_FALSE(shop.transaction(1).autoRenewingEnabled);
}

TEST_F(SubscriptionRenewal, NothingHappensBeforeThePeriodEnds) {
  shop.own("monthly");
  observer.forget();
  shop.wait(kFastMonth - 0.5);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(shop.periods(), SizeIs(1));
}

TEST_F(SubscriptionRenewal, IsANewPurchasedTransactionFromTheEndOn) {
  shop.own("monthly");
  observer.forget();
  shop.wait(kFastMonth);
  EXPECT_THAT(observer.journal(), ElementsAre("updated: monthly purchased"));
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

TEST_F(SubscriptionRenewal, HasAnIdentifierADateAndTheFirstPeriodAsOriginal) {
  const auto first = shop.buy("monthly", "ann");
  queue().finishTransaction(first);
  shop.wait(2 * kFastMonth);
  const auto& last = *queue().transactions().back();
  EXPECT_EQ(last.transactionIdentifier(), "103");
  EXPECT_EQ(last.transactionDate(), Foundation::Date::sinceEpoch(ManualClock::kStart + 600));
  EXPECT_EQ(last.payment()->applicationUsername(), "ann");
  ASSERT_NE(last.originalTransaction(), nullptr);
  EXPECT_TRUE(last.originalTransaction()->isEqual(*first));
  EXPECT_EQ(last.originalTransaction()->transactionIdentifier(), "101");
}

TEST_F(SubscriptionRenewal, MovesTheSwitchToTheNewPeriod) {
  shop.own("monthly");
  shop.wait(kFastMonth);
  EXPECT_FALSE(shop.transaction(1).autoRenewingEnabled);
  EXPECT_TRUE(shop.transaction(2).autoRenewingEnabled);
}

TEST_F(SubscriptionRenewal, OfAYearTakesNoTime) {
  shop.session.setTimeRate(0);
  shop.own("monthly");
  for (int day = 0; day < 366; ++day) shop.wait(24 * 60 * 60);
  EXPECT_THAT(shop.periods(), SizeIs(13));
  EXPECT_EQ(shop.transaction(13).purchaseDate->description(), "2024-11-14 22:13:20 +0000");
}

TEST_F(SubscriptionRenewal, OfAYearInOneStepIsTheSame) {
  shop.session.setTimeRate(0);
  shop.own("monthly");
  observer.forget();
  shop.wait(366 * 24 * 60 * 60);
  EXPECT_THAT(shop.periods(), SizeIs(13));
  EXPECT_EQ(shop.transaction(13).purchaseDate->description(), "2024-11-14 22:13:20 +0000");
  EXPECT_THAT(observer.journal(), SizeIs(1));  // one batch
  EXPECT_THAT(observer.seen, SizeIs(12));
}

TEST_F(SubscriptionRenewal, OfEachGroupGoesItsOwnWay) {
  shop.own("monthly");
  shop.own("weekly");
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(),
              ElementsAre("monthly 0-300", "weekly 0-180", "monthly 300-600", "weekly 180-360"));
}

TEST_F(SubscriptionRenewal, AfterALongAbsenceCatchesUpOnSoManyAndGoesOnFromNow) {
  shop.own("weekly");
  shop.wait(1000 * kFastWeek);
  EXPECT_THAT(shop.periods(), SizeIs(1 + kMostRenewals + 1));
  EXPECT_EQ(shop.periods().at(kMostRenewals), "weekly 28800-28980");
  EXPECT_EQ(shop.periods().back(), "weekly 180000-180180");
  shop.wait(kFastWeek);
  EXPECT_EQ(shop.periods().back(), "weekly 180180-180360");
}

TEST_F(SubscriptionRenewal, WhileTheApplicationIsAwayIsPartOfTheNextBacklog) {
  shop.own("monthly");
  goAway();
  shop.clock.set(ManualClock::kStart + kFastMonth);
  shop.session.clockDidChange();
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: monthly purchased"));
}

TEST_F(SubscriptionRenewal, ThatIsDueHappensBeforeTheBooksAreRead) {
  shop.own("monthly");
  shop.clock.set(ManualClock::kStart + kFastMonth);
  EXPECT_THAT(shop.periods(), SizeIs(2));
}

TEST_F(SubscriptionRenewal, WhatHasEndedHasEndedBeforeAPurchaseIsSettled) {
  shop.own("monthly");
  (void)shop.session.disableAutoRenewForTransaction(1);
  shop.clock.set(ManualClock::kStart + kFastMonth + 50);
  shop.own("monthly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 350-650"));
}

TEST_F(SubscriptionRenewal, StaysInTheQueueUntilItIsFinished) {
  shop.own("monthly");
  shop.wait(kFastMonth);
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("updated: monthly purchased"));
}

TEST_F(SubscriptionRenewal, GoesByTheRateOfItsMoment) {
  shop.own("monthly");
  EXPECT_EQ(outcome(shop.session.setTimeRate(15)), tests::kDone);
  shop.wait(kFastMonth - 1);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  shop.wait(1);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-330"));
}

TEST_F(SubscriptionRenewal, SwitchedOffEndsWithThePeriod) {
  shop.own("monthly");
  EXPECT_EQ(outcome(shop.session.disableAutoRenewForTransaction(1)), tests::kDone);
  EXPECT_FALSE(shop.transaction(1).autoRenewingEnabled);
  shop.wait(10 * kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
}

TEST_F(SubscriptionRenewal, SwitchedOffAndOnAgainGoesOn) {
  shop.own("monthly");
  (void)shop.session.disableAutoRenewForTransaction(1);
  EXPECT_EQ(outcome(shop.session.enableAutoRenewForTransaction(1)), tests::kDone);
  EXPECT_TRUE(shop.transaction(1).autoRenewingEnabled);
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(), SizeIs(2));
}

TEST_F(SubscriptionRenewal, IsSwitchedByAnyTransactionOfTheSubscription) {
  shop.own("monthly");
  shop.wait(2 * kFastMonth);
  (void)shop.session.disableAutoRenewForTransaction(1);
  EXPECT_FALSE(shop.transaction(3).autoRenewingEnabled);
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(), SizeIs(3));
}

TEST_F(SubscriptionRenewal, CannotBeSwitchedOnceItIsOver) {
  shop.own("monthly");
  (void)shop.session.disableAutoRenewForTransaction(1);
  shop.wait(kFastMonth);
  EXPECT_EQ(outcome(shop.session.enableAutoRenewForTransaction(1)), tests::kNoSubscription);
  EXPECT_EQ(outcome(shop.session.disableAutoRenewForTransaction(1)), tests::kNoSubscription);
}

TEST_F(SubscriptionRenewal, CannotBeSwitchedForSomethingElse) {
  shop.own("gems");
  EXPECT_EQ(outcome(shop.session.enableAutoRenewForTransaction(1)), tests::kNoSubscription);
  EXPECT_EQ(outcome(shop.session.disableAutoRenewForTransaction(5)), tests::kNoTransaction);
}

TEST_F(SubscriptionRenewal, ForcedEndsThePeriodNow) {
  shop.own("monthly");
  shop.wait(100);
  observer.forget();
  EXPECT_EQ(outcome(shop.session.forceRenewalOfSubscription("monthly")), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-100", "monthly 100-400"));
  EXPECT_THAT(heard(), ElementsAre("updated: monthly purchased"));
}

TEST_F(SubscriptionRenewal, ForcedSwitchesItOnAgain) {
  shop.own("monthly");
  (void)shop.session.disableAutoRenewForTransaction(1);
  (void)shop.session.forceRenewalOfSubscription("monthly");
  EXPECT_TRUE(shop.transaction(2).autoRenewingEnabled);
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(), SizeIs(3));
}

TEST_F(SubscriptionRenewal, ForcedForWhatCannotBeRenewedIsAnError) {
  EXPECT_EQ(outcome(shop.session.forceRenewalOfSubscription("nothing")), tests::kInvalidProduct);
  EXPECT_EQ(outcome(shop.session.forceRenewalOfSubscription("gems")), tests::kInvalidType);
  EXPECT_EQ(outcome(shop.session.forceRenewalOfSubscription("monthly")), tests::kNoSubscription);
  shop.own("monthly");
  EXPECT_EQ(outcome(shop.session.forceRenewalOfSubscription("gold")), tests::kNoSubscription);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
}

TEST_F(SubscriptionRenewal, ExpiredEndsNowForGood) {
  shop.own("monthly");
  shop.wait(100);
  EXPECT_EQ(outcome(shop.session.expireSubscription("monthly")), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-100"));
  EXPECT_FALSE(shop.transaction(1).autoRenewingEnabled);
  shop.wait(10 * kFastMonth);
  EXPECT_THAT(shop.periods(), SizeIs(1));
  EXPECT_EQ(outcome(shop.session.expireSubscription("monthly")), tests::kNoSubscription);
}

TEST_F(SubscriptionRenewal, ExpiredForWhatIsNotRunningIsAnError) {
  EXPECT_EQ(outcome(shop.session.expireSubscription("nothing")), tests::kInvalidProduct);
  EXPECT_EQ(outcome(shop.session.expireSubscription("crown")), tests::kInvalidType);
  EXPECT_EQ(outcome(shop.session.expireSubscription("monthly")), tests::kNoSubscription);
}

TEST_F(SubscriptionRenewal, LapsedAndBoughtAgainContinuesFromTheFirstPeriod) {
  shop.own("monthly");
  (void)shop.session.expireSubscription("monthly");
  shop.wait(1000);
  shop.own("monthly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-0", "monthly 1000-1300"));
  EXPECT_EQ(shop.transaction(2).originalTransactionIdentifier, 1);
}

TEST_F(SubscriptionRenewal, IsRestoredPeriodByPeriod) {
  shop.own("monthly");
  shop.wait(2 * kFastMonth);
  for (const auto& each : queue().transactions()) queue().finishTransaction(each);
  (void)turnUntilIdle();
  EXPECT_THAT(heardOfRestore(),
              ElementsAre("updated: monthly restored, monthly restored, monthly restored",
                          "restore finished"));
  for (const auto& each : observer.seen) {
    ASSERT_NE(each->originalTransaction(), nullptr);
    EXPECT_EQ(each->originalTransaction()->transactionIdentifier(), "101");
  }
}

TEST_F(SubscriptionRenewal, ThatWasNotFinishedIsNotRestored) {
  shop.own("monthly");
  shop.wait(kFastMonth);
  EXPECT_THAT(heardOfRestore(), ElementsAre("updated: monthly restored", "restore finished"));
}

TEST_F(SubscriptionRenewal, ThatTheLedgerRefusesHappensLater) {
  shop.own("monthly");
  shop.ledger->refusal = Foundation::NSError::withDescription("disk", 28, "No space left.");
  tests::CapturedError error;
  shop.wait(kFastMonth);
  EXPECT_EQ(error.text(), "Subscriptions are renewed later: No space left.\n");
  shop.ledger->refusal.reset();
  shop.wait(1);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

TEST_F(SubscriptionRenewal, ThatSomebodyElseWasFasterWithHappensWithTheNextLook) {
  shop.own("monthly");
  shop.ledger->conflicts = 1;
  shop.wait(kFastMonth);
  shop.wait(0);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

// A running period of what the shop does not sell any more.
LedgerEntries periodOfGone(bool isUnpaid) {
  const auto begin = Foundation::Date::sinceEpoch(ManualClock::kStart);
  return {{.state = SKPaymentTransactionState::purchased,
           .finished = true,
           .payment = {.productIdentifier = "gone"},
           .period = SubscriptionPeriod{
               .group = "readers",
               .ends = Foundation::Date::sinceEpoch(ManualClock::kStart + 10),
               .renewsAs = "gone",
               .retryingSince = isUnpaid ? std::optional(begin) : std::nullopt}}};
}

TEST_F(SubscriptionRenewal, OfWhatIsNotSoldAnyMoreDoesNotHappen) {
  for (const bool isUnpaid : {false, true}) {
    SCOPED_TRACE(isUnpaid);
    auto configuration = tests::subscriptions();
    configuration.settings.timeRate = tests::kFastRate;
    configuration.settings.billingGracePeriodEnabled = true;
    auto ledger = std::make_unique<MemoryLedger>();
    auto entries = periodOfGone(isUnpaid);
    ASSERT_FALSE(ledger->add(entries, Ledger::Durability::powerCut));
    StoreSession session(configuration, shop.clock.sources(), std::move(ledger));
    shop.clock.advance(session, 50);
    EXPECT_THAT(books(session), ElementsAre("1 gone purchased finished"));
    EXPECT_FALSE(session.allTransactions().at(0).autoRenewingEnabled);
  }
}

TEST_F(SubscriptionRenewal, WithAClockThatIsSetBackWaits) {
  shop.own("monthly");
  shop.wait(-1000);
  EXPECT_THAT(shop.periods(), SizeIs(1));
  shop.wait(1000 + kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

class RenewalRates : public SubscriptionRenewal, public testing::WithParamInterface<int> {};

// Each rate, told by what is in the books after one period of a month and a little more.
TEST_P(RenewalRates, RenewAtTheEndOfThePeriodThatTheyMake) {
  ASSERT_EQ(outcome(shop.session.setTimeRate(GetParam())), tests::kDone);
  shop.own("monthly");
  const auto end = shop.transaction(1).expirationDate->timeIntervalSince1970();
  shop.wait(end - ManualClock::kStart - 0.5);
  EXPECT_THAT(shop.periods(), SizeIs(1));
  shop.wait(0.5);
  ASSERT_THAT(shop.periods(), SizeIs(2));
  EXPECT_EQ(shop.transaction(2).purchaseDate, shop.transaction(1).expirationDate);
  EXPECT_LT(shop.transaction(2).purchaseDate->timeIntervalSince1970(),
            shop.transaction(2).expirationDate->timeIntervalSince1970());
}

INSTANTIATE_TEST_SUITE_P(All, RenewalRates,
                         testing::Values(0, 1, 2, 3, 4, 5, 6, 10, 11, 12, 13, 15, 1000, 1001, 1002,
                                         1003, 1004, 1005));

}  // namespace
}  // namespace StoreKit
