#pragma once

#include "TQStoreKitLib/transactions/TQPaymentTransaction.hpp"

namespace TQStoreKitLib::tests {

/// A transaction that is not the platform's.
class ForeignTransaction final : public TQPaymentTransaction {
 public:
  [[nodiscard]] std::optional<Foundation::Date> transactionDate() const override {
    return std::nullopt;
  }
  [[nodiscard]] StoreKit::SKPaymentTransactionState transactionState() const override {
    return StoreKit::SKPaymentTransactionState::purchased;
  }
  [[nodiscard]] std::optional<std::string> transactionIdentifier() const override { return "77"; }
  [[nodiscard]] StoreKit::SKDownloads downloads() const override { return {}; }
};

}  // namespace TQStoreKitLib::tests
