#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/Date.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKDownload.hpp"
#include "platform/StoreKit/SKPayment.hpp"

namespace StoreKit {

/// Where a transaction stands. Values that no enumerator has arrive unchanged.
enum class SKPaymentTransactionState : std::int64_t {
  purchasing = 0,  ///< being added to the store's queue
  purchased = 1,   ///< paid: deliver, then finish
  failed = 2,      ///< cancelled or failed: finish
  restored = 3,    ///< an earlier purchase again: deliver, then finish
  deferred = 4,    ///< waits for somebody's approval: leave it alone
};

/// One purchase or restored purchase in the payment queue.
///
/// A live, read-only view, held by `SKPaymentTransactionPtr`: the platform changes transactions in
/// place, and each member says what it says now. A realisation derives from it and knows its own
/// again when it comes back to be finished; a test may derive a double.
/// Thread: main.
class SKPaymentTransaction {
 public:
  SKPaymentTransaction() = default;
  SKPaymentTransaction(const SKPaymentTransaction&) = delete;
  SKPaymentTransaction& operator=(const SKPaymentTransaction&) = delete;
  virtual ~SKPaymentTransaction() = default;

  /// Never null.
  [[nodiscard]] virtual SKPaymentPtr payment() const = 0;
  [[nodiscard]] virtual SKPaymentTransactionState transactionState() const = 0;
  /// Only of a purchased or restored transaction.
  [[nodiscard]] virtual std::optional<std::string> transactionIdentifier() const = 0;
  /// Only of a purchased or restored transaction.
  [[nodiscard]] virtual std::optional<Foundation::Date> transactionDate() const = 0;
  /// Only of a failed transaction.
  [[nodiscard]] virtual std::optional<Foundation::NSError> error() const = 0;
  /// The purchase that a restored transaction repeats; null when the platform gives none.
  [[nodiscard]] virtual std::shared_ptr<const SKPaymentTransaction> originalTransaction() const = 0;
  /// Hosted content of a purchased or restored transaction.
  [[nodiscard]] virtual SKDownloads downloads() const = 0;

  /// The platform's own equality; a double's is identity.
  [[nodiscard]] virtual bool isEqual(const SKPaymentTransaction& other) const {
    return this == &other;
  }
  [[nodiscard]] virtual std::size_t hash() const {
    return std::hash<const SKPaymentTransaction*>{}(this);
  }
};

using SKPaymentTransactionPtr = std::shared_ptr<const SKPaymentTransaction>;
using SKPaymentTransactions = std::vector<SKPaymentTransactionPtr>;

}  // namespace StoreKit
