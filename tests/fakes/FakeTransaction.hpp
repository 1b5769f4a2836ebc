#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/StoreKit/SKPaymentTransaction.hpp"

namespace TQStoreKitLib::tests {

/// A platform transaction that says what it was told to say.
class FakeTransaction final : public StoreKit::SKPaymentTransaction {
 public:
  struct Values {
    StoreKit::SKPayment::Values payment{};
    StoreKit::SKPaymentTransactionState state = StoreKit::SKPaymentTransactionState::purchasing;
    std::optional<std::string> identifier{};
    std::optional<Foundation::Date> date{};
    std::optional<Foundation::NSError> error{};
    StoreKit::SKPaymentTransactionPtr original{};
    StoreKit::SKDownloads downloads{};
  };

  explicit FakeTransaction(Values values)
      : values_(std::move(values)),
        payment_(std::make_shared<const StoreKit::SKPayment>(values_.payment)) {}

  /// The platform changes transactions in place.
  void changeState(StoreKit::SKPaymentTransactionState state) { values_.state = state; }

  [[nodiscard]] StoreKit::SKPaymentPtr payment() const override { return payment_; }
  [[nodiscard]] StoreKit::SKPaymentTransactionState transactionState() const override {
    return values_.state;
  }
  [[nodiscard]] std::optional<std::string> transactionIdentifier() const override {
    return values_.identifier;
  }
  [[nodiscard]] std::optional<Foundation::Date> transactionDate() const override {
    return values_.date;
  }
  [[nodiscard]] std::optional<Foundation::NSError> error() const override { return values_.error; }
  [[nodiscard]] StoreKit::SKPaymentTransactionPtr originalTransaction() const override {
    return values_.original;
  }
  [[nodiscard]] StoreKit::SKDownloads downloads() const override { return values_.downloads; }

 private:
  Values values_;
  StoreKit::SKPaymentPtr payment_;
};

}  // namespace TQStoreKitLib::tests
