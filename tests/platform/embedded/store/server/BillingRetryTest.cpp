// Renewals that cannot be paid. At the shop's rate a month is 300 seconds, its grace 150, and the
// retry 600; a week is 180 seconds, its grace 154.

#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::kFastMonth;
using tests::outcome;
using tests::SubscriptionShop;

// "monthly", whose first renewal cannot be paid.
class BillingRetry : public tests::ObservedShop<SubscriptionShop> {
 protected:
  BillingRetry() {
    shop.own("monthly");
    shop.session.setBillingRetryOnRenewalEnabled(true);
    observer.forget();
  }

  std::string resolve() { return outcome(shop.session.resolveIssueForTransaction(1)); }
};

TEST_F(BillingRetry, BringsNoTransactionAndAnIssue) {
  shop.wait(kFastMonth);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  EXPECT_TRUE(shop.transaction(1).hasPurchaseIssue);
}

TEST_F(BillingRetry, HasNoIssueBeforeTheRenewalIsDue) {
  shop.wait(kFastMonth - 1);
  EXPECT_FALSE(shop.transaction(1).hasPurchaseIssue);
  EXPECT_EQ(resolve(), tests::kInvalidAction);
}

TEST_F(BillingRetry, ResolvedBringsTheRenewalFromNowOn) {
  shop.wait(kFastMonth + 100);
  EXPECT_EQ(resolve(), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: monthly purchased"));
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 400-700"));
  EXPECT_FALSE(shop.transaction(1).hasPurchaseIssue);
}

TEST_F(BillingRetry, ResolvedInTheGracePeriodFollowsWithoutAGap) {
  shop.session.setBillingGracePeriodEnabled(true);
  shop.wait(kFastMonth + 149);
  EXPECT_EQ(resolve(), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

TEST_F(BillingRetry, ResolvedAfterTheGracePeriodLeavesAGap) {
  shop.session.setBillingGracePeriodEnabled(true);
  shop.wait(kFastMonth + 150);
  EXPECT_EQ(resolve(), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 450-750"));
}

TEST_F(BillingRetry, OfAWeekHasItsOwnGracePeriod) {
  shop.session.setBillingGracePeriodEnabled(true);
  (void)shop.session.expireSubscription("monthly");
  shop.own("weekly");
  shop.wait(180 + 153);
  EXPECT_EQ(outcome(shop.session.resolveIssueForTransaction(2)), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-0", "weekly 0-180", "weekly 180-360"));
}

TEST_F(BillingRetry, GoesOnUntilItsTimeHasRunOut) {
  shop.wait(kFastMonth + 599);
  EXPECT_TRUE(shop.transaction(1).hasPurchaseIssue);
  EXPECT_EQ(resolve(), tests::kDone);
}

TEST_F(BillingRetry, WhoseTimeHasRunOutEndsTheSubscription) {
  shop.wait(kFastMonth + 600);
  EXPECT_FALSE(shop.transaction(1).hasPurchaseIssue);
  EXPECT_EQ(resolve(), tests::kInvalidAction);
  shop.session.setBillingRetryOnRenewalEnabled(false);
  shop.wait(kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
}

TEST_F(BillingRetry, WhoseTimeRanOutWhileTheStoreWasAwayEndsTheSubscription) {
  shop.wait(100 * kFastMonth);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
  EXPECT_EQ(resolve(), tests::kInvalidAction);
}

TEST_F(BillingRetry, SwitchedOffSucceeds) {
  shop.wait(kFastMonth + 100);
  shop.session.setBillingRetryOnRenewalEnabled(false);
  EXPECT_THAT(heard(), ElementsAre("updated: monthly purchased"));
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 400-700"));
}

TEST_F(BillingRetry, SwitchedOffInTheGracePeriodFollowsWithoutAGap) {
  shop.session.setBillingGracePeriodEnabled(true);
  shop.wait(kFastMonth + 100);
  shop.session.setBillingRetryOnRenewalEnabled(false);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

TEST_F(BillingRetry, SwitchedOffWhenItsTimeHasRunOutUnseenEndsTheSubscription) {
  shop.wait(kFastMonth);
  shop.clock.set(tests::ManualClock::kStart + 2 * kFastMonth + 600);
  shop.session.setBillingRetryOnRenewalEnabled(false);
  EXPECT_THAT(heard(), IsEmpty());
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
}

TEST_F(BillingRetry, SwitchedOffByAnotherProgramSucceedsWhenTheApplicationStarts) {
  shop.wait(kFastMonth + 100);
  goAway();
  (void)EmbeddedStore::current().ledger().set("billingRetryOnRenewalEnabled", "false");
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: monthly purchased"));
}

TEST_F(BillingRetry, ComesAgainWithTheNextRenewal) {
  shop.wait(kFastMonth + 100);
  (void)resolve();
  shop.wait(kFastMonth);
  EXPECT_TRUE(shop.transaction(2).hasPurchaseIssue);
  EXPECT_THAT(shop.periods(), SizeIs(2));
}

TEST_F(BillingRetry, IsResolvedOnce) {
  shop.wait(kFastMonth);
  (void)resolve();
  EXPECT_EQ(resolve(), tests::kInvalidAction);
  EXPECT_THAT(shop.periods(), SizeIs(2));
}

TEST_F(BillingRetry, LetsTheUserBuyAnew) {
  shop.wait(kFastMonth + 100);
  shop.own("monthly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 400-700"));
  EXPECT_FALSE(shop.transaction(1).hasPurchaseIssue);
}

TEST_F(BillingRetry, ForcedRenewalEndsIt) {
  shop.wait(kFastMonth + 100);
  EXPECT_EQ(outcome(shop.session.forceRenewalOfSubscription("monthly")), tests::kDone);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 400-700"));
}

TEST_F(BillingRetry, ExpiryEndsIt) {
  shop.wait(kFastMonth + 100);
  EXPECT_EQ(outcome(shop.session.expireSubscription("monthly")), tests::kDone);
  EXPECT_FALSE(shop.transaction(1).hasPurchaseIssue);
  EXPECT_EQ(resolve(), tests::kInvalidAction);
}

TEST_F(BillingRetry, DoesNotComeWhenTheRenewalIsSwitchedOff) {
  (void)shop.session.disableAutoRenewForTransaction(1);
  shop.wait(kFastMonth);
  EXPECT_FALSE(shop.transaction(1).hasPurchaseIssue);
}

TEST_F(BillingRetry, LastsThroughARelaunch) {
  shop.wait(kFastMonth + 100);
  shop.session.relaunch();
  EXPECT_THAT(heard(), IsEmpty());
  EXPECT_EQ(resolve(), tests::kDone);
  EXPECT_THAT(heard(), ElementsAre("updated: monthly purchased"));
}

TEST_F(BillingRetry, TheGraceSwitchAloneChangesNothing) {
  shop.session.setBillingRetryOnRenewalEnabled(false);
  shop.session.setBillingGracePeriodEnabled(true);
  shop.wait(kFastMonth + 100);
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300", "monthly 300-600"));
}

TEST_F(BillingRetry, PurchasesSucceedMeanwhile) {
  shop.wait(kFastMonth + 100);
  EXPECT_EQ(shop.buy("gems")->transactionState(), SKPaymentTransactionState::purchased);
}

}  // namespace
}  // namespace StoreKit
