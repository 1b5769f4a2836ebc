#include "tools/tqstore/Deliveries.hpp"

#include <nlohmann/json.hpp>

#include "TQStoreKitLib/TQStoreKitLib.hpp"
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

bool isFinishedBy(const TQPurchase& purchase, Handling handling) {
  return !purchase.needsFinishTransaction || (handling.finishes && isToBeFinished(purchase));
}

const char* outlook(const StoreKit::LedgerEntry& entry) {
  if (entry.finished) return ", finished";
  const bool waits = entry.state == StoreKit::SKPaymentTransactionState::deferred;
  return waits ? ", to be approved or declined" : ", still to be finished";
}

void show(const TQPurchase& purchase, const StoreKit::LedgerEntry& entry) {
  const auto known = entry.transactionIdentifier.value_or("#" + std::to_string(entry.identifier));
  auto delivered = entry;
  delivered.finished = false;  // which is said at the end
  writeLine(styled("delivered  ", Style::dim) + stateText(delivered) + "  " +
            std::to_string(purchase.quantity) + " x " + printable(purchase.productId) +
            ", transaction " + known + outlook(entry));
}

}  // namespace

void finishDelivered(const std::vector<TQPurchase>& purchases, Handling handling) {
  if (!handling.finishes) return;
  for (const auto& purchase : purchases) {
    if (isToBeFinished(purchase)) {
      TQStoreKitLib::TQStoreKit::finishTransaction(*purchase.transaction);
    }
  }
}

bool showDelivered(const std::vector<TQPurchase>& purchases, Handling handling) {
  bool good = true;
  for (const auto& purchase : purchases) {
    const auto seen = entryOf(*purchase.transaction);
    if (!seen) continue;
    const auto entry = latest(*seen, ledger());
    if (handling.json) {
      writeJson(toJson(entry, ledger()));
    } else {
      show(purchase, entry);
    }
    if (entry.finished || !isFinishedBy(purchase, handling)) continue;
    good = false;
    complain("the finish of transaction " + std::to_string(entry.identifier) +
             " could not be written down: it is still to be finished");
  }
  return good;
}

}  // namespace tqstore
