#pragma once

#include <string>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKPaymentTransaction.hpp"

namespace StoreKit {

/// Hears what happens in the payment queue.
///
/// The queue does not own its observers: an observer removes itself before it goes away. It may do
/// so, and go away, inside a callback.
/// Callbacks come on: the main queue, never inside the call that caused them.
class SKPaymentTransactionObserver {
 public:
  virtual ~SKPaymentTransactionObserver() = default;

  /// Transactions are new in the queue, or changed. One batch may mix states and products.
  virtual void paymentQueueUpdatedTransactions(const SKPaymentTransactions& transactions) = 0;

  /// Transactions left the queue because they were finished.
  virtual void paymentQueueRemovedTransactions(const SKPaymentTransactions& /*transactions*/) {}

  /// A restore ended early. What it had restored so far was delivered before.
  virtual void paymentQueueRestoreCompletedTransactionsFailedWithError(
      const Foundation::NSError& /*error*/) {}

  /// A restore ended: all its transactions were delivered before.
  virtual void paymentQueueRestoreCompletedTransactionsFinished() {}

  /// Downloads changed their state or made progress.
  virtual void paymentQueueUpdatedDownloads(const SKDownloads& /*downloads*/) {}

  /// The user began a purchase in the store itself. True: the queue carries on with it. False: it
  /// does not; the observer may keep `payment` and add it later.
  [[nodiscard]] virtual bool paymentQueueShouldAddStorePayment(const SKPaymentPtr& /*payment*/,
                                                               const SKProductPtr& /*product*/) {
    return false;
  }
};

}  // namespace StoreKit
