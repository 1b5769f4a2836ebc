#pragma once

#include "platform/embedded/store/Ledger.hpp"
#include "tools/tqstore/Console.hpp"

namespace tqstore {

/// Shows transactions, in this order: as a table, or with --json each as a line. `ledger` is where
/// they are from. Nothing at all when there are none.
void writeEntries(const StoreKit::LedgerEntries& entries, const StoreKit::Ledger& ledger,
                  const GlobalOptions& options);

}  // namespace tqstore
