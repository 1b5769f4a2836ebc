#include <gtest/gtest.h>

#include "TQStoreKitLib/transactions/TQPaymentsController.hpp"
#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakePayment.hpp"
#include "tests/fakes/FakePaymentQueue.hpp"
#include "tests/fakes/OnDestruction.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Transactions = StoreKit::SKPaymentTransactions;

struct Subject {
  JournalPtr journal = aJournal();
  CapturedPrints prints{journal};
  FakePaymentQueue queue{journal};
  std::shared_ptr<TQPaymentsController> payments = std::make_shared<TQPaymentsController>();

  TQPayment::Callback says(const std::string& line) {
    return [this, line](const TQTransactionResult&) { journal->push_back(line); };
  }
  Transactions process(Transactions batch) {
    const auto controller = payments.get();
    return controller->processTransactions(std::move(batch), queue);
  }
  std::vector<std::string> waiting() const {
    std::vector<std::string> products;
    for (const auto& each : payments->payments()) {
      products.push_back(each.product->productIdentifier());
    }
    return products;
  }
};

TEST(TQPaymentsControllerBatch, EmptyBatchGivesAnEmptyRest) {
  Subject subject;
  EXPECT_TRUE(subject.process({}).empty());
}

TEST(TQPaymentsControllerBatch, WhatIsNotHandledComesBackInItsOrder) {
  Subject subject;
  subject.payments->append(aPayment("gems"));
  subject.payments->append(aPayment("club"));
  const auto coins = aTransaction("coins").purchased().make();
  const auto club = aTransaction("club").restored().make();
  const auto later = aTransaction("later").purchasing().make();

  const auto rest = subject.process({coins, aTransaction("gems").purchased(), club, later});

  EXPECT_EQ(rest, (Transactions{coins, club, later}));
}

TEST(TQPaymentsControllerBatch, TransactionsAreHandledInTheOrderOfTheBatch) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.says("gems")));
  subject.payments->append(anUnatomicPayment("coins", subject.says("coins")));

  EXPECT_TRUE(
      subject.process({aTransaction("coins").failed(), aTransaction("gems").purchased()}).empty());

  EXPECT_EQ(*subject.journal, (Journal{"coins", "finish coins", "gems", "finish gems"}));
}

TEST(TQPaymentsControllerBatch, PaymentsForOneProductAreResolvedInTheOrderOfTheirStart) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.says("first")));
  subject.payments->append(aPayment("gems", subject.says("second")));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());
  EXPECT_EQ(*subject.journal, (Journal{"first", "finish gems"}));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());
  EXPECT_EQ(*subject.journal, (Journal{"first", "finish gems", "second", "finish gems"}));
}

TEST(TQPaymentsControllerBatch, OneBatchResolvesAsManyPaymentsAsItHasTransactions) {
  Subject subject;
  for (const auto* name : {"first", "second", "third"}) {
    subject.payments->append(aPayment("gems", subject.says(name)));
  }
  const auto surplus = aTransaction("gems").purchased().make();

  const auto rest =
      subject.process({aTransaction("gems").purchased(), aTransaction("gems").failed(),
                       aTransaction("gems").purchased(), surplus});

  EXPECT_EQ(*subject.journal,
            (Journal{"first", "finish gems", "second", "finish gems", "third", "finish gems"}));
  EXPECT_EQ(rest, Transactions{surplus});
}

TEST(TQPaymentsControllerBatch, AtomicityIsThatOfThePaymentThatIsResolved) {
  Subject subject;
  subject.payments->append(anUnatomicPayment("gems"));
  subject.payments->append(aPayment("gems"));
  const auto second = aTransaction("gems").purchased().make();

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased(), second}).empty());

  EXPECT_EQ(subject.queue.finished, Transactions{second});
}

TEST(TQPaymentsControllerBatch, PurchaseBegunByACallbackWaitsBehindTheResolvedOne) {
  Subject subject;
  std::vector<std::string> during;
  subject.payments->append(aPayment("gems", [&](const TQTransactionResult&) {
    subject.payments->append(aPayment("coins"));
    during = subject.waiting();
  }));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());

  EXPECT_EQ(during, (std::vector<std::string>{"gems", "coins"}));
  EXPECT_EQ(subject.waiting(), std::vector<std::string>{"coins"});
}

TEST(TQPaymentsControllerBatch, PurchaseOfTheSameProductBegunByACallbackStays) {
  Subject subject;
  subject.payments->append(aPayment("gems", [&](const TQTransactionResult&) {
    subject.payments->append(aPayment("gems", subject.says("second")));
  }));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());
  EXPECT_EQ(*subject.journal, Journal{"finish gems"});
  EXPECT_EQ(subject.waiting(), std::vector<std::string>{"gems"});

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());
  EXPECT_EQ(*subject.journal, (Journal{"finish gems", "second", "finish gems"}));
}

TEST(TQPaymentsControllerBatch, PurchaseBegunByACallbackIsResolvedLaterInTheSameBatch) {
  Subject subject;
  subject.payments->append(aPayment("gems", [&](const TQTransactionResult&) {
    subject.payments->append(aPayment("coins", subject.says("coins")));
  }));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased(), aTransaction("coins").purchased()})
                  .empty());

  EXPECT_EQ(*subject.journal, (Journal{"finish gems", "coins", "finish coins"}));
}

TEST(TQPaymentsControllerBatch, CallbackMayMakeTheListGrowAHundredfold) {
  Subject subject;
  const std::string captured(100, 'x');
  std::string read;
  subject.payments->append(aPayment("gems", [&, captured](const TQTransactionResult& result) {
    for (int i = 0; i < 100; ++i) subject.payments->append(aPayment("coins"));
    read = captured + result.asPurchased()->productId;
  }));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());

  EXPECT_EQ(read, captured + "gems");
  EXPECT_EQ(subject.waiting(), std::vector<std::string>(100, "coins"));
}

TEST(TQPaymentsControllerBatch, NestedBatchThatShrinksTheListRemovesNobodyElse) {
  Subject subject;
  subject.payments->append(aPayment("coins", subject.says("coins")));
  subject.payments->append(aPayment("gems", [&](const TQTransactionResult&) {
    EXPECT_TRUE(subject.process({aTransaction("coins").purchased()}).empty());
  }));
  subject.payments->append(aPayment("club"));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());

  EXPECT_EQ(*subject.journal, (Journal{"coins", "finish coins", "finish gems"}));
  EXPECT_EQ(subject.waiting(), std::vector<std::string>{"club"});
}

TEST(TQPaymentsControllerBatch, NestedBatchForTheSameProductLeavesTheYoungerPaymentWaiting) {
  Subject subject;
  int calls = 0;
  subject.payments->append(aPayment("gems", [&](const TQTransactionResult&) {
    if (++calls > 1) return;
    EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());
  }));
  subject.payments->append(aPayment("gems", subject.says("second")));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());

  EXPECT_EQ(*subject.journal, (Journal{"finish gems", "finish gems"}));
  EXPECT_EQ(subject.waiting(), std::vector<std::string>{"gems"});
}

TEST(TQPaymentsControllerBatch, CallbackMayDropTheLastReferenceToTheController) {
  Subject subject;
  const std::weak_ptr<TQPaymentsController> witness = subject.payments;
  subject.payments->append(aPayment("gems", [&](const TQTransactionResult&) {
    subject.payments.reset();
    EXPECT_FALSE(witness.expired());
  }));
  subject.payments->append(aPayment("coins", subject.says("coins")));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased(), aTransaction("coins").purchased()})
                  .empty());

  EXPECT_EQ(*subject.journal, (Journal{"finish gems", "coins", "finish coins"}));
  EXPECT_TRUE(witness.expired());
}

TEST(TQPaymentsControllerBatch, CallbackOfASingleTransactionMayDropTheLastReferenceToo) {
  Subject subject;
  subject.payments->append(
      aPayment("gems", [&](const TQTransactionResult&) { subject.payments.reset(); }));

  EXPECT_TRUE(
      subject.payments->processTransaction(aTransaction("gems").purchased(), subject.queue));

  EXPECT_EQ(*subject.journal, Journal{"finish gems"});
}

TEST(TQPaymentsControllerBatch, CallbackMayDropTheCallersTransaction) {
  Subject subject;
  StoreKit::SKPaymentTransactionPtr transaction = aTransaction("gems").purchased();
  subject.payments->append(
      aPayment("gems", [&](const TQTransactionResult&) { transaction.reset(); }));

  EXPECT_TRUE(subject.payments->processTransaction(transaction, subject.queue));

  EXPECT_EQ(*subject.journal, Journal{"finish gems"});
}

TEST(TQPaymentsControllerBatch, WhatACallbackCapturedIsReleasedOnceItWasResolved) {
  Subject subject;
  subject.payments->append(aPayment("gems", [witness = onDestruction([&] {
                                               subject.journal->emplace_back("released");
                                             })](const TQTransactionResult&) {}));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());

  EXPECT_EQ(*subject.journal, (Journal{"finish gems", "released"}));
}

TEST(TQPaymentsControllerBatch, ReleasingACallbackMayBeginAnotherPurchase) {
  Subject subject;
  subject.payments->append(aPayment("gems", [witness = onDestruction([&] {
                                               subject.payments->append(aPayment("coins"));
                                             })](const TQTransactionResult&) {}));

  EXPECT_TRUE(subject.process({aTransaction("gems").purchased()}).empty());

  EXPECT_EQ(subject.waiting(), std::vector<std::string>{"coins"});
}

}  // namespace
}  // namespace TQStoreKitLib::tests
