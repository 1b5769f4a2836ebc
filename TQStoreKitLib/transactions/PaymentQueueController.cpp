#include "TQStoreKitLib/transactions/PaymentQueueController.hpp"

#include <algorithm>
#include <any>
#include <cstdlib>
#include <string>
#include <utility>

#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"
#include "platform/Foundation/OperatingSystem.hpp"
#include "platform/Foundation/Print.hpp"

namespace TQStoreKitLib {

namespace {

[[noreturn]] TQPaymentQueue& noQueue() {
  Foundation::fatalError("init() is not implemented for \"TQStoreKitLib.PaymentQueueController\"");
}

StoreKit::SKMutablePayment platformPayment(const TQPayment& payment) {
  StoreKit::SKMutablePayment result(payment.product);
  result.setApplicationUsername(payment.applicationUsername);
  result.setQuantity(payment.quantity);
  if (payment.paymentDiscount && Foundation::isOperatingSystemAtLeast(12, 2)) {
    const auto& discount = payment.paymentDiscount->discount;
    if (const auto* known = std::any_cast<StoreKit::SKPaymentDiscount>(&discount)) {
      result.setPaymentDiscount(*known);
    }
  }
  result.setSimulatesAskToBuyInSandbox(payment.simulatesAskToBuyInSandbox);
  return result;
}

bool isPurchasing(const StoreKit::SKPaymentTransactionPtr& transaction) {
  return transaction->transactionState() == StoreKit::SKPaymentTransactionState::purchasing;
}

void printUnhandled(const StoreKit::SKPaymentTransactions& transactions) {
  std::string message = "unhandledTransactions:";
  for (const auto& transaction : transactions) {
    message += '\n' + StoreKit::debugDescription(*transaction);
  }
  Foundation::print(message);
}

}  // namespace

PaymentQueueController::PaymentQueueController(
    TQPaymentQueue& paymentQueue, std::shared_ptr<TQPaymentsController> paymentsController,
    std::shared_ptr<TQRestorePurchasesController> restorePurchasesController,
    std::shared_ptr<TQCompleteTransactionsController> completeTransactionsController)
    : paymentsController_(std::move(paymentsController)),
      restorePurchasesController_(std::move(restorePurchasesController)),
      completeTransactionsController_(std::move(completeTransactionsController)),
      paymentQueue_(paymentQueue) {
  paymentQueue_.add(*this);
}

PaymentQueueController::PaymentQueueController() : paymentQueue_(noQueue()) { std::abort(); }

PaymentQueueController::~PaymentQueueController() { paymentQueue_.remove(*this); }

void PaymentQueueController::startPayment(TQPayment payment) {
  const auto payments = paymentsController_;
  paymentQueue_.add(platformPayment(payment));
  payments->append(std::move(payment));
}

void PaymentQueueController::restorePurchases(TQRestorePurchases restorePurchases) {
  const auto restore = restorePurchasesController_;
  if (restore->restorePurchases()) return;
  paymentQueue_.restoreCompletedTransactions(restorePurchases.applicationUsername);
  restore->begin(std::move(restorePurchases));
}

void PaymentQueueController::completeTransactions(TQCompleteTransactions completeTransactions) {
  if (completeTransactionsController_->completeTransactions()) {
    Foundation::print(
        "TQStoreKit.completeTransactions() should only be called once when the app launches. "
        "Ignoring this call");
    return;
  }
  completeTransactionsController_->registerCompletion(std::move(completeTransactions));
}

void PaymentQueueController::finishTransaction(const TQPaymentTransaction& transaction) {
  if (const auto platform = platformTransaction(transaction)) {
    paymentQueue_.finishTransaction(platform);
  } else {
    Foundation::print("Object is not a SKPaymentTransaction: " + transaction.description());
  }
}

void PaymentQueueController::start(const StoreKit::SKDownloads& downloads) {
  paymentQueue_.start(downloads);
}

void PaymentQueueController::pause(const StoreKit::SKDownloads& downloads) {
  paymentQueue_.pause(downloads);
}

void PaymentQueueController::resume(const StoreKit::SKDownloads& downloads) {
  paymentQueue_.resume(downloads);
}

void PaymentQueueController::cancel(const StoreKit::SKDownloads& downloads) {
  paymentQueue_.cancel(downloads);
}

void PaymentQueueController::paymentQueueUpdatedTransactions(
    const StoreKit::SKPaymentTransactions& transactions) {
  if (std::all_of(transactions.begin(), transactions.end(), isPurchasing)) return;
  // A callback may destroy this object and the caller's list: neither is used once the first
  // controller has run.
  const auto batch = transactions;  // NOLINT(performance-unnecessary-copy-initialization)
  const auto payments = paymentsController_;
  const auto restore = restorePurchasesController_;
  const auto complete = completeTransactionsController_;
  TQPaymentQueue& queue = paymentQueue_;
  auto rest = payments->processTransactions(batch, queue);
  rest = restore->processTransactions(rest, queue);
  rest = complete->processTransactions(rest, queue);
  if (!rest.empty()) printUnhandled(rest);
}

void PaymentQueueController::paymentQueueRestoreCompletedTransactionsFailedWithError(
    const Foundation::NSError& error) {
  const auto restore = restorePurchasesController_;
  restore->restoreCompletedTransactionsFailed(error);
}

void PaymentQueueController::paymentQueueRestoreCompletedTransactionsFinished() {
  const auto restore = restorePurchasesController_;
  restore->restoreCompletedTransactionsFinished();
}

void PaymentQueueController::paymentQueueUpdatedDownloads(const StoreKit::SKDownloads& downloads) {
  const auto handler = updatedDownloadsHandler;
  if (handler) handler(downloads);
}

bool PaymentQueueController::paymentQueueShouldAddStorePayment(
    const StoreKit::SKPaymentPtr& payment, const StoreKit::SKProductPtr& product) {
  const auto handler = shouldAddStorePaymentHandler;
  return handler && handler(payment, product);
}

}  // namespace TQStoreKitLib
