#pragma once

#include "TQStoreKitLib/transactions/TQPaymentQueue.hpp"
#include "platform/StoreKit/SKPaymentTransaction.hpp"

namespace TQStoreKitLib {

/// One link of the chain that a batch of updated transactions goes through.
///
/// Thread: main.
class TQTransactionController {
 public:
  TQTransactionController() = default;
  TQTransactionController(const TQTransactionController&) = delete;
  TQTransactionController& operator=(const TQTransactionController&) = delete;
  virtual ~TQTransactionController() = default;

  /// Takes the transactions that belong to it and returns the others, in the order received.
  ///
  /// Runs callbacks, which may do anything, except destroy `transactions` or `paymentQueue`.
  [[nodiscard]] virtual StoreKit::SKPaymentTransactions processTransactions(
      const StoreKit::SKPaymentTransactions& transactions, TQPaymentQueue& paymentQueue) = 0;
};

}  // namespace TQStoreKitLib
