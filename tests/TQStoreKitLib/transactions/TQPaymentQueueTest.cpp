#include "TQStoreKitLib/transactions/TQPaymentQueue.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/EmbeddedShop.hpp"
#include "tests/fakes/FakeProduct.hpp"
#include "tests/fakes/RecordingObserver.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKMutablePayment;
using StoreKit::SKPaymentQueue;

TEST(PlatformPaymentQueue, IsOneObject) {
  const EmbeddedShop shop;
  EXPECT_EQ(&platformPaymentQueue(), &platformPaymentQueue());
}

TEST(PlatformPaymentQueue, AddedObserverHearsOfAddedPayments) {
  const EmbeddedShop shop;
  RecordingObserver observer;
  platformPaymentQueue().add(observer);
  SKMutablePayment payment(aProduct("gems"));
  payment.setQuantity(3);

  platformPaymentQueue().add(payment);
  shop.settle();

  ASSERT_FALSE(observer.updated.empty());
  EXPECT_EQ(observer.updated.back()->payment()->productIdentifier(), "gems");
  EXPECT_EQ(observer.updated.back()->payment()->quantity(), 3);
  platformPaymentQueue().remove(observer);
}

TEST(PlatformPaymentQueue, RemovedObserverHearsNothing) {
  const EmbeddedShop shop;
  RecordingObserver observer;
  platformPaymentQueue().add(observer);
  platformPaymentQueue().remove(observer);

  platformPaymentQueue().add(SKMutablePayment(aProduct("gems")));
  shop.settle();

  EXPECT_TRUE(observer.updated.empty());
}

TEST(PlatformPaymentQueue, FinishedTransactionLeavesThePlatformsQueue) {
  const EmbeddedShop shop;
  RecordingObserver observer;
  platformPaymentQueue().add(observer);
  platformPaymentQueue().add(SKMutablePayment(aProduct("gems")));
  shop.settle();

  platformPaymentQueue().finishTransaction(observer.updated.back());
  shop.settle();

  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
  platformPaymentQueue().remove(observer);
}

TEST(PlatformPaymentQueue, RestoreIsAskedForWithTheUsersName) {
  const EmbeddedShop shop;
  RecordingObserver observer;
  platformPaymentQueue().add(observer);
  SKMutablePayment payment(aProduct("level"));
  payment.setApplicationUsername("anna");
  platformPaymentQueue().add(payment);
  shop.settle();
  platformPaymentQueue().finishTransaction(observer.updated.back());
  shop.settle();
  observer.updated.clear();

  platformPaymentQueue().restoreCompletedTransactions("bert");
  shop.settle();
  EXPECT_TRUE(observer.updated.empty());
  EXPECT_EQ(observer.restoresEnded, 1);

  platformPaymentQueue().restoreCompletedTransactions(std::nullopt);
  shop.settle();
  EXPECT_EQ(observer.updated.size(), 1U);
  EXPECT_EQ(observer.restoresEnded, 2);
  platformPaymentQueue().remove(observer);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
