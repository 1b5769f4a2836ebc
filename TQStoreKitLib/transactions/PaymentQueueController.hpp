#pragma once

#include <functional>
#include <memory>

#include "TQStoreKitLib/transactions/TQCompleteTransactionsController.hpp"
#include "TQStoreKitLib/transactions/TQPaymentQueue.hpp"
#include "TQStoreKitLib/transactions/TQPaymentsController.hpp"
#include "TQStoreKitLib/transactions/TQRestorePurchasesController.hpp"
#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"

namespace TQStoreKitLib {

/// The library's one observer of the payment queue.
///
/// Turns what the application asks for into operations of the queue, and hands each batch of
/// updated transactions to the payments, the restore and the completion controller, in this order.
/// Thread: main; callbacks come on the thread on which the queue reports. A callback may do
/// anything, destroying this object included; only the queue must outlive the call.
class PaymentQueueController final : public StoreKit::SKPaymentTransactionObserver {
 public:
  using ShouldAddStorePaymentHandler =
      std::function<bool(const StoreKit::SKPaymentPtr&, const StoreKit::SKProductPtr&)>;
  using UpdatedDownloadsHandler = std::function<void(const StoreKit::SKDownloads&)>;

  /// Begins to observe `paymentQueue`, which is not owned and must outlive this object.
  PaymentQueueController(
      TQPaymentQueue& paymentQueue, std::shared_ptr<TQPaymentsController> paymentsController,
      std::shared_ptr<TQRestorePurchasesController> restorePurchasesController,
      std::shared_ptr<TQCompleteTransactionsController> completeTransactionsController);

  /// Not supported: stops the program.
  [[noreturn]] PaymentQueueController();

  /// Stops observing.
  ~PaymentQueueController() override;
  PaymentQueueController(const PaymentQueueController&) = delete;
  PaymentQueueController& operator=(const PaymentQueueController&) = delete;

  /// Adds a platform payment for `payment` to the queue, then keeps `payment` until it is resolved.
  /// A discount is passed on only from iOS 12.2 on.
  void startPayment(TQPayment payment);

  /// Asks the queue to restore, then keeps the request until the restore ends. While another
  /// restore is under way this does nothing: the request's callback is never called.
  void restorePurchases(TQRestorePurchases restorePurchases);

  /// Registers for transactions that nobody waits for. The first registration stays; a later one
  /// is dropped with a printed line.
  void completeTransactions(TQCompleteTransactions completeTransactions);

  /// Finishes a platform transaction in the queue. Anything else is printed and left alone.
  void finishTransaction(const TQPaymentTransaction& transaction);

  void start(const StoreKit::SKDownloads& downloads);
  void pause(const StoreKit::SKDownloads& downloads);
  void resume(const StoreKit::SKDownloads& downloads);
  void cancel(const StoreKit::SKDownloads& downloads);

  /// Asked whether to go on with a purchase that began in the store itself. Empty: it does not.
  ShouldAddStorePaymentHandler shouldAddStorePaymentHandler;
  /// Told about the state and progress of downloads. Empty: nobody is.
  UpdatedDownloadsHandler updatedDownloadsHandler;

  [[nodiscard]] const std::shared_ptr<TQCompleteTransactionsController>&
  completeTransactionsController() const {
    return completeTransactionsController_;
  }
  [[nodiscard]] TQPaymentQueue& paymentQueue() const { return paymentQueue_; }

  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override;
  void paymentQueueRemovedTransactions(const StoreKit::SKPaymentTransactions&) override {}
  void paymentQueueRestoreCompletedTransactionsFailedWithError(
      const Foundation::NSError& error) override;
  void paymentQueueRestoreCompletedTransactionsFinished() override;
  void paymentQueueUpdatedDownloads(const StoreKit::SKDownloads& downloads) override;
  [[nodiscard]] bool paymentQueueShouldAddStorePayment(
      const StoreKit::SKPaymentPtr& payment, const StoreKit::SKProductPtr& product) override;

 private:
  std::shared_ptr<TQPaymentsController> paymentsController_;
  std::shared_ptr<TQRestorePurchasesController> restorePurchasesController_;
  std::shared_ptr<TQCompleteTransactionsController> completeTransactionsController_;
  TQPaymentQueue& paymentQueue_;
};

}  // namespace TQStoreKitLib
