#include <gtest/gtest.h>

#include <algorithm>

#include "tests/fakes/PurchasingStore.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

TEST(PurchaseReentry, CompletionMayBuyAgain) {
  PurchasingStore subject;
  subject.instance->purchaseProduct(subject.gems, {}, [&](const TQPurchaseResult&) {
    subject.instance->purchaseProduct(subject.gems, {}, subject.says("second"));
  });
  subject.journal->clear();

  subject.report({aTransaction("gems").purchased()});
  EXPECT_EQ(*subject.journal, (Journal{"event purchase.success gems", "event purchase.begin gems",
                                       "add gems", "finish gems"}));
  subject.journal->clear();

  subject.report({aTransaction("gems").purchased()});
  EXPECT_EQ(*subject.journal,
            (Journal{"event purchase.success gems", "second success", "finish gems"}));
}

TEST(PurchaseReentry, CompletionMayFinishTheTransactionItself) {
  PurchasingStore subject;
  const auto transaction = aTransaction("gems").purchased().make();
  subject.instance->purchaseProduct(
      subject.gems, {.atomically = false}, [&](const TQPurchaseResult& result) {
        subject.controller->finishTransaction(*result.asSuccess()->transaction);
      });

  subject.report({transaction});

  EXPECT_EQ(subject.queue.finished, StoreKit::SKPaymentTransactions{transaction});
}

TEST(PurchaseReentry, CompletionMayDestroyTheLibrary) {
  PurchasingStore subject;
  subject.instance->purchaseProduct(subject.gems, {}, [&](const TQPurchaseResult& result) {
    subject.dropControllers();
    subject.journal->push_back("still " + result.asSuccess()->productId);
  });
  subject.journal->clear();

  subject.report({aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal, (Journal{"event purchase.success gems", "remove observer",
                                       "still gems", "finish gems"}));
}

TEST(PurchaseReentry, ListenerOfBeginMayDestroyTheLibraryAndThePaymentIsAddedAllTheSame) {
  PurchasingStore subject;
  const auto listening = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const auto&) { subject.dropControllers(); });

  subject.buy();

  EXPECT_EQ(*subject.journal,
            (Journal{"event purchase.begin gems", "add gems", "remove observer"}));
}

TEST(PurchaseReentry, ListenerOfBeginMayDropTheCallersProduct) {
  PurchasingStore subject;
  const auto listening = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const auto&) { subject.gems.reset(); });

  subject.buy();

  EXPECT_EQ(*subject.journal, (Journal{"event purchase.begin gems", "add gems"}));
}

TEST(PurchaseReentry, ListenerOfBeginMayBuyAnotherProduct) {
  PurchasingStore subject;
  bool bought = false;
  const auto listening = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const auto&) {
        if (std::exchange(bought, true)) return;
        subject.instance->purchaseProduct(aProduct("coins"), {}, nullptr);
      });

  subject.buy();

  EXPECT_EQ(*subject.journal, (Journal{"event purchase.begin gems", "event purchase.begin coins",
                                       "add coins", "add gems"}));
}

TEST(PurchaseReentry, ListenerOfBeginMayRestoreFetchAndRegister) {
  FakeStore store;
  const auto listening = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const auto&) {
        store.instance->completeTransactions({}, nullptr);
        store.instance->restorePurchases({}, nullptr);
        store.instance->productsInfoController().retrieveProductsInfo({"club"}, nullptr);
      });

  store.instance->purchaseProduct(aProduct("gems"), {}, nullptr);

  EXPECT_EQ(*store.journal, (Journal{"add observer", "restore", "start club", "add gems"}));
  EXPECT_TRUE(store.complete->completeTransactions());
}

TEST(PurchaseReentry, ListenerOfSuccessMayBuyTheSameProductAgain) {
  PurchasingStore subject;
  subject.buy();
  const auto listening = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const Foundation::Notification& notification) {
        if (notification.object.description() != "purchase.success gems") return;
        for (int i = 0; i < 100; ++i) subject.buy();
      });

  subject.report({aTransaction("gems").purchased()});

  EXPECT_EQ(subject.payments->payments().size(), 100U);
  EXPECT_EQ(std::count(subject.journal->begin(), subject.journal->end(), "completion success"), 1);
}

TEST(PurchaseReentry, ListenerOfFailureMayDestroyTheLibraryAndTheCompletionIsToldAllTheSame) {
  PurchasingStore subject;
  subject.buy();
  subject.journal->clear();
  const auto listening = Foundation::NotificationCenter::defaultCenter().addObserver(
      TQStoreKitEvent::kTQStoreKitEvent(), [&](const auto&) { subject.dropControllers(); });

  subject.report({aTransaction("gems").failed()});

  EXPECT_EQ(*subject.journal, (Journal{"event purchase.failed gems", "remove observer",
                                       "completion error", "finish gems"}));
}

}  // namespace
}  // namespace TQStoreKitLib::tests
