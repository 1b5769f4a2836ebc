#pragma once

#include <string>
#include <vector>

#include "TQStoreKitLib/transactions/TQPurchaseResult.hpp"
#include "TQStoreKitLib/transactions/TQRestoreResults.hpp"
#include "TQStoreKitLib/transactions/TQTransactionResult.hpp"

namespace TQStoreKitLib {

/// What a purchase of `productId` makes of its transaction's result. Posts the one event that
/// belongs to it (`success`, `cancel` or `failed`) before it returns.
[[nodiscard]] TQPurchaseResult mapPurchaseResult(const std::string& productId,
                                                 const TQTransactionResult& result);

/// What a restore makes of the results that it gathered; keeps their order.
[[nodiscard]] TQRestoreResults mapRestoreResults(const std::vector<TQTransactionResult>& results);

}  // namespace TQStoreKitLib
