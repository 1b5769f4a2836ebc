#pragma once

#include <vector>

#include "TQStoreKitLib/transactions/TQPurchase.hpp"

namespace tqstore {

/// What a command does with transactions that the library hands over to it.
struct Handling {
  bool json = false;      ///< shows them as JSON
  bool finishes = false;  ///< finishes them; not what waits for an approval, which is not paid
};

/// Finishes what the library delivered or restored, when told.
void finishDelivered(const std::vector<TQStoreKitLib::TQPurchase>& purchases, Handling handling);

/// Shows it, as the ledger has it now: to be called once the finish has had its turn. False when a
/// finish, this one or the library's own of a failed transaction, was refused; that is complained of.
[[nodiscard]] bool showDelivered(const std::vector<TQStoreKitLib::TQPurchase>& purchases,
                                 Handling handling);

}  // namespace tqstore
