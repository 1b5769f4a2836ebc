#pragma once

#include <vector>

#include "TQStoreKitLib/transactions/TQPurchase.hpp"

namespace tqstore {

/// What a command does with transactions that the library hands over to it.
struct Handling {
  bool json = false;      ///< shows them as JSON, as they are before they are finished
  bool finishes = false;  ///< finishes them; not what waits for an approval, which is not paid
};

/// Shows what the library delivered or restored, and finishes it when told.
void handleDeliveries(const std::vector<TQStoreKitLib::TQPurchase>& purchases, Handling handling);

/// Runs what is queued, and what that queues.
void runQueued();

}  // namespace tqstore
