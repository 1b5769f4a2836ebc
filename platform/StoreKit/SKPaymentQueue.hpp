#pragma once

#include <optional>
#include <string>

#include "platform/StoreKit/SKPaymentTransaction.hpp"
#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"

namespace StoreKit {

/// The platform's payment queue: takes payments, reports what becomes of them, keeps each
/// transaction until it is finished.
///
/// All operations return before any observer hears of their effect.
/// Thread: main.
class SKPaymentQueue {
 public:
  SKPaymentQueue(const SKPaymentQueue&) = delete;
  SKPaymentQueue& operator=(const SKPaymentQueue&) = delete;

  /// The process's one queue; made on first use, never destroyed.
  [[nodiscard]] static SKPaymentQueue& defaultQueue();

  /// False when the user or the device may not pay; a payment that is added all the same fails.
  [[nodiscard]] static bool canMakePayments();

  /// Begins to observe. `observer` is not owned: it must be removed before it goes away. The first
  /// observer of a run is given the unfinished transactions of earlier runs. An observer that is
  /// there already is not added again.
  void addTransactionObserver(SKPaymentTransactionObserver& observer);

  /// After this call, `observer` is not called any more. One that is not there is ignored.
  void removeTransactionObserver(SKPaymentTransactionObserver& observer);

  /// Copies `payment` and begins a purchase. Adding the same payment twice makes two purchases.
  void addPayment(const SKPayment& payment);

  /// Ends `transaction`: it leaves the queue and does not come back. One that is finished already
  /// or is not this queue's is ignored; one in state purchasing must not be finished.
  void finishTransaction(const SKPaymentTransactionPtr& transaction);

  /// Replays what the user bought and can have again; with a name, only what was bought with it.
  /// Ends with one of the two restore messages.
  void restoreCompletedTransactions(const std::optional<std::string>& applicationUsername);

  void startDownloads(const SKDownloads& downloads);
  void pauseDownloads(const SKDownloads& downloads);
  void resumeDownloads(const SKDownloads& downloads);
  void cancelDownloads(const SKDownloads& downloads);

  /// The transactions that are not finished, in the order in which they were added.
  [[nodiscard]] SKPaymentTransactions transactions() const;

 private:
  SKPaymentQueue() = default;
  ~SKPaymentQueue() = default;
};

}  // namespace StoreKit
