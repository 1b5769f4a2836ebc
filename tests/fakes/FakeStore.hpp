#pragma once

#include <memory>
#include <utility>

#include "TQStoreKitLib/transactions/TQStoreKitInstance.hpp"
#include "tests/fakes/FakePaymentQueue.hpp"
#include "tests/fakes/FakeProductsRequestBuilder.hpp"

namespace TQStoreKitLib::tests {

/// The whole library on a queue and requests that are doubles; they share one journal.
struct FakeStore {
  explicit FakeStore(JournalPtr sharedJournal = aJournal()) : journal(std::move(sharedJournal)) {}
  ~FakeStore() { builder->abandonAll(); }
  FakeStore(const FakeStore&) = delete;
  FakeStore& operator=(const FakeStore&) = delete;

  JournalPtr journal;
  FakePaymentQueue queue{journal};
  std::shared_ptr<FakeProductsRequestBuilder> builder =
      std::make_shared<FakeProductsRequestBuilder>(journal);
  std::shared_ptr<TQPaymentsController> payments = std::make_shared<TQPaymentsController>();
  std::shared_ptr<TQRestorePurchasesController> restore =
      std::make_shared<TQRestorePurchasesController>();
  std::shared_ptr<TQCompleteTransactionsController> complete =
      std::make_shared<TQCompleteTransactionsController>();
  std::shared_ptr<PaymentQueueController> controller =
      std::make_shared<PaymentQueueController>(queue, payments, restore, complete);
  std::unique_ptr<TQStoreKitInstance> instance =
      std::make_unique<TQStoreKitInstance>(TQInAppProducts::make(builder), controller);

  /// The platform reports a batch.
  void report(const StoreKit::SKPaymentTransactions& transactions) const {
    controller->paymentQueueUpdatedTransactions(transactions);
  }
  /// Lets go of everything but the queue; what is under way must keep itself alive.
  void dropControllers() {
    instance.reset();
    controller.reset();
    payments.reset();
    restore.reset();
    complete.reset();
  }
};

}  // namespace TQStoreKitLib::tests
