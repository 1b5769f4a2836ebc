#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "TQStoreKitLib/transactions/TQPurchase.hpp"
#include "platform/StoreKit/SKError.hpp"

namespace TQStoreKitLib {

/// What a restore brought back.
struct TQRestoreResults {
  /// A failure, and the product identifier where one is known.
  using Failure = std::pair<StoreKit::SKError, std::optional<std::string>>;

  /// In the order in which they arrived.
  std::vector<TQPurchase> restoredPurchases;
  /// In the order in which they arrived.
  std::vector<Failure> restoreFailedPurchases;
};

}  // namespace TQStoreKitLib
