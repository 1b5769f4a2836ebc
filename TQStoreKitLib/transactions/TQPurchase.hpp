#pragma once

#include <cstdint>
#include <string>

#include "TQStoreKitLib/transactions/TQPaymentTransaction.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace TQStoreKitLib {

/// A transaction that a restore or the launch-time completion delivered.
///
/// Read `transaction->transactionState()` before granting anything: the launch-time completion
/// delivers failed and deferred transactions too.
struct TQPurchase {
  std::string productId{};
  std::int64_t quantity = 0;
  /// Never null.
  TQPaymentTransactionPtr transaction{};
  /// The purchase that this one repeats; null when the platform gives none.
  TQPaymentTransactionPtr originalTransaction{};
  /// True when the application must call `TQStoreKit::finishTransaction` once it has delivered. Of
  /// a deferred one it can be true as well: deliver nothing then and leave it alone, until it is
  /// told of again as purchased or failed.
  bool needsFinishTransaction = false;
};

/// A purchase that succeeded.
struct TQPurchaseDetails {
  std::string productId{};
  /// What the store sold, which is what counts, also when the application asked for another number.
  std::int64_t quantity = 0;
  /// The product that the application bought; never null.
  StoreKit::SKProductPtr product{};
  /// Never null.
  TQPaymentTransactionPtr transaction{};
  /// Null when the platform gives none.
  TQPaymentTransactionPtr originalTransaction{};
  /// True when the application must call `TQStoreKit::finishTransaction` once it has delivered: the
  /// opposite of the purchase's `atomically`.
  bool needsFinishTransaction = false;
};

}  // namespace TQStoreKitLib
