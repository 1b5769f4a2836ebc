#include "TQStoreKitLib/transactions/TQRestorePurchasesController.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/RestoringController.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Transactions = StoreKit::SKPaymentTransactions;

TEST(TQRestorePurchasesController, BeginsIdle) {
  const TQRestorePurchasesController restore;
  EXPECT_FALSE(restore.restorePurchases());
  EXPECT_TRUE(restore.restoredPurchases().empty());
}

TEST(TQRestorePurchasesController, WhileIdleRestoredTransactionsPassThroughUntouched) {
  RestoringController subject;
  const Transactions batch = {aTransaction("club").restored(), aTransaction("gems").purchased()};

  EXPECT_EQ(subject.process(batch), batch);

  EXPECT_TRUE(subject.journal->empty());
  EXPECT_TRUE(subject.restore->restoredPurchases().empty());
}

TEST(TQRestorePurchasesController, TakesRestoredTransactionsAndReturnsTheOthersInOrder) {
  RestoringController subject;
  subject.begin();
  const Transactions others = {aTransaction("a").purchasing(), aTransaction("b").purchased(),
                               aTransaction("c").failed(),     aTransaction("d").deferred(),
                               aTransaction("e").inState(5),   aTransaction("f").inState(-1)};
  Transactions batch = others;
  batch.insert(batch.begin() + 2, aTransaction("club").restored());
  batch.push_back(aTransaction("zoo").restored());

  EXPECT_EQ(subject.process(batch), others);

  EXPECT_EQ(*subject.journal, (Journal{"finish club", "finish zoo"}));
  EXPECT_EQ(subject.restore->restoredPurchases().size(), 2U);
}

TEST(TQRestorePurchasesController, TransactionIsFinishedBeforeItIsRecorded) {
  RestoringController subject;
  subject.begin();
  std::vector<std::size_t> recorded;
  subject.queue.whileFinishing = [&] {
    recorded.push_back(subject.restore->restoredPurchases().size());
  };

  EXPECT_TRUE(
      subject.process({aTransaction("a").restored(), aTransaction("b").restored()}).empty());

  EXPECT_EQ(recorded, (std::vector<std::size_t>{0, 1}));
}

TEST(TQRestorePurchasesController, RecordsWhatTheTransactionSays) {
  RestoringController subject;
  subject.begin();
  const auto original = aTransaction("club").purchased().make();
  const auto transaction = aTransaction("club").restored().ofQuantity(2).repeating(original).make();

  EXPECT_TRUE(subject.process({transaction}).empty());

  const auto* const purchase = subject.restore->restoredPurchases().at(0).asRestored();
  ASSERT_NE(purchase, nullptr);
  EXPECT_EQ(purchase->productId, "club");
  EXPECT_EQ(purchase->quantity, 2);
  EXPECT_EQ(platformTransaction(*purchase->transaction), transaction);
  ASSERT_NE(purchase->originalTransaction, nullptr);
  EXPECT_EQ(platformTransaction(*purchase->originalTransaction), original);
  EXPECT_FALSE(purchase->needsFinishTransaction);
}

TEST(TQRestorePurchasesController, RestoredWithoutAnOriginalHasNone) {
  RestoringController subject;
  subject.begin();

  EXPECT_TRUE(subject.process({aTransaction("club").restored()}).empty());

  EXPECT_EQ(subject.restore->restoredPurchases().at(0).asRestored()->originalTransaction, nullptr);
}

TEST(TQRestorePurchasesController, RestoreThatIsNotAtomicFinishesNothingAndSaysSo) {
  RestoringController subject;
  subject.begin(false);

  EXPECT_TRUE(
      subject.process({aTransaction("a").restored(), aTransaction("b").restored()}).empty());

  EXPECT_TRUE(subject.queue.finished.empty());
  for (const auto& result : subject.restore->restoredPurchases()) {
    EXPECT_TRUE(result.asRestored()->needsFinishTransaction);
  }
}

TEST(TQRestorePurchases, IsAtomicAndForEveryUserUnlessToldOtherwise) {
  const TQRestorePurchases request;
  EXPECT_TRUE(request.atomically);
  EXPECT_FALSE(request.applicationUsername);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
