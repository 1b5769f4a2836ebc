#include "tools/tqstore/Deliveries.hpp"

#include "TQStoreKitLib/TQStoreKitLib.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tools/tqstore/Console.hpp"
#include "tools/tqstore/StoreOpening.hpp"
#include "tools/tqstore/TransactionText.hpp"

namespace tqstore {

namespace {

using TQStoreKitLib::TQPurchase;

bool isToBeFinished(const TQPurchase& purchase) {
  return purchase.needsFinishTransaction &&
         purchase.transaction->transactionState() != StoreKit::SKPaymentTransactionState::deferred;
}

const char* outlook(const StoreKit::LedgerEntry& entry, bool finished) {
  if (finished) return ", finished";
  const bool waits = entry.state == StoreKit::SKPaymentTransactionState::deferred;
  return waits ? ", to be approved or declined" : ", still to be finished";
}

void show(const TQPurchase& purchase, const StoreKit::LedgerEntry& entry, bool finished) {
  const auto known = entry.transactionIdentifier.value_or("#" + std::to_string(entry.identifier));
  writeLine(styled("delivered  ", Style::dim) + stateText(entry) + "  " +
            std::to_string(purchase.quantity) + " x " + printable(purchase.productId) +
            ", transaction " + known + outlook(entry, finished));
}

}  // namespace

void handleDeliveries(const std::vector<TQPurchase>& purchases, Handling handling) {
  for (const auto& purchase : purchases) {
    const auto entry = entryOf(*purchase.transaction);
    if (!entry) continue;
    const bool finishes = handling.finishes && isToBeFinished(purchase);
    if (handling.json) {
      writeJson(toJson(*entry, ledger()));
    } else {
      show(purchase, *entry, finishes || !purchase.needsFinishTransaction);
    }
    if (finishes) TQStoreKitLib::TQStoreKit::finishTransaction(*purchase.transaction);
  }
}

void runQueued() {
  while (Dispatch::MainLoop::drain() > 0) {
    // Each round may have queued another.
  }
}

}  // namespace tqstore
