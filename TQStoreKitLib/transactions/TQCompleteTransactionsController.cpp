#include "TQStoreKitLib/transactions/TQCompleteTransactionsController.hpp"

#include <string>
#include <utility>

#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"
#include "platform/Foundation/Print.hpp"

namespace TQStoreKitLib {

namespace {

using State = StoreKit::SKPaymentTransactionState;

TQPurchase completedPurchase(const StoreKit::SKPaymentTransactionPtr& transaction, bool finish) {
  const auto payment = transaction->payment();
  return {.productId = payment->productIdentifier(),
          .quantity = payment->quantity(),
          .transaction = paymentTransaction(transaction),
          .originalTransaction = paymentTransaction(transaction->originalTransaction()),
          .needsFinishTransaction = !finish};
}

void finishLoudly(const StoreKit::SKPaymentTransactionPtr& transaction,
                  TQPaymentQueue& paymentQueue) {
  Foundation::print("Finishing transaction for payment \"" +
                    transaction->payment()->productIdentifier() +
                    "\" with state: " + debugDescription(transaction->transactionState()));
  paymentQueue.finishTransaction(transaction);
}

}  // namespace

void TQCompleteTransactionsController::registerCompletion(
    TQCompleteTransactions completeTransactions) {
  completeTransactions_ = std::move(completeTransactions);
}

StoreKit::SKPaymentTransactions TQCompleteTransactionsController::processTransactions(
    const StoreKit::SKPaymentTransactions& transactions, TQPaymentQueue& paymentQueue) {
  if (!completeTransactions_) {
    Foundation::print(
        "TQStoreKit.completeTransactions() should be called once when the app launches.");
    return transactions;
  }
  const auto keepAlive = weak_from_this().lock();
  const auto registration = *completeTransactions_;
  std::vector<TQPurchase> purchases;
  StoreKit::SKPaymentTransactions unhandled;
  for (const auto& transaction : transactions) {
    const auto state = transaction->transactionState();
    if (state == State::purchasing) {
      unhandled.push_back(transaction);
      continue;
    }
    const bool finish = registration.atomically || state == State::failed;
    purchases.push_back(completedPurchase(transaction, finish));
    if (finish) finishLoudly(transaction, paymentQueue);
  }
  if (!purchases.empty() && registration.callback) registration.callback(purchases);
  return unhandled;
}

}  // namespace TQStoreKitLib
