#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"

namespace StoreKit {

std::string debugDescription(SKPaymentTransactionState state) {
  switch (state) {
    case SKPaymentTransactionState::purchasing:
      return "purchasing";
    case SKPaymentTransactionState::purchased:
      return "purchased";
    case SKPaymentTransactionState::failed:
      return "failed";
    case SKPaymentTransactionState::restored:
      return "restored";
    case SKPaymentTransactionState::deferred:
      return "deferred";
  }
  return "default";
}

std::string debugDescription(const SKPaymentTransaction& transaction) {
  const auto date = transaction.transactionDate();
  return "productId: " + transaction.payment()->productIdentifier() +
         ", transactionId: " + transaction.transactionIdentifier().value_or("null") +
         ", state: " + debugDescription(transaction.transactionState()) +
         ", date: " + (date ? "Optional(" + date->description() + ")" : "nil");
}

}  // namespace StoreKit
