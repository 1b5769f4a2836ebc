#include <gtest/gtest.h>

#include "TQStoreKitLib/transactions/TQRestorePurchasesController.hpp"
#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakePaymentQueue.hpp"
#include "tests/fakes/OnDestruction.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Results = std::vector<TQTransactionResult>;

struct Subject {
  JournalPtr journal = aJournal();
  CapturedPrints prints{journal};
  FakePaymentQueue queue{journal};
  std::shared_ptr<TQRestorePurchasesController> restore =
      std::make_shared<TQRestorePurchasesController>();

  void begin(TQRestorePurchases::Callback callback) {
    restore->begin({.callback = std::move(callback)});
  }
  TQRestorePurchases::Callback says(const std::string& name) {
    return [this, name](const Results& results) {
      journal->push_back(name + " " + std::to_string(results.size()));
    };
  }
  void bringBack(const std::string& productId) {
    EXPECT_TRUE(restore->processTransactions({aTransaction(productId).restored()}, queue).empty());
  }
};

TEST(TQRestorePurchasesControllerReentry, RestoreThatIsEndingIsStillThereInsideItsCallback) {
  Subject subject;
  bool pending = false;
  std::size_t gathered = 0;
  subject.begin([&](const Results&) {
    pending = subject.restore->restorePurchases().has_value();
    gathered = subject.restore->restoredPurchases().size();
  });
  subject.bringBack("a");

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_TRUE(pending);
  EXPECT_EQ(gathered, 1U);
}

TEST(TQRestorePurchasesControllerReentry, FailureIsStillThereInsideTheCallback) {
  Subject subject;
  std::size_t gathered = 0;
  subject.begin([&](const Results&) { gathered = subject.restore->restoredPurchases().size(); });
  subject.bringBack("a");

  subject.restore->restoreCompletedTransactionsFailed(Foundation::NSError("SKErrorDomain", 0));

  EXPECT_EQ(gathered, 2U);
}

TEST(TQRestorePurchasesControllerReentry, CallbackMayEndTheRestoreAgain) {
  Subject subject;
  int calls = 0;
  subject.begin([&](const Results&) {
    if (++calls == 1) subject.restore->restoreCompletedTransactionsFinished();
  });

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_EQ(calls, 2);
  EXPECT_FALSE(subject.restore->restorePurchases());
  EXPECT_TRUE(subject.journal->empty());
}

TEST(TQRestorePurchasesControllerReentry, RestoreBegunAfterSuchAnEndIsNotClearedWithTheOld) {
  Subject subject;
  int calls = 0;
  subject.begin([&](const Results&) {
    if (++calls > 1) return;
    subject.restore->restoreCompletedTransactionsFinished();
    subject.begin(subject.says("second"));
    subject.bringBack("b");
  });
  subject.bringBack("a");

  subject.restore->restoreCompletedTransactionsFinished();
  EXPECT_TRUE(subject.restore->restorePurchases());

  subject.restore->restoreCompletedTransactionsFinished();
  EXPECT_EQ(*subject.journal, (Journal{"finish a", "finish b", "second 1"}));
}

TEST(TQRestorePurchasesControllerReentry, ResultsStayAsTheyAreWhileTheCallbackReadsThem) {
  Subject subject;
  std::string read;
  int calls = 0;
  subject.begin([&](const Results& results) {
    if (++calls > 1) return;
    for (int i = 0; i < 100; ++i) subject.bringBack("more");
    subject.restore->restoreCompletedTransactionsFinished();
    read = std::to_string(results.size()) + " " + results.at(0).asRestored()->productId;
  });
  subject.bringBack("a");

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_EQ(read, "1 a");
}

TEST(TQRestorePurchasesControllerReentry, WhatArrivesInsideTheCallbackIsClearedWithTheRestore) {
  Subject subject;
  subject.begin([&](const Results&) { subject.bringBack("late"); });

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_TRUE(subject.restore->restoredPurchases().empty());
}

TEST(TQRestorePurchasesControllerReentry, CallbackMayDropTheLastReferenceToTheController) {
  Subject subject;
  const std::weak_ptr<TQRestorePurchasesController> witness = subject.restore;
  std::string read;
  const std::string captured(100, 'x');
  subject.begin([&, captured](const Results& results) {
    subject.restore.reset();
    read = captured + results.at(0).asRestored()->productId;
  });
  subject.bringBack("a");

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_EQ(read, captured + "a");
  EXPECT_TRUE(witness.expired());
}

TEST(TQRestorePurchasesControllerReentry, CallbackIsReleasedOnceTheRestoreHasEnded) {
  Subject subject;
  bool released = false;
  subject.begin([witness = onDestruction([&] { released = true; })](const Results&) {});

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_TRUE(released);
}

TEST(TQRestorePurchasesControllerReentry, ReleasingTheCallbackFindsTheControllerIdle) {
  Subject subject;
  bool pending = true;
  std::size_t gathered = 99;
  subject.begin([witness = onDestruction([&] {
                   pending = subject.restore->restorePurchases().has_value();
                   gathered = subject.restore->restoredPurchases().size();
                 })](const Results&) {});
  subject.bringBack("a");

  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_FALSE(pending);
  EXPECT_EQ(gathered, 0U);
}

TEST(TQRestorePurchasesControllerReentry, ReleasingTheCallbackMayBeginAnotherRestore) {
  Subject subject;
  subject.begin(
      [witness = onDestruction([&] { subject.begin(subject.says("second")); })](const Results&) {});

  subject.restore->restoreCompletedTransactionsFinished();
  subject.restore->restoreCompletedTransactionsFinished();

  EXPECT_EQ(*subject.journal, Journal{"second 0"});
}

}  // namespace
}  // namespace TQStoreKitLib::tests
