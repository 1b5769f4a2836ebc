#pragma once

#include "TQStoreKitLib/transactions/TQPurchaseResult.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

/// How a purchase ended, as the last line of `buy`: text or JSON, and the exit status.

/// To be called once a finish has had its turn. A finish that the ledger refused is complained of.
[[nodiscard]] ExitStatus showSuccess(const TQStoreKitLib::TQPurchaseDetails& details, bool json);

[[nodiscard]] ExitStatus showError(const TQStoreKitLib::TQSKError& error, bool json);

[[nodiscard]] ExitStatus showDeferred(const StoreKit::LedgerEntry& entry, bool json);

}  // namespace tqstore
