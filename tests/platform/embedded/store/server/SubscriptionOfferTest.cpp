// Introductory and promotional offers.

#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using tests::kFastMonth;
using tests::ManualClock;
using tests::outcome;
using tests::productIn;
using tests::SubscriptionShop;
using Mode = SKProductDiscountPaymentMode;

StoreConfiguration::Offer offer(std::string identifier, const char* price, Mode mode,
                                SKProductSubscriptionPeriod length, std::uint64_t count = 1) {
  return {.offerID = std::move(identifier),
          .displayPrice = *Foundation::Decimal::fromString(price),
          .paymentMode = mode,
          .subscriptionPeriod = length,
          .numberOfPeriods = count};
}

// "monthly" costs 0.99 and has these promotional offers; "gold" begins with a free week.
StoreConfiguration shopWithOffers() {
  auto configuration = tests::subscriptions();
  productIn(configuration, "monthly").subscription->adHocOffers = {
      offer("cheap", "0.49", Mode::payAsYouGo, tests::kMonth, 3),
      offer("halfYear", "2.99", Mode::payUpFront, {6, SKProductPeriodUnit::month}),
      offer("free", "0", Mode::freeTrial, tests::kWeek, 2),
      offer("dear", "0.99", Mode::payAsYouGo, tests::kMonth)};
  productIn(configuration, "gold").subscription->introductoryOffer =
      offer("", "0", Mode::freeTrial, tests::kWeek);
  productIn(configuration, "monthly").subscription->introductoryOffer =
      offer("", "0.49", Mode::payAsYouGo, tests::kMonth, 3);
  productIn(configuration, "yearly").subscription->introductoryOffer =
      offer("", "1.99", Mode::payUpFront, tests::kMonth, 3);
  return configuration;
}

class SubscriptionOffer : public tests::ObservedShop<SubscriptionShop> {
 protected:
  SubscriptionOffer() : ObservedShop(shopWithOffers()) {}

  // What a server could have signed now.
  [[nodiscard]] SKPaymentDiscount signedNow(std::string identifier = "cheap") const {
    return {.identifier = std::move(identifier),
            .keyIdentifier = "KEY",
            .nonce = "2f1a7c1e-7f0a-4d0e-9b56-0a6f0c4a8f11",
            .signature = "c2lnbmF0dXJl",
            .timestamp = static_cast<std::int64_t>(shop.clock.now() * 1000)};
  }

  // Buys with the offer; the error's code, or -1 when it was purchased.
  std::int64_t buyWith(const SKPaymentDiscount& discount, const std::string& product = "monthly") {
    queue().addPayment(SKPayment({.productIdentifier = product, .paymentDiscount = discount}));
    (void)tests::turnUntilIdle();
    const auto bought = queue().transactions().back();
    finish(bought);
    return bought->error() ? bought->error()->code() : -1;
  }

  // Somebody whose subscription has lapsed, at 1000 seconds.
  void beLapsed() {
    shop.own("other");
    (void)shop.session.expireSubscription("other");
    shop.wait(1000);
  }
};

TEST_F(SubscriptionOffer, AFreeIntroductionIsTheFirstPeriod) {
  shop.own("gold");
  EXPECT_THAT(shop.periods(), ElementsAre("gold 0-180"));
  shop.wait(180);
  EXPECT_THAT(shop.periods(), ElementsAre("gold 0-180", "gold 180-480"));
}

TEST_F(SubscriptionOffer, AnIntroductionPaidUpFrontIsOneLongPeriod) {
  shop.own("yearly");
  EXPECT_THAT(shop.periods(), ElementsAre("yearly 0-900"));
}

TEST_F(SubscriptionOffer, AnIntroductionPaidAsOneGoesIsOrdinaryPeriods) {
  shop.own("monthly");
  EXPECT_THAT(shop.periods(), ElementsAre("monthly 0-300"));
}

TEST_F(SubscriptionOffer, AnIntroductionIsForThoseWhoHadNothingOfTheGroup) {
  beLapsed();
  shop.own("gold");
  EXPECT_EQ(shop.periods().back(), "gold 1000-1300");
}

TEST_F(SubscriptionOffer, AnIntroductionIsNotForAnUpgrade) {
  shop.own("other");
  shop.own("gold");
  EXPECT_EQ(shop.periods().back(), "gold 0-300");
}

TEST_F(SubscriptionOffer, AnIntroductionIsNotLostToAnotherGroup) {
  shop.own("weekly");
  shop.own("gold");
  EXPECT_EQ(shop.periods().back(), "gold 0-180");
}

TEST_F(SubscriptionOffer, AnIntroductionIsNotLostToAPurchaseThatFailed) {
  shop.session.cancelPurchases();
  shop.own("gold");
  shop.own("gold");
  EXPECT_THAT(shop.periods(), ElementsAre("gold 0-180"));
}

TEST_F(SubscriptionOffer, AnIntroductionComesBackWithClearedTransactions) {
  shop.own("gold");
  (void)shop.session.clearTransactions();
  shop.own("gold");
  EXPECT_THAT(shop.periods(), ElementsAre("gold 0-180"));
}

TEST_F(SubscriptionOffer, APromotionIsForThoseWhoseSubscriptionLapsed) {
  beLapsed();
  EXPECT_EQ(buyWith(signedNow("cheap")), -1);
  EXPECT_EQ(shop.periods().back(), "monthly 1000-1300");
}

TEST_F(SubscriptionOffer, APromotionIsForThoseWhoAreSubscribed) {
  shop.own("basic");
  EXPECT_EQ(buyWith(signedNow("cheap")), -1);
  EXPECT_EQ(shop.periods().back(), "monthly 0-300");
}

TEST_F(SubscriptionOffer, APromotionOfALowerLevelIsThatOfTheNextPeriodAlone) {
  shop.own("gold");  // a free week
  EXPECT_EQ(buyWith(signedNow("halfYear")), -1);
  shop.wait(tests::kFastWeek);
  EXPECT_THAT(shop.periods(), ElementsAre("gold 0-180", "monthly 180-1980"));
  shop.wait(1800);
  EXPECT_EQ(shop.periods().back(), "monthly 1980-2280");
}

TEST_F(SubscriptionOffer, APromotionOfTheRunningProductIsThatOfTheNextPeriod) {
  shop.own("basic");
  shop.own("monthly");
  EXPECT_EQ(buyWith(signedNow("halfYear")), -1);
  shop.wait(tests::kFastMonth);
  EXPECT_EQ(shop.periods().back(), "monthly 300-2100");
}

TEST_F(SubscriptionOffer, APromotionThatWaitsIsForgottenWhenTheProductIsBoughtWithoutIt) {
  shop.own("basic");
  shop.own("monthly");
  EXPECT_EQ(buyWith(signedNow("halfYear")), -1);
  shop.own("monthly");
  shop.wait(tests::kFastMonth);
  EXPECT_EQ(shop.periods().back(), "monthly 300-600");
}

TEST_F(SubscriptionOffer, APromotionPaidUpFrontIsOneLongPeriod) {
  beLapsed();
  EXPECT_EQ(buyWith(signedNow("halfYear")), -1);
  EXPECT_EQ(shop.periods().back(), "monthly 1000-2800");
  shop.wait(1800);
  EXPECT_EQ(shop.periods().back(), "monthly 2800-3100");
}

TEST_F(SubscriptionOffer, AFreePromotionIsOneLongPeriod) {
  beLapsed();
  EXPECT_EQ(buyWith(signedNow("free")), -1);
  EXPECT_EQ(shop.periods().back(), "monthly 1000-1360");
}

TEST_F(SubscriptionOffer, APromotionKeepsWhatWasSignedInItsPayment) {
  beLapsed();
  queue().addPayment(
      SKPayment({.productIdentifier = "monthly", .paymentDiscount = signedNow("cheap")}));
  (void)tests::turnUntilIdle();
  const auto discount = queue().transactions().back()->payment()->paymentDiscount();
  ASSERT_TRUE(discount);
  EXPECT_EQ(discount->identifier, "cheap");
  EXPECT_EQ(discount->nonce, signedNow().nonce);
}

TEST_F(SubscriptionOffer, APromotionDoesNotComeAgainWithTheRenewal) {
  beLapsed();
  (void)buyWith(signedNow("free"));
  shop.wait(360);
  EXPECT_EQ(shop.periods().back(), "monthly 1360-1660");
  EXPECT_FALSE(queue().transactions().back()->payment()->paymentDiscount());
}

TEST_F(SubscriptionOffer, APromotionForSomebodyWhoNeverSubscribedFailsWith18) {
  EXPECT_EQ(buyWith(signedNow()), 18);
  shop.own("weekly");  // of another group
  EXPECT_EQ(buyWith(signedNow()), 18);
}

TEST_F(SubscriptionOffer, AnUnknownPromotionFailsWith11) {
  beLapsed();
  EXPECT_EQ(buyWith(signedNow("nothing")), 11);
  EXPECT_EQ(buyWith(signedNow("cheap"), "gold"), 11);
  EXPECT_EQ(buyWith(signedNow("cheap"), "gems"), 11);
}

TEST_F(SubscriptionOffer, APromotionThatCostsNoLessFailsWith14) {
  beLapsed();
  EXPECT_EQ(buyWith(signedNow("dear")), 14);
}

TEST_F(SubscriptionOffer, APromotionWithAPartMissingFailsWith13) {
  beLapsed();
  auto discount = signedNow("");
  EXPECT_EQ(buyWith(discount), 13);
  discount = signedNow();
  discount.keyIdentifier = "";
  EXPECT_EQ(buyWith(discount), 13);
  discount = signedNow();
  discount.nonce = "";
  EXPECT_EQ(buyWith(discount), 13);
  discount = signedNow();
  discount.signature = "";
  EXPECT_EQ(buyWith(discount), 13);
  discount = signedNow();
  discount.timestamp = 0;
  EXPECT_EQ(buyWith(discount), 13);
}

TEST_F(SubscriptionOffer, ANonceThatIsNoLowerCaseUUIDFailsWith12) {
  beLapsed();
  for (const char* nonce :
       {"2F1A7C1E-7F0A-4D0E-9B56-0A6F0C4A8F11", "2f1a7c1e", "nonce",
        "2f1a7c1e+7f0a-4d0e-9b56-0a6f0c4a8f11", "2f1a7c1e-7f0a-4d0e-9b56-0a6f0c4a8f1g",
        "2f1a7c1e-7f0a-4d0e-9b56-0a6f0c4a8f111"}) {
    auto discount = signedNow();
    discount.nonce = nonce;
    EXPECT_EQ(buyWith(discount), 12) << nonce;
  }
}

TEST_F(SubscriptionOffer, ASignatureThatIsNoBase64FailsWith12) {
  beLapsed();
  auto discount = signedNow();
  discount.signature = "not a signature!";
  EXPECT_EQ(buyWith(discount), 12);
}

TEST_F(SubscriptionOffer, ASignatureLastsTwentyFourHours) {
  beLapsed();
  auto discount = signedNow();
  discount.timestamp -= 24 * 60 * 60 * 1000;
  EXPECT_EQ(buyWith(discount), -1);
  discount.timestamp -= 1;
  EXPECT_EQ(buyWith(discount), 12);
}

TEST_F(SubscriptionOffer, ASignatureMayBeFiveMinutesAheadAndNoMore) {
  beLapsed();
  auto discount = signedNow();
  discount.timestamp += 5 * 60 * 1000;
  EXPECT_EQ(buyWith(discount), -1);
  discount.timestamp += 1;
  EXPECT_EQ(buyWith(discount), 12);
}

// What is looked for first is what is said.
TEST_F(SubscriptionOffer, OfSeveralThingsThatAreWrongTheFirstOfTheListIsSaid) {
  auto discount = signedNow("nothing");
  discount.nonce = "nonce";
  EXPECT_EQ(buyWith(discount), 11);
  discount.identifier = "dear";
  EXPECT_EQ(buyWith(discount), 12);
  EXPECT_EQ(buyWith(signedNow("dear")), 14);
  EXPECT_EQ(buyWith(signedNow("cheap")), 18);
}

TEST_F(SubscriptionOffer, ARefusedPromotionBeginsNoPeriod) {
  EXPECT_EQ(buyWith(signedNow()), 18);
  EXPECT_THAT(shop.periods(), SizeIs(0));
}

TEST_F(SubscriptionOffer, AnUnknownProductIsSaidBeforeThePromotion) {
  EXPECT_EQ(buyWith(signedNow(), "nothing"), 3);
}

}  // namespace
}  // namespace StoreKit
