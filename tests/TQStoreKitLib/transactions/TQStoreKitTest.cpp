#include "TQStoreKitLib/transactions/TQStoreKit.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/EmbeddedShop.hpp"
#include "tests/fakes/ForeignTransaction.hpp"
#include "tests/fakes/RecordedEvents.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKError;
using StoreKit::SKPaymentQueue;

// The shop's journal also holds events, printed lines and completions.
struct Subject : EmbeddedShop {
  JournalPtr journal = aJournal();
  CapturedPrints prints{journal};
  RecordedEvents events{journal};

  TQStoreKit::PurchaseCompletion says(const std::string& name) {
    return [this, name](const TQPurchaseResult& result) {
      const auto* const error = result.asError();
      journal->push_back(name + (error ? " error: " + error->msg() : " success"));
    };
  }
};

TEST(TQStoreKit, CanMakePaymentsIsThePlatformsAnswer) {
  Subject shop;
  EXPECT_TRUE(TQStoreKit::canMakePayments());

  shop.session.setCanMakePayments(false);
  EXPECT_FALSE(TQStoreKit::canMakePayments());
}

TEST(TQStoreKit, PurchaseByIdentifierGoesFromBeginToFinish) {
  Subject shop;
  TQStoreKit::completeTransactions({}, nullptr);

  TQStoreKit::purchaseProduct("gems", {.quantity = 3}, shop.says("completion"));
  EXPECT_TRUE(shop.journal->empty());
  shop.settle();

  EXPECT_EQ(*shop.journal, (Journal{"event purchase.begin gems", "event purchase.success gems",
                                    "completion success"}));
  EXPECT_EQ(shop.events.purchase(1)->asSuccess()->quantity, 3);
  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
}

TEST(TQStoreKit, PurchaseOfAFetchedProductGoesFromBeginToFinish) {
  Subject shop;
  TQStoreKit::completeTransactions({}, nullptr);
  TQStoreKit::fetchProductsInfo({"gems"}, [&](const TQProductsResponse& response) {
    TQStoreKit::purchaseProduct(*response.valids().begin(), {}, shop.says("completion"));
  });

  shop.settle();

  EXPECT_EQ(*shop.journal, (Journal{"event purchase.begin gems", "event purchase.success gems",
                                    "completion success"}));
  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
}

TEST(TQStoreKit, PurchaseThatIsNotAtomicStaysInTheQueueUntilItIsFinished) {
  Subject shop;
  TQPaymentTransactionPtr bought;
  TQStoreKit::purchaseProduct("gems", {.atomically = false}, [&](const TQPurchaseResult& result) {
    bought = result.asSuccess()->transaction;
  });
  shop.settle();
  ASSERT_EQ(SKPaymentQueue::defaultQueue().transactions().size(), 1U);

  TQStoreKit::finishTransaction(*bought);
  shop.settle();

  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
}

TEST(TQStoreKit, CompletionMayFinishItsOwnTransaction) {
  Subject shop;
  TQStoreKit::purchaseProduct("gems", {.atomically = false}, [](const TQPurchaseResult& result) {
    TQStoreKit::finishTransaction(*result.asSuccess()->transaction);
  });

  shop.settle();

  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
}

TEST(TQStoreKit, CancelledPurchaseIsAnErrorWithACancelEventAndIsFinished) {
  Subject shop;
  shop.session.cancelPurchases();
  TQStoreKit::completeTransactions({}, nullptr);

  TQStoreKit::purchaseProduct("gems", {.atomically = false}, shop.says("completion"));
  shop.settle();

  EXPECT_EQ(*shop.journal, (Journal{"event purchase.begin gems", "event purchase.cancel gems",
                                    "completion error: " + storeErrorMessage(SKError(
                                                               SKError::Code::paymentCancelled))}));
  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
}

TEST(TQStoreKit, UnknownIdentifierFailsWithoutTouchingTheQueue) {
  Subject shop;
  TQStoreKit::purchaseProduct("nothing", {}, shop.says("completion"));

  shop.settle();

  EXPECT_EQ(*shop.journal, (Journal{"completion error: The purchase identifier was invalid",
                                    "event purchase.failed nothing"}));
}

TEST(TQStoreKit, CompletionMayBuyTheNextProduct) {
  Subject shop;
  TQStoreKit::completeTransactions({}, nullptr);
  TQStoreKit::purchaseProduct("gems", {}, [&](const TQPurchaseResult&) {
    TQStoreKit::purchaseProduct("gems", {}, shop.says("second"));
  });

  shop.settle();

  EXPECT_EQ(shop.journal->back(), "second success");
  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
}

TEST(TQStoreKit, RestoreBringsBackWhatWasBought) {
  Subject shop;
  TQStoreKit::completeTransactions({}, nullptr);
  TQStoreKit::purchaseProduct("level", {}, nullptr);
  shop.settle();
  TQRestoreResults delivered;

  TQStoreKit::restorePurchases({}, [&](const TQRestoreResults& results) { delivered = results; });
  shop.settle();

  ASSERT_EQ(delivered.restoredPurchases.size(), 1U);
  EXPECT_EQ(delivered.restoredPurchases[0].productId, "level");
  EXPECT_NE(delivered.restoredPurchases[0].originalTransaction, nullptr);
  EXPECT_FALSE(delivered.restoredPurchases[0].needsFinishTransaction);
  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
}

TEST(TQStoreKit, CompletionGetsWhatAnEarlierRunLeft) {
  Subject shop;
  TQStoreKit::purchaseProduct("gems", {.atomically = false}, nullptr);
  shop.settle();
  std::string completed;
  TQStoreKit::completeTransactions({}, [&](const std::vector<TQPurchase>& purchases) {
    for (const auto& purchase : purchases) completed += purchase.productId;
  });

  shop.session.relaunch();
  shop.settle();

  EXPECT_EQ(completed, "gems");
  EXPECT_EQ(shop.journal->back(),
            "Finishing transaction for payment \"gems\" with state: purchased");
  EXPECT_TRUE(SKPaymentQueue::defaultQueue().transactions().empty());
}

TEST(TQStoreKit, SecondCompletionRegistrationIsPrinted) {
  Subject shop;
  TQStoreKit::completeTransactions({}, nullptr);

  TQStoreKit::completeTransactions({}, nullptr);

  EXPECT_EQ(*shop.journal,
            Journal{"TQStoreKit.completeTransactions() should only be called once when the app "
                    "launches. Ignoring this call"});
}

TEST(TQStoreKit, FinishOfAForeignTransactionIsPrinted) {
  Subject shop;
  const ForeignTransaction foreign;

  TQStoreKit::finishTransaction(foreign);

  EXPECT_EQ(*shop.journal,
            Journal{"Object is not a SKPaymentTransaction: " + foreign.description()});
}

}  // namespace
}  // namespace TQStoreKitLib::tests
