#include "TQStoreKitLib/transactions/TQRestorePurchasesController.hpp"

#include <utility>

#include "platform/Foundation/Print.hpp"

namespace TQStoreKitLib {

namespace {

TQPurchase restoredPurchase(const StoreKit::SKPaymentTransactionPtr& transaction, bool atomically) {
  const auto payment = transaction->payment();
  return {.productId = payment->productIdentifier(),
          .quantity = payment->quantity(),
          .transaction = paymentTransaction(transaction),
          .originalTransaction = paymentTransaction(transaction->originalTransaction()),
          .needsFinishTransaction = !atomically};
}

}  // namespace

void TQRestorePurchasesController::begin(TQRestorePurchases restorePurchases) {
  ++serial_;
  restorePurchases_ = std::move(restorePurchases);
}

StoreKit::SKPaymentTransactions TQRestorePurchasesController::processTransactions(
    const StoreKit::SKPaymentTransactions& transactions, TQPaymentQueue& paymentQueue) {
  if (!restorePurchases_) return transactions;
  const auto keepAlive = weak_from_this().lock();
  const bool atomically = restorePurchases_->atomically;
  StoreKit::SKPaymentTransactions unhandled;
  for (const auto& transaction : transactions) {
    if (transaction->transactionState() != StoreKit::SKPaymentTransactionState::restored) {
      unhandled.push_back(transaction);
      continue;
    }
    auto purchase = restoredPurchase(transaction, atomically);
    if (atomically) paymentQueue.finishTransaction(transaction);
    restoredPurchases_.push_back(TQTransactionResult::restored(std::move(purchase)));
  }
  return unhandled;
}

void TQRestorePurchasesController::restoreCompletedTransactionsFailed(
    const Foundation::NSError& withError) {
  if (restorePurchases_) {
    restoredPurchases_.push_back(
        TQTransactionResult::failed(nullptr, StoreKit::SKError(withError)));
  }
  end();
}

void TQRestorePurchasesController::restoreCompletedTransactionsFinished() { end(); }

void TQRestorePurchasesController::end() {
  if (!restorePurchases_) {
    Foundation::print("Callback already called. Returning");
    return;
  }
  const auto keepAlive = weak_from_this().lock();
  const auto serial = serial_;
  const auto callback = restorePurchases_->callback;
  const auto results = restoredPurchases_;
  if (callback) callback(results);
  // The callback may have brought this restore to its end already, and begun another one.
  if (serial != serial_) return;
  const auto gathered = std::exchange(restoredPurchases_, {});
  const auto ended = std::exchange(restorePurchases_, std::nullopt);
}

}  // namespace TQStoreKitLib
