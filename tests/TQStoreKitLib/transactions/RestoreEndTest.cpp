#include <gtest/gtest.h>

#include "tests/fakes/RestoringController.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKError;

constexpr auto* kIdle = "Callback already called. Returning";

TEST(RestoreEnd, CallbackWaitsForTheEndOfTheRestore) {
  RestoringController subject;
  subject.begin();

  EXPECT_TRUE(subject.process({aTransaction("club").restored()}).empty());

  EXPECT_TRUE(subject.calls.empty());
}

TEST(RestoreEnd, FinishedDeliversAllBatchesInOneListInOrder) {
  RestoringController subject;
  subject.begin();
  EXPECT_TRUE(
      subject.process({aTransaction("a").restored(), aTransaction("b").restored()}).empty());
  EXPECT_TRUE(subject.process({aTransaction("c").restored()}).empty());

  subject.restore->restoreCompletedTransactionsFinished();

  ASSERT_EQ(subject.calls.size(), 1U);
  ASSERT_EQ(subject.calls[0].size(), 3U);
  EXPECT_EQ(subject.calls[0][0].asRestored()->productId, "a");
  EXPECT_EQ(subject.calls[0][1].asRestored()->productId, "b");
  EXPECT_EQ(subject.calls[0][2].asRestored()->productId, "c");
}

TEST(RestoreEnd, FinishedWithNothingRestoredDeliversAnEmptyList) {
  RestoringController subject;
  subject.begin();

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_EQ(*subject.journal, Journal{"delivered 0"});
}

TEST(RestoreEnd, FinishedLeavesTheControllerIdle) {
  RestoringController subject;
  subject.begin();
  EXPECT_TRUE(subject.process({aTransaction("a").restored()}).empty());

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_FALSE(subject.restore->restorePurchases());
  EXPECT_TRUE(subject.restore->restoredPurchases().empty());
}

TEST(RestoreEnd, NextRestoreBeginsWithAnEmptyList) {
  RestoringController subject;
  subject.begin();
  EXPECT_TRUE(subject.process({aTransaction("a").restored()}).empty());
  subject.restore->restoreCompletedTransactionsFinished();

  subject.begin();
  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_EQ(*subject.journal, (Journal{"finish a", "delivered 1", "delivered 0"}));
}

TEST(RestoreEnd, FailedDeliversWhatWasRestoredAndThenTheFailure) {
  RestoringController subject;
  subject.begin();
  EXPECT_TRUE(
      subject.process({aTransaction("a").restored(), aTransaction("b").restored()}).empty());

  subject.restore->restoreCompletedTransactionsFailed(Foundation::NSError("NSURLErrorDomain", -1));

  ASSERT_EQ(subject.calls.size(), 1U);
  const auto& results = subject.calls[0];
  ASSERT_EQ(results.size(), 3U);
  EXPECT_EQ(results[0].asRestored()->productId, "a");
  EXPECT_EQ(results[1].asRestored()->productId, "b");
  ASSERT_NE(results[2].asFailed(), nullptr);
  EXPECT_EQ(results[2].asFailed()->product, nullptr);
  EXPECT_EQ(results[2].asFailed()->error.nsError().domain(), "NSURLErrorDomain");
  EXPECT_EQ(results[2].asFailed()->error.nsError().code(), -1);
}

TEST(RestoreEnd, FailedLeavesTheControllerIdle) {
  RestoringController subject;
  subject.begin();

  subject.restore->restoreCompletedTransactionsFailed(SKError(SKError::Code::unknown).nsError());

  EXPECT_FALSE(subject.restore->restorePurchases());
  EXPECT_TRUE(subject.restore->restoredPurchases().empty());
}

TEST(RestoreEnd, FinishedWhileIdleIsPrintedAndNothingElse) {
  RestoringController subject;

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_EQ(*subject.journal, Journal{kIdle});
}

TEST(RestoreEnd, FailedWhileIdleIsPrintedAndRecordsNothing) {
  RestoringController subject;

  subject.restore->restoreCompletedTransactionsFailed(SKError(SKError::Code::unknown).nsError());

  EXPECT_EQ(*subject.journal, Journal{kIdle});
  EXPECT_TRUE(subject.restore->restoredPurchases().empty());
}

TEST(RestoreEnd, SecondEndIsPrintedAndCallsNothing) {
  RestoringController subject;
  subject.begin();
  subject.restore->restoreCompletedTransactionsFinished();

  subject.restore->restoreCompletedTransactionsFinished();
  subject.restore->restoreCompletedTransactionsFailed(SKError(SKError::Code::unknown).nsError());

  EXPECT_EQ(*subject.journal, (Journal{"delivered 0", kIdle, kIdle}));
}

TEST(RestoreEnd, EmptyCallbackEndsTheRestoreAllTheSame) {
  RestoringController subject;
  subject.restore->begin({});
  EXPECT_TRUE(subject.process({aTransaction("a").restored()}).empty());

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_EQ(*subject.journal, Journal{"finish a"});
  EXPECT_FALSE(subject.restore->restorePurchases());
}

}  // namespace
}  // namespace TQStoreKitLib::tests
