#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/OpenShop.hpp"

namespace StoreKit {
namespace {

using tests::JournalingObserver;
using tests::OpenShop;

constexpr int kNone = -1;

class PurchaseFailures : public testing::Test {
 protected:
  OpenShop shop;
  JournalingObserver observer;

  PurchaseFailures() {
    observer.observe();
    (void)tests::turnUntilIdle();
  }

  // The code that a purchase fails with, or kNone.
  std::int64_t codeOf(const std::string& product, std::int64_t quantity = 1) const {
    shop.add(product, quantity);
    (void)tests::turnUntilIdle();
    const auto error = OpenShop::queue().transactions().back()->error();
    return error ? error->code() : kNone;
  }
};

TEST_F(PurchaseFailures, NoneIsTheRule) { EXPECT_EQ(codeOf("gems"), kNone); }

TEST_F(PurchaseFailures, CancelledOneFailsOnceWithPaymentCancelled) {
  shop.session.cancelPurchases();
  EXPECT_EQ(codeOf("gems"), 2);
  EXPECT_EQ(codeOf("gems"), kNone);
}

TEST_F(PurchaseFailures, AreConsumedOnePerPurchase) {
  shop.session.failPurchases(SKError::Code::unknown, 2);
  shop.session.cancelPurchases(1);
  EXPECT_EQ(codeOf("gems"), 0);
  EXPECT_EQ(codeOf("gems"), 0);
  EXPECT_EQ(codeOf("gems"), 2);
  EXPECT_EQ(codeOf("gems"), kNone);
}

TEST_F(PurchaseFailures, NoneSetUpIsNone) {
  shop.session.failPurchases(SKError::Code::unknown, 0);
  EXPECT_EQ(codeOf("gems"), kNone);
}

TEST_F(PurchaseFailures, UnknownProductIsPurchasingFirstAndThenInvalid) {
  EXPECT_EQ(codeOf("no such thing"), 3);
  EXPECT_THAT(observer.journal(), testing::ElementsAre("updated: no such thing purchasing",
                                                       "updated: no such thing failed"));
}

TEST_F(PurchaseFailures, EmptyProductIdentifierIsInvalid) { EXPECT_EQ(codeOf(""), 3); }

TEST_F(PurchaseFailures, QuantityIsOneToTen) {
  EXPECT_EQ(codeOf("gems", 1), kNone);
  EXPECT_EQ(codeOf("gems", 10), kNone);
  EXPECT_EQ(codeOf("gems", 11), 3);
  EXPECT_EQ(codeOf("gems", 0), 3);
  EXPECT_EQ(codeOf("gems", -1), 3);
}

TEST_F(PurchaseFailures, WhoMayNotPayGetsPaymentNotAllowed) {
  shop.session.setCanMakePayments(false);
  EXPECT_FALSE(SKPaymentQueue::canMakePayments());
  EXPECT_EQ(codeOf("gems"), 4);
}

TEST_F(PurchaseFailures, WhoMayPayAgainBuys) {
  shop.session.setCanMakePayments(false);
  shop.session.setCanMakePayments(true);
  EXPECT_TRUE(SKPaymentQueue::canMakePayments());
  EXPECT_EQ(codeOf("gems"), kNone);
}

TEST_F(PurchaseFailures, EveryOneFailsWhenTheConfigurationSaysSo) {
  auto configuration = tests::shop();
  configuration.settings.failTransactionsEnabled = true;
  configuration.settings.failureError = 12;
  const StoreSession failing(configuration);
  EXPECT_EQ(codeOf("gems"), 12);
  EXPECT_EQ(codeOf("gems"), 12);
}

TEST_F(PurchaseFailures, ConfiguredErrorIsWithoutEffectWhileItIsOff) {
  auto configuration = tests::shop();
  configuration.settings.failureError = 12;
  const StoreSession session(configuration);
  EXPECT_EQ(codeOf("gems"), kNone);
}

TEST_F(PurchaseFailures, ScriptGoesBeforeTheConfiguredError) {
  auto configuration = tests::shop();
  configuration.settings.failTransactionsEnabled = true;
  StoreSession failing(configuration);
  failing.cancelPurchases();
  EXPECT_EQ(codeOf("gems"), 2);
  EXPECT_EQ(codeOf("gems"), 0);
}

TEST_F(PurchaseFailures, ScriptIsForgottenWhenAnotherStoreIsOpened) {
  shop.session.cancelPurchases(5);
  const StoreSession another(tests::shop());
  EXPECT_EQ(codeOf("gems"), kNone);
}

TEST_F(PurchaseFailures, EarlierSessionControlsTheStoreThatIsOpen) {
  const StoreSession another(tests::shop());
  shop.session.cancelPurchases();
  EXPECT_EQ(codeOf("gems"), 2);
}

}  // namespace
}  // namespace StoreKit
