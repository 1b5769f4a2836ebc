#pragma once

#include <string>

#include "platform/StoreKit/SKPaymentTransaction.hpp"

namespace StoreKit {

/// "purchasing", "purchased", "failed", "restored" or "deferred"; "default" for a value that no
/// enumerator has.
[[nodiscard]] std::string debugDescription(SKPaymentTransactionState state);

/// One line for diagnostics: "productId: gems, transactionId: 1000, state: purchased, date:
/// Optional(2026-11-21 07:48:10 +0000)". Without an identifier it says null, without a date nil.
[[nodiscard]] std::string debugDescription(const SKPaymentTransaction& transaction);

}  // namespace StoreKit
