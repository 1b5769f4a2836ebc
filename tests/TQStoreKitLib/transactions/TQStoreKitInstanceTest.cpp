#include "TQStoreKitLib/transactions/TQStoreKitInstance.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakeStore.hpp"
#include "tests/fakes/RecordedEvents.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKError;

TEST(InstanceRestore, UserNameIsAlwaysPassedAlsoWhenEmpty) {
  FakeStore store;
  store.instance->restorePurchases({}, nullptr);

  EXPECT_EQ(store.queue.restoreUsernames.at(0), std::optional<std::string>(""));
}

TEST(InstanceRestore, OptionsReachTheRequest) {
  FakeStore store;

  store.instance->restorePurchases({.atomically = false, .applicationUsername = "anna"}, nullptr);

  EXPECT_EQ(store.queue.restoreUsernames.at(0), "anna");
  EXPECT_EQ(store.restore->restorePurchases()->applicationUsername, "anna");
  EXPECT_FALSE(store.restore->restorePurchases()->atomically);
}

TEST(InstanceRestore, IsAtomicUnlessToldOtherwise) {
  FakeStore store;

  store.instance->restorePurchases({}, nullptr);

  EXPECT_TRUE(store.restore->restorePurchases()->atomically);
}

TEST(InstanceRestore, DeliversWhatWasRestoredAndWhatFailedAndPostsNoEvent) {
  FakeStore store;
  const RecordedEvents events;
  store.complete->registerCompletion({});
  TQRestoreResults delivered;
  store.instance->restorePurchases({},
                                   [&](const TQRestoreResults& results) { delivered = results; });
  store.report({aTransaction("a").restored()});
  store.report({aTransaction("b").restored()});

  store.controller->paymentQueueRestoreCompletedTransactionsFailedWithError(
      SKError(SKError::Code::cloudServiceRevoked).nsError());

  ASSERT_EQ(delivered.restoredPurchases.size(), 2U);
  EXPECT_EQ(delivered.restoredPurchases[0].productId, "a");
  EXPECT_EQ(delivered.restoredPurchases[1].productId, "b");
  ASSERT_EQ(delivered.restoreFailedPurchases.size(), 1U);
  EXPECT_EQ(delivered.restoreFailedPurchases[0].first.code(), SKError::Code::cloudServiceRevoked);
  EXPECT_FALSE(delivered.restoreFailedPurchases[0].second);
  EXPECT_TRUE(events.notifications.empty());
}

TEST(InstanceRestore, SecondWhileOneIsPendingNeverCallsItsCompletion) {
  FakeStore store;
  std::string called;
  store.instance->restorePurchases({}, [&](const TQRestoreResults&) { called += "first"; });
  store.instance->restorePurchases({}, [&](const TQRestoreResults&) { called += "second"; });

  store.controller->paymentQueueRestoreCompletedTransactionsFinished();

  EXPECT_EQ(called, "first");
  EXPECT_EQ(store.queue.restoreUsernames.size(), 1U);
}

TEST(InstanceRestore, CompletionThatRestoresAgainIsRefused) {
  FakeStore store;
  std::string called;
  store.instance->restorePurchases({}, [&](const TQRestoreResults&) {
    called += "first";
    store.instance->restorePurchases({}, [&](const TQRestoreResults&) { called += "second"; });
  });

  store.controller->paymentQueueRestoreCompletedTransactionsFinished();

  EXPECT_EQ(called, "first");
  EXPECT_FALSE(store.restore->restorePurchases());
}

TEST(InstanceRestore, EmptyCompletionEndsTheRestoreAllTheSame) {
  FakeStore store;
  store.instance->restorePurchases({}, nullptr);

  store.controller->paymentQueueRestoreCompletedTransactionsFinished();

  EXPECT_FALSE(store.restore->restorePurchases());
}

TEST(InstanceRestore, CompletionMayDestroyTheLibrary) {
  FakeStore store;
  std::string restored;
  store.complete->registerCompletion({});
  store.instance->restorePurchases({}, [&](const TQRestoreResults& results) {
    store.dropControllers();
    restored = results.restoredPurchases.at(0).productId;
  });
  store.report({aTransaction("club").restored()});

  store.controller->paymentQueueRestoreCompletedTransactionsFinished();

  EXPECT_EQ(restored, "club");
}

TEST(InstanceComplete, CallbackIsPassedThroughAndNoEventIsPosted) {
  FakeStore store;
  const RecordedEvents events;
  const CapturedPrints prints;
  std::string completed;
  store.instance->completeTransactions(
      {}, [&](const std::vector<TQPurchase>& purchases) { completed = purchases.at(0).productId; });

  store.report({aTransaction("gems").failed()});

  EXPECT_EQ(completed, "gems");
  EXPECT_TRUE(events.notifications.empty());
}

TEST(InstanceComplete, AtomicityIsPassedThroughAndTrueUnlessToldOtherwise) {
  FakeStore plain;
  plain.instance->completeTransactions({}, nullptr);
  FakeStore told;
  told.instance->completeTransactions({.atomically = false}, nullptr);

  EXPECT_TRUE(plain.complete->completeTransactions()->atomically);
  EXPECT_FALSE(told.complete->completeTransactions()->atomically);
}

TEST(InstanceComplete, SecondRegistrationIsPrintedAndTheFirstStays) {
  FakeStore store;
  const CapturedPrints prints;
  store.instance->completeTransactions({.atomically = false}, nullptr);

  store.instance->completeTransactions({.atomically = true}, nullptr);

  EXPECT_EQ(prints.lines(),
            Journal{"TQStoreKit.completeTransactions() should only be called once when the app "
                    "launches. Ignoring this call"});
  EXPECT_FALSE(store.complete->completeTransactions()->atomically);
}

TEST(InstanceComplete, CallbackMayBuyRestoreFetchAndFinish) {
  FakeStore store;
  store.instance->completeTransactions(
      {.atomically = false}, [&](const std::vector<TQPurchase>& purchases) {
        store.instance->purchaseProduct(aProduct("coins"), {}, nullptr);
        store.instance->restorePurchases({}, nullptr);
        store.instance->productsInfoController().retrieveProductsInfo({"club"}, nullptr);
        store.controller->finishTransaction(*purchases.at(0).transaction);
      });
  store.journal->clear();

  store.report({aTransaction("gems").purchased()});

  EXPECT_EQ(*store.journal, (Journal{"add coins", "restore", "start club", "finish gems"}));
}

}  // namespace
}  // namespace TQStoreKitLib::tests
