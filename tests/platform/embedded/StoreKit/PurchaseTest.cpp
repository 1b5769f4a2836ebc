#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/OpenShop.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::JournalingObserver;
using tests::OpenShop;
using tests::turn;
using tests::turnUntilIdle;

class Purchase : public testing::Test {
 protected:
  OpenShop shop;
  JournalingObserver observer;

  Purchase() {
    observer.observe();
    (void)turnUntilIdle();
  }
};

TEST_F(Purchase, IsNotReportedInsideAddPayment) {
  shop.add("gems");
  EXPECT_THAT(observer.journal(), IsEmpty());
}

TEST_F(Purchase, ReportsPurchasingFirstAndTheOutcomeInALaterTurn) {
  shop.add("gems");
  turn();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchasing"));
  turn();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchasing", "updated: gems purchased"));
  (void)turnUntilIdle();
  EXPECT_EQ(observer.journal().size(), 2U);
}

TEST_F(Purchase, OutcomeChangesTheTransactionInPlace) {
  shop.add("gems");
  turn();
  const auto transaction = observer.seen.at(0);
  turn();
  EXPECT_EQ(transaction->transactionState(), SKPaymentTransactionState::purchased);
  EXPECT_EQ(observer.seen.at(1), transaction);
}

TEST_F(Purchase, PurchasingHasNoFieldButThePayment) {
  shop.add("gems", 2);
  turn();
  const auto& transaction = *observer.seen.at(0);
  EXPECT_EQ(transaction.payment()->productIdentifier(), "gems");
  EXPECT_EQ(transaction.payment()->quantity(), 2);
  EXPECT_FALSE(transaction.transactionIdentifier());
  EXPECT_FALSE(transaction.transactionDate());
  EXPECT_FALSE(transaction.error());
  EXPECT_EQ(transaction.originalTransaction(), nullptr);
}

TEST_F(Purchase, PurchasedHasIdentifierAndDateOnly) {
  const auto transaction = shop.buy("gems");
  EXPECT_EQ(transaction->transactionIdentifier(), "101");
  EXPECT_EQ(transaction->transactionDate(), Foundation::Date::sinceEpoch(1001));
  EXPECT_FALSE(transaction->error());
  EXPECT_EQ(transaction->originalTransaction(), nullptr);
  EXPECT_THAT(transaction->downloads(), IsEmpty());
}

TEST_F(Purchase, FailedHasTheErrorOnly) {
  shop.session.cancelPurchases();
  const auto transaction = shop.buy("gems");
  ASSERT_TRUE(transaction->error());
  EXPECT_EQ(transaction->error()->domain(), SKErrorDomain);
  EXPECT_EQ(transaction->error()->code(), 2);
  EXPECT_FALSE(transaction->transactionIdentifier());
  EXPECT_FALSE(transaction->transactionDate());
  EXPECT_EQ(transaction->originalTransaction(), nullptr);
}

TEST_F(Purchase, SeveralOfOneTurnAreOneBatchInTheirOrder) {
  shop.add("gems");
  shop.add("crown");
  shop.add("club");
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchasing, crown purchasing, club purchasing",
                          "updated: gems purchased, crown purchased, club purchased"));
}

TEST_F(Purchase, OneBatchMayMixOutcomes) {
  shop.session.cancelPurchases();
  shop.add("gems");
  shop.add("crown");
  (void)turnUntilIdle();
  EXPECT_EQ(observer.journal().back(), "updated: gems failed, crown purchased");
}

TEST_F(Purchase, SamePaymentTwiceMakesTwoTransactions) {
  const SKPayment payment({.productIdentifier = "gems"});
  OpenShop::queue().addPayment(payment);
  OpenShop::queue().addPayment(payment);
  (void)turnUntilIdle();
  const auto transactions = OpenShop::queue().transactions();
  ASSERT_EQ(transactions.size(), 2U);
  EXPECT_FALSE(transactions[0]->isEqual(*transactions[1]));
  EXPECT_NE(transactions[0]->transactionIdentifier(), transactions[1]->transactionIdentifier());
}

TEST_F(Purchase, PaymentIsCopiedWhenItIsAdded) {
  SKMutablePayment payment(shop.session.catalogue().find("gems")->product);
  payment.setQuantity(3);
  OpenShop::queue().addPayment(payment);
  payment.setQuantity(5);
  (void)turnUntilIdle();
  EXPECT_EQ(observer.seen.at(0)->payment()->quantity(), 3);
}

TEST_F(Purchase, EveryFieldOfThePaymentArrives) {
  OpenShop::queue().addPayment(SKPayment({.productIdentifier = "gems",
                                          .quantity = 4,
                                          .requestData = {{std::byte{1}}},
                                          .applicationUsername = "ann",
                                          .paymentDiscount = SKPaymentDiscount{"half"}}));
  (void)turnUntilIdle();
  const auto payment = observer.seen.at(0)->payment();
  EXPECT_EQ(payment->quantity(), 4);
  EXPECT_EQ(payment->requestData(), std::vector{std::byte{1}});
  EXPECT_EQ(payment->applicationUsername(), "ann");
  ASSERT_TRUE(payment->paymentDiscount());
  EXPECT_EQ(payment->paymentDiscount()->identifier, "half");
}

TEST_F(Purchase, EmptyUserNameStaysEmptyAndNotAbsent) {
  EXPECT_EQ(shop.buy("gems", "")->payment()->applicationUsername(), "");
  EXPECT_EQ(shop.buy("gems")->payment()->applicationUsername(), std::nullopt);
}

TEST_F(Purchase, TransactionsListsTheUnfinishedInTheOrderTheyWereAdded) {
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
  shop.add("gems");
  EXPECT_THAT(OpenShop::queue().transactions(), IsEmpty());
  shop.add("crown");
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe(OpenShop::queue().transactions()), "gems purchased, crown purchased");
}

TEST_F(Purchase, OfAnOwnedProductIsAnOrdinaryOne) {
  shop.own("crown");
  EXPECT_EQ(shop.buy("crown")->transactionState(), SKPaymentTransactionState::purchased);
}

}  // namespace
}  // namespace StoreKit
