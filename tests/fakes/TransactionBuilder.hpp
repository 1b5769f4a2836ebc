#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "platform/StoreKit/SKError.hpp"
#include "tests/fakes/FakeTransaction.hpp"

namespace TQStoreKitLib::tests {

/// Builds a transaction as a sentence: `aTransaction("gems").purchased().ofQuantity(3)`.
class TransactionBuilder {
 public:
  using State = StoreKit::SKPaymentTransactionState;

  explicit TransactionBuilder(std::string productIdentifier) {
    values_.payment.productIdentifier = std::move(productIdentifier);
  }

  TransactionBuilder& inState(State state) {
    values_.state = state;
    return *this;
  }
  TransactionBuilder& inState(std::int64_t raw) { return inState(static_cast<State>(raw)); }
  TransactionBuilder& purchasing() { return inState(State::purchasing); }
  TransactionBuilder& purchased() { return inState(State::purchased); }
  TransactionBuilder& failed() { return inState(State::failed); }
  TransactionBuilder& restored() { return inState(State::restored); }
  TransactionBuilder& deferred() { return inState(State::deferred); }

  TransactionBuilder& failedWith(StoreKit::SKError::Code code) {
    return failedWith(StoreKit::SKError(code).nsError());
  }
  TransactionBuilder& failedWith(Foundation::NSError error) {
    values_.error = std::move(error);
    return failed();
  }
  TransactionBuilder& ofQuantity(std::int64_t quantity) {
    values_.payment.quantity = quantity;
    return *this;
  }
  TransactionBuilder& identifiedBy(std::string identifier) {
    values_.identifier = std::move(identifier);
    return *this;
  }
  TransactionBuilder& datedAt(double secondsSinceEpoch) {
    values_.date = Foundation::Date::sinceEpoch(secondsSinceEpoch);
    return *this;
  }
  TransactionBuilder& repeating(StoreKit::SKPaymentTransactionPtr original) {
    values_.original = std::move(original);
    return *this;
  }
  TransactionBuilder& withDownloads(StoreKit::SKDownloads downloads) {
    values_.downloads = std::move(downloads);
    return *this;
  }

  [[nodiscard]] std::shared_ptr<FakeTransaction> make() const {
    return std::make_shared<FakeTransaction>(values_);
  }
  // NOLINTNEXTLINE(google-explicit-constructor): so that a batch reads as a list of sentences
  operator StoreKit::SKPaymentTransactionPtr() const { return make(); }

 private:
  FakeTransaction::Values values_;
};

inline TransactionBuilder aTransaction(const std::string& productIdentifier) {
  return TransactionBuilder(productIdentifier);
}

}  // namespace TQStoreKitLib::tests
