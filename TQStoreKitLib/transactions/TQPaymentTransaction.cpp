#include "TQStoreKitLib/transactions/TQPaymentTransaction.hpp"

#include <utility>

#include "TQStoreKitLib/transactions/TransactionDescriptions.hpp"

namespace TQStoreKitLib {

namespace {

class PlatformTransaction final : public TQPaymentTransaction {
 public:
  explicit PlatformTransaction(StoreKit::SKPaymentTransactionPtr transaction)
      : transaction_(std::move(transaction)) {}

  std::optional<Foundation::Date> transactionDate() const override {
    return transaction_->transactionDate();
  }
  StoreKit::SKPaymentTransactionState transactionState() const override {
    return transaction_->transactionState();
  }
  std::optional<std::string> transactionIdentifier() const override {
    return transaction_->transactionIdentifier();
  }
  StoreKit::SKDownloads downloads() const override { return transaction_->downloads(); }
  std::string description() const override { return debugDescription(*transaction_); }

  const StoreKit::SKPaymentTransactionPtr& transaction() const { return transaction_; }

 private:
  StoreKit::SKPaymentTransactionPtr transaction_;
};

}  // namespace

std::string TQPaymentTransaction::description() const {
  return "transactionId: " + transactionIdentifier().value_or("null") +
         ", state: " + StoreKit::debugDescription(transactionState());
}

TQPaymentTransactionPtr paymentTransaction(StoreKit::SKPaymentTransactionPtr transaction) {
  if (!transaction) return nullptr;
  return std::make_shared<const PlatformTransaction>(std::move(transaction));
}

StoreKit::SKPaymentTransactionPtr platformTransaction(const TQPaymentTransaction& transaction) {
  const auto* platform = dynamic_cast<const PlatformTransaction*>(&transaction);
  return platform ? platform->transaction() : nullptr;
}

}  // namespace TQStoreKitLib
