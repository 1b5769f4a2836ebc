#include "platform/StoreKit/SKProductsRequest.hpp"
#include "tests/fakes/ObservedShop.hpp"
#include "tests/fakes/RecordingDelegate.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::OpenShop;
using tests::turnUntilIdle;

constexpr std::int64_t kBought = -1;

class SimulatedErrorsTest : public tests::ObservedShop<OpenShop> {
 protected:
  // The codes of so many purchases, one after the other.
  std::vector<std::int64_t> buy(std::size_t count) {
    std::vector<std::int64_t> codes;
    for (std::size_t i = 0; i < count; ++i) {
      const auto error = shop.buy("gems")->error();
      codes.push_back(error ? error->code() : kBought);
    }
    return codes;
  }

  // The codes of so many products requests.
  static std::vector<std::int64_t> ask(std::size_t count) {
    std::vector<std::int64_t> codes;
    for (std::size_t i = 0; i < count; ++i) {
      const auto delegate = std::make_shared<tests::RecordingDelegate>();
      SKProductsRequest request({"gems"});
      request.setDelegate(delegate);
      request.start();
      (void)turnUntilIdle();
      for (const auto& error : delegate->errors) codes.push_back(error.code());
      codes.insert(codes.end(), delegate->responses.size(), kBought);
    }
    return codes;
  }

  const Foundation::NSError noNetwork{"NSURLErrorDomain", -1009};
};

TEST_F(SimulatedErrorsTest, OfPurchasesHappenOnce) {
  shop.session.failPurchases(SKError::Code::clientInvalid);
  EXPECT_THAT(buy(2), ElementsAre(1, kBought));
}

TEST_F(SimulatedErrorsTest, OfPurchasesHappenSoManyTimes) {
  shop.session.failPurchases(SKError::Code::clientInvalid, 3);
  EXPECT_THAT(buy(5), ElementsAre(1, 1, 1, kBought, kBought));
}

TEST_F(SimulatedErrorsTest, OfPurchasesHappenInTheOrderOfTheOrders) {
  shop.session.failPurchases(SKError::Code::clientInvalid, 2);
  shop.session.cancelPurchases();
  shop.session.failPurchases(SKError::Code::cloudServiceRevoked);
  EXPECT_THAT(buy(5), ElementsAre(1, 1, 2, 8, kBought));
}

TEST_F(SimulatedErrorsTest, OfPurchasesHappenAlways) {
  shop.session.failPurchases(SKError::Code::clientInvalid, kAlways);
  EXPECT_THAT(buy(20), testing::Each(1));
}

TEST_F(SimulatedErrorsTest, OfPurchasesAreTakenBackWithNone) {
  shop.session.failPurchases(SKError::Code::clientInvalid, kAlways);
  shop.session.cancelPurchases(3);
  shop.session.failPurchases(SKError::Code::unknown, 0);
  EXPECT_THAT(buy(2), ElementsAre(kBought, kBought));
}

TEST_F(SimulatedErrorsTest, OfPurchasesAreTakenBackByTheReset) {
  shop.session.failPurchases(SKError::Code::clientInvalid, kAlways);
  shop.session.resetToDefaultState();
  EXPECT_THAT(buy(1), ElementsAre(kBought));
}

TEST_F(SimulatedErrorsTest, OfPurchasesOutliveARelaunch) {
  shop.session.failPurchases(SKError::Code::clientInvalid);
  shop.session.relaunch();
  EXPECT_THAT(buy(2), ElementsAre(1, kBought));
}

TEST_F(SimulatedErrorsTest, OfPurchasesOfOneTurnGoToThemInTheirOrder) {
  shop.session.failPurchases(SKError::Code::clientInvalid);
  shop.add("gems");
  shop.add("crown");
  EXPECT_EQ(heard().back(), "updated: gems failed, crown purchased");
}

TEST_F(SimulatedErrorsTest, OfPurchasesAreNotUsedUpBySomebodyElsesBeingFaster) {
  shop.session.failPurchases(SKError::Code::clientInvalid);
  shop.ledger->conflicts = 3;
  EXPECT_THAT(buy(2), ElementsAre(1, kBought));
}

TEST_F(SimulatedErrorsTest, OfProductsRequestsHappenOnce) {
  shop.session.failProductsRequests(noNetwork);
  EXPECT_THAT(ask(2), ElementsAre(-1009, kBought));
}

TEST_F(SimulatedErrorsTest, OfProductsRequestsHappenSoManyTimes) {
  shop.session.failProductsRequests(noNetwork, 2);
  EXPECT_THAT(ask(3), ElementsAre(-1009, -1009, kBought));
}

TEST_F(SimulatedErrorsTest, OfProductsRequestsHappenAlwaysUntilTheyAreTakenBack) {
  shop.session.failProductsRequests(noNetwork, kAlways);
  EXPECT_THAT(ask(5), testing::Each(-1009));
  shop.session.failProductsRequests(noNetwork, 0);
  EXPECT_THAT(ask(1), ElementsAre(kBought));
}

TEST_F(SimulatedErrorsTest, OfProductsRequestsLeavePurchasesAlone) {
  shop.session.failProductsRequests(noNetwork);
  EXPECT_THAT(buy(1), ElementsAre(kBought));
  EXPECT_THAT(ask(1), ElementsAre(-1009));
}

TEST_F(SimulatedErrorsTest, OfAProductsRequestThatWasCancelledAreLeftForTheNext) {
  shop.session.failProductsRequests(noNetwork);
  SKProductsRequest request({"gems"});
  request.start();
  request.cancel();
  (void)turnUntilIdle();
  EXPECT_THAT(ask(2), ElementsAre(-1009, kBought));
}

TEST_F(SimulatedErrorsTest, EveryTransactionFailsWithTheErrorThatIsSet) {
  shop.session.setFailTransactionsEnabled(true);
  EXPECT_THAT(buy(1), ElementsAre(0));
  shop.session.setFailureError(SKError::Code::invalidSignature);
  EXPECT_EQ(shop.session.failureError(), SKError::Code::invalidSignature);
  EXPECT_THAT(buy(2), ElementsAre(12, 12));
  shop.session.setFailTransactionsEnabled(false);
  EXPECT_THAT(buy(1), ElementsAre(kBought));
}

TEST_F(SimulatedErrorsTest, AnUnknownProductIsSaidBeforeTheErrorThatIsSet) {
  shop.session.setFailTransactionsEnabled(true);
  EXPECT_EQ(shop.buy("nothing")->error()->code(), 3);
}

TEST_F(SimulatedErrorsTest, PaymentsThatAreNotAllowedAreSaidBeforeAnUnknownProduct) {
  shop.session.setCanMakePayments(false);
  EXPECT_FALSE(SKPaymentQueue::canMakePayments());
  EXPECT_EQ(shop.buy("nothing")->error()->code(), 4);
}

using SimulatedRestore = SimulatedErrorsTest;

TEST_F(SimulatedRestore, FailsBeforeAnythingIsRestored) {
  shop.own("crown");
  shop.session.failRestore(noNetwork);
  EXPECT_THAT(heardOfRestore(), ElementsAre("restore failed: " + noNetwork.localizedDescription()));
  EXPECT_EQ(observer.restoreErrors.back().code(), -1009);
  EXPECT_THAT(queue().transactions(), IsEmpty());
}

TEST_F(SimulatedRestore, FailsHalfWay) {
  shop.own("crown");
  shop.own("cape");
  shop.session.failRestore(SKError(SKError::Code::paymentCancelled).nsError(), 1);
  EXPECT_THAT(heardOfRestore(),
              ElementsAre("updated: crown restored", testing::StartsWith("restore failed: ")));
  EXPECT_EQ(observer.restoreErrors.back().code(), 2);
}

TEST_F(SimulatedRestore, FailsAfterEverythingThatThereIs) {
  shop.own("crown");
  shop.session.failRestore(noNetwork, 99);
  EXPECT_THAT(heardOfRestore(),
              ElementsAre("updated: crown restored", testing::StartsWith("restore failed: ")));
}

TEST_F(SimulatedRestore, FailsOnceAndInTheOrderOfTheOrders) {
  shop.own("crown");
  shop.session.failRestore(noNetwork);
  shop.session.failRestore(noNetwork, 1);
  EXPECT_EQ(heardOfRestore().size(), 1U);
  EXPECT_THAT(heardOfRestore(), ElementsAre("updated: crown restored", testing::_));
  EXPECT_THAT(heardOfRestore(), ElementsAre("updated: crown restored", "restore finished"));
}

TEST_F(SimulatedRestore, WhatCameBeforeTheFailureComesBackUntilItIsFinished) {
  shop.own("crown");
  shop.session.failRestore(noNetwork, 1);
  (void)heardOfRestore();
  shop.session.relaunch();
  EXPECT_THAT(heard(), ElementsAre("updated: crown restored"));
}

TEST_F(SimulatedRestore, FailureIsTakenBackByTheReset) {
  shop.session.failRestore(noNetwork);
  shop.session.resetToDefaultState();
  EXPECT_THAT(heardOfRestore(), ElementsAre("restore finished"));
}

}  // namespace
}  // namespace StoreKit
