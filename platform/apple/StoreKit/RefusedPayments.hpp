#pragma once

#include <vector>

#include "platform/StoreKit/SKPaymentTransaction.hpp"

namespace StoreKit {

/// The payments that the platform did not take, as failed transactions: whoever waits for a purchase
/// hears of its end.
///
/// The platform raises an exception for a payment that it cannot even queue, one for no product or
/// for no piece of it, and there is no transaction then.
/// Thread: main.
class RefusedPayments {
 public:
  /// A failed transaction, with the store's error for a payment that is not valid.
  [[nodiscard]] SKPaymentTransactionPtr add(const SKPayment& payment);

  /// True when `transaction` was one of these; it is not any more.
  bool finish(const SKPaymentTransactionPtr& transaction);

  /// Those that are not finished.
  [[nodiscard]] const SKPaymentTransactions& transactions() const { return transactions_; }

 private:
  SKPaymentTransactions transactions_;
};

}  // namespace StoreKit
