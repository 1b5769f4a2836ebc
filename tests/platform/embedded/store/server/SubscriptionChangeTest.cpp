// Moving to another subscription of the same group.

#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using tests::books;
using tests::kFastMonth;
using tests::outcome;
using tests::SubscriptionShop;
using tests::turnUntilIdle;

// Somebody who has had "monthly" for a hundred seconds.
class SubscriptionChange : public tests::ObservedShop<SubscriptionShop> {
 protected:
  SubscriptionChange() {
    shop.own("monthly");
    shop.wait(100);
    observer.forget();
  }
};

TEST_F(SubscriptionChange, UpgradeBeginsAtOnce) {
  shop.own("gold");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-100", "gold 100-400"));
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-100", "gold 100-400", "gold 400-700"));
}

TEST_F(SubscriptionChange, UpgradeIsPurchasedAndContinuesTheFirstPeriod) {
  const auto gold = shop.buy("gold");
  EXPECT_EQ(gold->transactionState(), SKPaymentTransactionState::purchased);
  ASSERT_NE(gold->originalTransaction(), nullptr);
  EXPECT_EQ(gold->originalTransaction()->payment()->productIdentifier(), "monthly");
  EXPECT_FALSE(shop.transaction(1).autoRenewingEnabled);
  EXPECT_TRUE(shop.transaction(2).autoRenewingEnabled);
}

TEST_F(SubscriptionChange, DowngradeIsPurchasedAtOnceAndTakesEffectWithTheNextPeriod) {
  const auto basic = shop.buy("basic");
  EXPECT_EQ(basic->transactionState(), SKPaymentTransactionState::purchased);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  shop.wait(200);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "basic 300-600"));
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "basic 300-600", "basic 600-900"));
}

TEST_F(SubscriptionChange, DowngradeHasNoPeriodOfItsOwn) {
  shop.own("basic");
  EXPECT_FALSE(shop.transaction(2).expirationDate);
  EXPECT_TRUE(shop.transaction(1).autoRenewingEnabled);
}

TEST_F(SubscriptionChange, DowngradeSwitchesTheRenewalOnAgain) {
  (void)shop.session.disableAutoRenewForTransaction(1);
  shop.own("basic");
  shop.wait(200);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "basic 300-600"));
}

TEST_F(SubscriptionChange, DowngradeCanBeTakenBackByBuyingTheRunningOneAgain) {
  shop.own("basic");
  shop.own("monthly");
  shop.wait(200);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

TEST_F(SubscriptionChange, UpgradeTakesTheDowngradeBack) {
  shop.own("basic");
  shop.own("gold");
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-100", "gold 100-400", "gold 400-700"));
}

TEST_F(SubscriptionChange, ToTheSameLevelAndLengthBeginsAtOnce) {
  shop.own("other");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-100", "other 100-400"));
}

TEST_F(SubscriptionChange, ToTheSameLevelAndAnotherLengthTakesEffectWithTheNextPeriod) {
  shop.own("yearly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  shop.wait(200);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "yearly 300-3900"));
}

TEST_F(SubscriptionChange, TheRunningOneBoughtAgainIsPurchasedWithoutANewPeriod) {
  const auto again = shop.buy("monthly");
  EXPECT_EQ(again->transactionState(), SKPaymentTransactionState::purchased);
  ASSERT_NE(again->originalTransaction(), nullptr);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  shop.wait(200);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

TEST_F(SubscriptionChange, TheRunningOneBoughtAgainRenewsAgain) {
  (void)shop.session.disableAutoRenewForTransaction(1);
  shop.own("monthly");
  EXPECT_TRUE(shop.transaction(1).autoRenewingEnabled);
}

TEST_F(SubscriptionChange, TwiceTheSameInOneTurnIsOnePeriod) {
  shop.add("weekly");
  shop.add("weekly");
  (void)turnUntilIdle();
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "weekly 100-280"));
  EXPECT_THAT(books(shop.session), SizeIs(3));
}

TEST_F(SubscriptionChange, TwoUpgradesInOneTurnFollowEachOther) {
  (void)shop.session.expireSubscription("monthly");
  shop.add("basic");
  shop.add("gold");
  (void)turnUntilIdle();
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-100", "basic 100-100", "gold 100-400"));
  EXPECT_FALSE(shop.transaction(2).autoRenewingEnabled);
  EXPECT_TRUE(shop.transaction(3).autoRenewingEnabled);
}

TEST_F(SubscriptionChange, ToAnotherGroupIsASubscriptionOfItsOwn) {
  shop.own("weekly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "weekly 100-280"));
  EXPECT_FALSE(shop.transaction(2).originalTransactionIdentifier);
}

TEST_F(SubscriptionChange, OfADeferredPurchaseHappensWithItsApproval) {
  shop.session.setAskToBuyEnabled(true);
  shop.buy("gold");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  shop.wait(50);
  EXPECT_EQ(outcome(shop.session.approveAskToBuyTransaction(2)), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-150", "gold 150-450"));
}

TEST_F(SubscriptionChange, OfAnInterruptedPurchaseHappensWithItsResolution) {
  shop.session.setInterruptedPurchasesEnabled(true);
  shop.buy("gold");
  shop.wait(50);
  EXPECT_EQ(outcome(shop.session.resolveIssueForTransaction(2)), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-150", "gold 150-450"));
}

TEST_F(SubscriptionChange, ThatBoughtNoPeriodIsNotRestored) {
  shop.own("basic");
  shop.own("monthly");
  EXPECT_THAT(heardOfRestore(), ElementsAre("updated: monthly restored", "restore finished"));
  EXPECT_EQ(shop.session.allTransactions().back().originalTransactionIdentifier, 1);
}

TEST_F(SubscriptionChange, ThatTookEffectIsRestored) {
  shop.own("gold");
  EXPECT_THAT(heardOfRestore(),
              ElementsAre("updated: monthly restored, gold restored", "restore finished"));
}

TEST_F(SubscriptionChange, ForcedRenewalTakesEffectOnADowngrade) {
  shop.own("basic");
  EXPECT_EQ(outcome(shop.session.forceRenewalOfSubscription("monthly")), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-100", "basic 100-400"));
}

using PriceIncrease = SubscriptionChange;

TEST_F(PriceIncrease, IsPendingUntilItIsAnswered) {
  EXPECT_EQ(outcome(shop.session.requestPriceIncreaseConsentForTransaction(1)), tests::kDone);
  EXPECT_TRUE(shop.transaction(1).isPendingPriceIncreaseConsent);
  EXPECT_EQ(outcome(shop.session.consentToPriceIncreaseForTransaction(1)), tests::kDone);
  EXPECT_FALSE(shop.transaction(1).isPendingPriceIncreaseConsent);
}

TEST_F(PriceIncrease, WithoutConsentEndsTheSubscriptionWithItsPeriod) {
  (void)shop.session.requestPriceIncreaseConsentForTransaction(1);
  shop.wait(10 * kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  EXPECT_FALSE(shop.transaction(1).isPendingPriceIncreaseConsent);
}

TEST_F(PriceIncrease, WithConsentGoesOn) {
  (void)shop.session.requestPriceIncreaseConsentForTransaction(1);
  (void)shop.session.consentToPriceIncreaseForTransaction(1);
  shop.wait(200);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

TEST_F(PriceIncrease, DeclinedEndsTheSubscriptionWithItsPeriod) {
  (void)shop.session.requestPriceIncreaseConsentForTransaction(1);
  EXPECT_EQ(outcome(shop.session.declinePriceIncreaseForTransaction(1)), tests::kDone);
  EXPECT_FALSE(shop.transaction(1).isPendingPriceIncreaseConsent);
  EXPECT_FALSE(shop.transaction(1).autoRenewingEnabled);
  shop.wait(200);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
}

TEST_F(PriceIncrease, IsDroppedByAForcedRenewal) {
  (void)shop.session.requestPriceIncreaseConsentForTransaction(1);
  (void)shop.session.forceRenewalOfSubscription("monthly");
  EXPECT_FALSE(shop.transaction(2).isPendingPriceIncreaseConsent);
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(), SizeIs(3));
}

TEST_F(PriceIncrease, NobodyAnswersWhoWasNotAsked) {
  EXPECT_EQ(outcome(shop.session.consentToPriceIncreaseForTransaction(1)), tests::kInvalidAction);
  EXPECT_EQ(outcome(shop.session.declinePriceIncreaseForTransaction(1)), tests::kInvalidAction);
  EXPECT_TRUE(shop.transaction(1).autoRenewingEnabled);
}

TEST_F(PriceIncrease, OfWhatIsNotRunningIsAnError) {
  shop.own("gems");
  EXPECT_EQ(outcome(shop.session.requestPriceIncreaseConsentForTransaction(2)),
            tests::kNoSubscription);
  EXPECT_EQ(outcome(shop.session.requestPriceIncreaseConsentForTransaction(9)),
            tests::kNoTransaction);
  (void)shop.session.expireSubscription("monthly");
  EXPECT_EQ(outcome(shop.session.requestPriceIncreaseConsentForTransaction(1)),
            tests::kNoSubscription);
}

TEST_F(SubscriptionChange, FromWhatIsNotSoldAnyMoreBeginsAtOnce) {
  auto configuration = tests::subscriptions();
  configuration.settings.timeRate = tests::kFastRate;
  auto ledger = std::make_unique<MemoryLedger>();
  const auto now = shop.clock.sources().now().timeIntervalSince1970();
  LedgerEntries entries = {
      {.state = SKPaymentTransactionState::purchased,
       .finished = true,
       .payment = {.productIdentifier = "gone"},
       .transactionDate = Foundation::Date::sinceEpoch(now),
       .period = SubscriptionPeriod{.group = "readers",
                                    .ends = Foundation::Date::sinceEpoch(now + kFastMonth),
                                    .renewsAs = "gone"}}};
  ASSERT_FALSE(ledger->add(entries, Ledger::Durability::powerCut));
  StoreSession session(configuration, shop.clock.sources(), std::move(ledger));

  queue().addPayment(SKPayment({.productIdentifier = "basic"}));
  (void)turnUntilIdle();

  EXPECT_THAT(books(session), ElementsAre("1 gone purchased finished", "2 basic purchased"));
  EXPECT_FALSE(session.allTransactions().at(0).autoRenewingEnabled);
  EXPECT_TRUE(session.allTransactions().at(1).autoRenewingEnabled);
}

}  // namespace
}  // namespace StoreKit
