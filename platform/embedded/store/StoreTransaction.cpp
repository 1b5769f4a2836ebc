#include "platform/embedded/store/StoreTransaction.hpp"

namespace StoreKit {

StoreTransaction StoreTransaction::of(const LedgerEntry& entry) {
  StoreTransaction transaction{
      .identifier = entry.identifier,
      .originalTransactionIdentifier = entry.original,
      .transactionIdentifier = entry.transactionIdentifier,
      .productIdentifier = entry.payment.productIdentifier,
      .quantity = entry.payment.quantity,
      .state = entry.state,
      .applicationUsername = entry.payment.applicationUsername,
      .error = entry.error,
      .finished = entry.finished,
      .purchaseDate = entry.transactionDate,
      .cancelDate = entry.cancelDate,
      .hasPurchaseIssue = entry.hasPurchaseIssue,
      .pendingAskToBuyConfirmation = entry.state == SKPaymentTransactionState::deferred};
  if (const auto& period = entry.period) {
    transaction.expirationDate = period->ends;
    transaction.autoRenewingEnabled = period->running && period->renews;
    transaction.hasPurchaseIssue |= period->running && period->retryingSince;
    transaction.isPendingPriceIncreaseConsent = period->running && period->asksForPriceIncrease;
  }
  return transaction;
}

}  // namespace StoreKit
