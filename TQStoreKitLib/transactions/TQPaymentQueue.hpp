#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/StoreKit/SKPaymentQueue.hpp"

namespace TQStoreKitLib {

/// The payment queue as the library uses it: the platform's, or a test's double.
///
/// Whoever owns it keeps it alive longer than the controllers that use it.
/// Thread: main.
class TQPaymentQueue {
 public:
  TQPaymentQueue() = default;
  TQPaymentQueue(const TQPaymentQueue&) = delete;
  TQPaymentQueue& operator=(const TQPaymentQueue&) = delete;
  virtual ~TQPaymentQueue() = default;

  /// `observer` is not owned and is removed before it goes away.
  virtual void add(StoreKit::SKPaymentTransactionObserver& observer) = 0;
  virtual void remove(StoreKit::SKPaymentTransactionObserver& observer) = 0;
  /// Copies the payment.
  virtual void add(const StoreKit::SKPayment& payment) = 0;
  virtual void start(const StoreKit::SKDownloads& downloads) = 0;
  virtual void pause(const StoreKit::SKDownloads& downloads) = 0;
  virtual void resume(const StoreKit::SKDownloads& downloads) = 0;
  virtual void cancel(const StoreKit::SKDownloads& downloads) = 0;
  /// An absent name restores for every user; an empty one is a name.
  virtual void restoreCompletedTransactions(
      const std::optional<std::string>& withApplicationUsername) = 0;
  virtual void finishTransaction(const StoreKit::SKPaymentTransactionPtr& transaction) = 0;
};

/// The platform's default payment queue behind that interface. Lives as long as the process; made
/// on first use.
[[nodiscard]] TQPaymentQueue& platformPaymentQueue();

}  // namespace TQStoreKitLib
