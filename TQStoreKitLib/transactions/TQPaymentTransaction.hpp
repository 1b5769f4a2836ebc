#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/Foundation/Date.hpp"
#include "platform/StoreKit/SKPaymentTransaction.hpp"

namespace TQStoreKitLib {

/// One transaction, as the library's records hold it.
///
/// The platform's transactions are one kind (`paymentTransaction` makes one); a test may derive
/// another. A live view: each member says what the platform says now.
/// Thread: main.
class TQPaymentTransaction {
 public:
  TQPaymentTransaction() = default;
  TQPaymentTransaction(const TQPaymentTransaction&) = delete;
  TQPaymentTransaction& operator=(const TQPaymentTransaction&) = delete;
  virtual ~TQPaymentTransaction() = default;

  /// When the platform recorded the transaction.
  [[nodiscard]] virtual std::optional<Foundation::Date> transactionDate() const = 0;
  /// Values that no enumerator has are handed on unchanged.
  [[nodiscard]] virtual StoreKit::SKPaymentTransactionState transactionState() const = 0;
  /// The platform's identifier of the transaction.
  [[nodiscard]] virtual std::optional<std::string> transactionIdentifier() const = 0;
  /// The hosted content that belongs to the transaction.
  [[nodiscard]] virtual StoreKit::SKDownloads downloads() const = 0;

  /// How the transaction is printed in a diagnostic line.
  [[nodiscard]] virtual std::string description() const;
};

using TQPaymentTransactionPtr = std::shared_ptr<const TQPaymentTransaction>;

/// The library's view of a platform transaction; null gives null. It keeps the transaction alive.
[[nodiscard]] TQPaymentTransactionPtr paymentTransaction(
    StoreKit::SKPaymentTransactionPtr transaction);

/// The platform transaction behind `transaction`; null when it is of another kind.
[[nodiscard]] StoreKit::SKPaymentTransactionPtr platformTransaction(
    const TQPaymentTransaction& transaction);

}  // namespace TQStoreKitLib
