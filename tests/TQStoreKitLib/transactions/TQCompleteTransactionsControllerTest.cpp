#include "TQStoreKitLib/transactions/TQCompleteTransactionsController.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakePaymentQueue.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Transactions = StoreKit::SKPaymentTransactions;
using Purchases = std::vector<TQPurchase>;

std::string finishing(const std::string& productId, const std::string& state) {
  return "Finishing transaction for payment \"" + productId + "\" with state: " + state;
}

struct Subject {
  JournalPtr journal = aJournal();
  CapturedPrints prints{journal};
  FakePaymentQueue queue{journal};
  std::shared_ptr<TQCompleteTransactionsController> complete =
      std::make_shared<TQCompleteTransactionsController>();
  std::vector<Purchases> calls{};

  void registerCallback(bool atomically = true) {
    complete->registerCompletion(
        {.atomically = atomically, .callback = [this](const Purchases& purchases) {
           journal->push_back("delivered " + std::to_string(purchases.size()));
           calls.push_back(purchases);
         }});
  }
  Transactions process(Transactions batch) {
    auto* const controller = complete.get();
    return controller->processTransactions(std::move(batch), queue);
  }
};

TEST(TQCompleteTransactionsController, WithoutARegistrationItPrintsAndTakesNothing) {
  Subject subject;
  const Transactions batch = {aTransaction("gems").purchased(), aTransaction("coins").failed()};

  EXPECT_EQ(subject.process(batch), batch);

  EXPECT_EQ(*subject.journal,
            Journal{"TQStoreKit.completeTransactions() should be called once when the app "
                    "launches."});
}

TEST(TQCompleteTransactionsController, WithoutARegistrationItPrintsForAnEmptyBatchToo) {
  Subject subject;

  EXPECT_TRUE(subject.process({}).empty());

  EXPECT_EQ(subject.journal->size(), 1U);
}

TEST(TQCompleteTransactionsController, TransactionsBeforeTheRegistrationAreNotHeldBack) {
  Subject subject;
  EXPECT_EQ(subject.process({aTransaction("gems").purchased()}).size(), 1U);

  subject.registerCallback();
  EXPECT_TRUE(subject.process({aTransaction("coins").purchased()}).empty());

  ASSERT_EQ(subject.calls.size(), 1U);
  ASSERT_EQ(subject.calls[0].size(), 1U);
  EXPECT_EQ(subject.calls[0][0].productId, "coins");
}

TEST(TQCompleteTransactionsController, EmptyBatchCallsNothing) {
  Subject subject;
  subject.registerCallback();

  EXPECT_TRUE(subject.process({}).empty());

  EXPECT_TRUE(subject.journal->empty());
}

TEST(TQCompleteTransactionsController, BatchOfPurchasingTransactionsComesBackAndCallsNothing) {
  Subject subject;
  subject.registerCallback();
  const Transactions batch = {aTransaction("a").purchasing(), aTransaction("b").purchasing()};

  EXPECT_EQ(subject.process(batch), batch);

  EXPECT_TRUE(subject.journal->empty());
}

TEST(TQCompleteTransactionsController, TakesEveryStateButPurchasing) {
  Subject subject;
  subject.registerCallback();
  const Transactions purchasing = {aTransaction("p").purchasing(), aTransaction("q").purchasing()};

  const auto rest =
      subject.process({aTransaction("a").purchased(), purchasing[0], aTransaction("b").failed(),
                       aTransaction("c").restored(), aTransaction("d").deferred(), purchasing[1],
                       aTransaction("e").inState(5), aTransaction("f").inState(-1)});

  EXPECT_EQ(rest, purchasing);
  ASSERT_EQ(subject.calls.size(), 1U);
  std::string taken;
  for (const auto& purchase : subject.calls[0]) taken += purchase.productId;
  EXPECT_EQ(taken, "abcdef");
}

TEST(TQCompleteTransactionsController, EachIsPrintedThenFinishedAndTheCallbackComesLast) {
  Subject subject;
  subject.registerCallback();

  EXPECT_TRUE(subject
                  .process({aTransaction("a").purchased(), aTransaction("b").failed(),
                            aTransaction("c").restored(), aTransaction("d").deferred(),
                            aTransaction("e").inState(5), aTransaction("f").inState(-1)})
                  .empty());

  EXPECT_EQ(*subject.journal,
            (Journal{finishing("a", "purchased"), "finish a", finishing("b", "failed"), "finish b",
                     finishing("c", "restored"), "finish c", finishing("d", "deferred"), "finish d",
                     finishing("e", "default"), "finish e", finishing("f", "default"), "finish f",
                     "delivered 6"}));
}

TEST(TQCompleteTransactionsController, AtomicPurchasesNeedNoFinishing) {
  Subject subject;
  subject.registerCallback();

  EXPECT_TRUE(subject.process({aTransaction("a").purchased()}).empty());

  EXPECT_FALSE(subject.calls.at(0).at(0).needsFinishTransaction);
}

TEST(TQCompleteTransactionsController, WhenNotAtomicOnlyFailedTransactionsAreFinishedAndPrinted) {
  Subject subject;
  subject.registerCallback(false);

  EXPECT_TRUE(subject
                  .process({aTransaction("a").purchased(), aTransaction("b").failed(),
                            aTransaction("c").restored(), aTransaction("d").deferred(),
                            aTransaction("e").inState(5)})
                  .empty());

  EXPECT_EQ(*subject.journal, (Journal{finishing("b", "failed"), "finish b", "delivered 5"}));
  std::vector<bool> needed;
  for (const auto& purchase : subject.calls.at(0)) {
    needed.push_back(purchase.needsFinishTransaction);
  }
  EXPECT_EQ(needed, (std::vector<bool>{true, false, true, true, true}));
}

TEST(TQCompleteTransactionsController, DeliversWhatTheTransactionSays) {
  Subject subject;
  subject.registerCallback();
  const auto original = aTransaction("club").purchased().make();
  const auto transaction = aTransaction("club").restored().ofQuantity(2).repeating(original).make();

  EXPECT_TRUE(subject.process({transaction}).empty());

  const auto& purchase = subject.calls.at(0).at(0);
  EXPECT_EQ(purchase.productId, "club");
  EXPECT_EQ(purchase.quantity, 2);
  EXPECT_EQ(platformTransaction(*purchase.transaction), transaction);
  ASSERT_NE(purchase.originalTransaction, nullptr);
  EXPECT_EQ(platformTransaction(*purchase.originalTransaction), original);
}

TEST(TQCompleteTransactionsController, TransactionWithoutAnOriginalHasNone) {
  Subject subject;
  subject.registerCallback();

  EXPECT_TRUE(subject.process({aTransaction("club").purchased()}).empty());

  EXPECT_EQ(subject.calls.at(0).at(0).originalTransaction, nullptr);
}

TEST(TQCompleteTransactionsController, EachBatchMakesOneCall) {
  Subject subject;
  subject.registerCallback();

  EXPECT_TRUE(subject.process({aTransaction("a").purchased()}).empty());
  EXPECT_TRUE(
      subject.process({aTransaction("b").purchased(), aTransaction("c").purchased()}).empty());

  ASSERT_EQ(subject.calls.size(), 2U);
  EXPECT_EQ(subject.calls[0].size(), 1U);
  EXPECT_EQ(subject.calls[1].size(), 2U);
  EXPECT_TRUE(subject.complete->completeTransactions());
}

TEST(TQCompleteTransactionsController, EmptyCallbackTakesAndFinishesAllTheSame) {
  Subject subject;
  subject.complete->registerCompletion({});

  EXPECT_TRUE(subject.process({aTransaction("a").purchased()}).empty());

  EXPECT_EQ(*subject.journal, (Journal{finishing("a", "purchased"), "finish a"}));
}

TEST(TQCompleteTransactionsController, CallbackMayProcessAnotherBatch) {
  Subject subject;
  int calls = 0;
  subject.complete->registerCompletion({.callback = [&](const Purchases& purchases) {
    if (++calls == 1) {
      EXPECT_TRUE(subject.process({aTransaction("b").purchased()}).empty());
    }
    subject.journal->push_back("delivered " + purchases.at(0).productId);
  }});

  EXPECT_TRUE(subject.process({aTransaction("a").purchased()}).empty());

  EXPECT_EQ(*subject.journal,
            (Journal{finishing("a", "purchased"), "finish a", finishing("b", "purchased"),
                     "finish b", "delivered b", "delivered a"}));
}

TEST(TQCompleteTransactionsController, CallbackMayDropTheLastReferenceToTheController) {
  Subject subject;
  const std::string captured(100, 'x');
  std::string read;
  subject.complete->registerCompletion({.callback = [&, captured](const Purchases& purchases) {
    subject.complete.reset();
    read = captured + purchases.at(0).productId;
  }});

  EXPECT_EQ(subject.process({aTransaction("a").purchased(), aTransaction("b").purchasing()}).size(),
            1U);

  EXPECT_EQ(read, captured + "a");
}

TEST(TQCompleteTransactions, IsAtomicUnlessToldOtherwise) {
  EXPECT_TRUE(TQCompleteTransactions().atomically);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
