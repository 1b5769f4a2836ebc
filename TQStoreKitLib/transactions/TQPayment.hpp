#pragma once

#include <any>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "TQStoreKitLib/transactions/TQTransactionResult.hpp"
#include "platform/StoreKit/SKPaymentDiscount.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace TQStoreKitLib {

/// A signed promotional offer to buy with (iOS 12.2 and newer; older systems ignore it).
struct TQPaymentDiscount {
  explicit TQPaymentDiscount(StoreKit::SKPaymentDiscount signedOffer)
      : discount(std::move(signedOffer)) {}

  /// Typed loosely, since the platform's type is missing from older systems. Anything but a
  /// `StoreKit::SKPaymentDiscount` is ignored.
  std::any discount;
};

/// A purchase that was added to the platform's queue and waits for its outcome.
struct TQPayment {
  /// Called once, when the purchase ends. Empty: nobody is told.
  using Callback = std::function<void(const TQTransactionResult&)>;

  /// Never null.
  StoreKit::SKProductPtr product;
  std::optional<TQPaymentDiscount> paymentDiscount{};
  std::int64_t quantity = 1;
  /// True: the library finishes the transaction itself once the purchase was delivered.
  bool atomically = true;
  /// Passed to the platform as it is, also when empty.
  std::string applicationUsername{};
  bool simulatesAskToBuyInSandbox = false;
  Callback callback{};

  /// Two payments are equal when they are for the same product identifier; nothing else counts.
  friend bool operator==(const TQPayment& a, const TQPayment& b) {
    return a.product->productIdentifier() == b.product->productIdentifier();
  }

  /// Combines the product's hash, quantity, atomicity, user name and the ask-to-buy flag. Equal
  /// payments may thus have different hashes, which is why there is no `std::hash` of a payment.
  [[nodiscard]] std::size_t hashValue() const;
};

}  // namespace TQStoreKitLib
