#include "platform/StoreKit/SKProductsRequest.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/RecordingDelegate.hpp"
#include "tests/fakes/SubscriptionShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::books;
using tests::outcome;
using tests::SubscriptionShop;
using tests::turn;
using tests::turnUntilIdle;

// A store that takes ten seconds to answer.
class SlowAnswers : public tests::ObservedShop<SubscriptionShop> {
 protected:
  std::shared_ptr<tests::RecordingDelegate> delegate = std::make_shared<tests::RecordingDelegate>();
  SKProductsRequest request{{"gems"}};

  SlowAnswers() {
    EXPECT_EQ(outcome(shop.session.setAnswerDelay(10)), tests::kDone);
    request.setDelegate(delegate);
  }

  // What the observer hears while so many seconds go by.
  const tests::Journal& heardIn(double seconds) {
    observer.forget();
    shop.wait(seconds);
    return observer.journal();
  }
};

TEST_F(SlowAnswers, APurchaseIsPurchasingAtOnceAndPurchasedWhenTheTimeHasCome) {
  shop.add("gems");
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchasing"));
  EXPECT_THAT(heardIn(9.5), IsEmpty());
  EXPECT_THAT(heardIn(0.5), ElementsAre("updated: gems purchased"));
}

TEST_F(SlowAnswers, APurchaseIsDatedWhenItSucceeds) {
  shop.add("gems");
  (void)heard();
  (void)heardIn(12);
  EXPECT_EQ(SubscriptionShop::sinceStart(shop.transaction(1).purchaseDate), "12");
}

TEST_F(SlowAnswers, EachPurchaseWaitsItsOwnTime) {
  shop.add("gems");
  (void)heard();
  EXPECT_THAT(heardIn(6), IsEmpty());
  shop.add("crown");
  EXPECT_THAT(heard(), ElementsAre("updated: crown purchasing"));
  EXPECT_THAT(heardIn(4), ElementsAre("updated: gems purchased"));
  EXPECT_THAT(heardIn(5.5), IsEmpty());
  EXPECT_THAT(heardIn(0.5), ElementsAre("updated: crown purchased"));
}

TEST_F(SlowAnswers, APurchaseMayBeOvertakenByOneOfAFasterTime) {
  shop.add("gems");
  (void)heard();
  (void)shop.session.setAnswerDelay(0);
  shop.add("crown");
  EXPECT_THAT(heard(), ElementsAre("updated: crown purchasing", "updated: crown purchased"));
  EXPECT_THAT(heardIn(10), ElementsAre("updated: gems purchased"));
}

TEST_F(SlowAnswers, APurchaseThatIsCarriedOnAfterARelaunchWaitsAnew) {
  shop.add("gems");
  (void)heard();
  (void)heardIn(6);
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchasing"));
  EXPECT_THAT(heardIn(6), IsEmpty());
  EXPECT_THAT(heardIn(4), ElementsAre("updated: gems purchased"));
}

TEST_F(SlowAnswers, APurchaseIsJudgedByTheSettingsOfTheMomentOfItsOutcome) {
  shop.add("gems");
  (void)heard();
  shop.session.setCanMakePayments(false);
  EXPECT_THAT(heardIn(10), ElementsAre("updated: gems failed"));
  EXPECT_EQ(observer.seen.at(0)->error()->code(), 4);
}

TEST_F(SlowAnswers, APurchaseWhoseTimeComesWhileNobodyObservesIsSettledForTheNext) {
  shop.add("gems");
  (void)heard();
  observer.stop();
  shop.wait(10);
  EXPECT_THAT(books(shop.session), ElementsAre("1 gems purchasing"));
  EXPECT_THAT(heardAtStart(), ElementsAre("updated: gems purchased"));
}

TEST_F(SlowAnswers, AnObserverThatComesDoesNotHurryAPurchase) {
  shop.add("gems");
  (void)heard();
  observer.stop();
  EXPECT_THAT(heardAtStart(), IsEmpty());
  EXPECT_THAT(heardIn(10), ElementsAre("updated: gems purchased"));
}

TEST_F(SlowAnswers, AStorePurchaseIsAskedAboutAtOnceAndWaitsThen) {
  observer.onStorePayment = [](const auto&, const auto&) { return true; };
  (void)shop.session.beginStorePurchase("gems");
  EXPECT_THAT(heard(), ElementsAre("asked: gems", "updated: gems purchasing"));
  EXPECT_THAT(heardIn(10), ElementsAre("updated: gems purchased"));
}

TEST_F(SlowAnswers, ARestoreWaits) {
  (void)shop.session.setAnswerDelay(0);
  shop.own("crown");
  (void)shop.session.setAnswerDelay(10);
  EXPECT_THAT(heardOfRestore(), IsEmpty());
  EXPECT_THAT(heardIn(9.5), IsEmpty());
  EXPECT_THAT(heardIn(0.5), ElementsAre("updated: crown restored", "restore finished"));
}

TEST_F(SlowAnswers, EachRestoreWaitsItsOwnTime) {
  EXPECT_THAT(heardOfRestore(), IsEmpty());
  (void)heardIn(6);
  EXPECT_THAT(heardOfRestore(), IsEmpty());
  EXPECT_THAT(heardIn(4), ElementsAre("restore finished"));
  EXPECT_THAT(heardIn(5.5), IsEmpty());
  EXPECT_THAT(heardIn(0.5), ElementsAre("restore finished"));
}

TEST_F(SlowAnswers, AProductsRequestWaits) {
  request.start();
  shop.wait(9.5);
  EXPECT_EQ(delegate->answers(), 0U);
  shop.wait(0.5);
  EXPECT_EQ(delegate->responses.size(), 1U);
}

TEST_F(SlowAnswers, AProductsRequestThatIsCancelledMeanwhileIsNotAnswered) {
  request.start();
  shop.wait(5);
  request.cancel();
  shop.wait(5);
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(SlowAnswers, AProductsRequestThatIsThrownAwayMeanwhileIsNotAnswered) {
  auto another = std::make_unique<SKProductsRequest>(std::set<std::string>{"gems"});
  another->setDelegate(delegate);
  another->start();
  shop.wait(5);
  another.reset();
  shop.wait(5);
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(SlowAnswers, AnotherStoreAnswersTheProductsRequestsThatWereWaiting) {
  request.start();
  (void)turnUntilIdle();
  const StoreSession another(tests::shop());
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->responses.size(), 1U);
}

TEST_F(SlowAnswers, AnotherStoreForgetsThePurchasesThatWereWaiting) {
  shop.add("gems");
  (void)heard();
  const StoreSession another(tests::shop(), shop.clock.sources());
  EXPECT_THAT(heard(), IsEmpty());
  shop.wait(100);
  EXPECT_THAT(books(another), IsEmpty());
}

TEST_F(SlowAnswers, WhatHappensAwayFromTheApplicationDoesNotWait) {
  (void)shop.session.buyProduct("gems");
  EXPECT_THAT(heard(), ElementsAre("updated: gems purchased"));
}

TEST_F(SlowAnswers, AClockThatJumpsFarAheadAnswersEverythingInItsOrder) {
  shop.add("gems");
  (void)heard();
  (void)heardIn(1);
  shop.add("crown");
  (void)heard();
  EXPECT_THAT(heardIn(1000), ElementsAre("updated: gems purchased", "updated: crown purchased"));
}

TEST_F(SlowAnswers, AClockThatIsSetBackLetsThemWaitLonger) {
  shop.add("gems");
  (void)heard();
  EXPECT_THAT(heardIn(-100), IsEmpty());
  EXPECT_THAT(heardIn(105), IsEmpty());
  EXPECT_THAT(heardIn(5), ElementsAre("updated: gems purchased"));
}

TEST_F(SlowAnswers, ADelayThatIsNoneIsRefused) {
  EXPECT_EQ(outcome(shop.session.setAnswerDelay(-1)), tests::kInvalidSetting);
  EXPECT_EQ(outcome(shop.session.setAnswerDelay(std::nan(""))), tests::kInvalidSetting);
  EXPECT_EQ(outcome(shop.session.setAnswerDelay(INFINITY)), tests::kInvalidSetting);
  EXPECT_EQ(shop.session.answerDelay(), 10);
}

}  // namespace
}  // namespace StoreKit
