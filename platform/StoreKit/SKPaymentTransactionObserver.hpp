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

  /// The user buys in another country from now on: prices that were fetched before are not the
  /// right ones any more. From iOS 13.0 on.
  virtual void paymentQueueDidChangeStorefront() {}

  /// The user has lost what was bought: a refund, or the end of family sharing. From iOS 14.0 on.
  virtual void paymentQueueDidRevokeEntitlements(
      const std::vector<std::string>& /*productIdentifiers*/) {}
};

}  // namespace StoreKit
