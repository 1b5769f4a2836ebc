#pragma once

#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"

namespace TQStoreKitLib::tests {

/// Keeps what the payment queue reports.
class RecordingObserver final : public StoreKit::SKPaymentTransactionObserver {
 public:
  StoreKit::SKPaymentTransactions updated{};
  int restoresEnded = 0;

  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override {
    updated.insert(updated.end(), transactions.begin(), transactions.end());
  }
  void paymentQueueRestoreCompletedTransactionsFinished() override { ++restoresEnded; }
};

}  // namespace TQStoreKitLib::tests
