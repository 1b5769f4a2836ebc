#include "platform/embedded/store/server/Restorable.hpp"

#include <set>

namespace StoreKit {

namespace {

LedgerEntry replay(const LedgerEntry& purchase, Foundation::Date now) {
  return {.state = SKPaymentTransactionState::restored,
          .payment = purchase.payment,
          .transactionDate = now,
          .original = purchase.original.value_or(purchase.identifier)};
}

// It changed a subscription that was running, and bought no period of its own.
bool isOnlyAChange(const LedgerEntry& purchase) { return purchase.original && !purchase.period; }

}  // namespace

LedgerEntries restorable(const Ledger& ledger, const Catalogue& catalogue,
                         const std::optional<std::string>& applicationUsername,
                         Foundation::Date now) {
  const auto name = applicationUsername.value_or("");
  LedgerEntries entries;
  std::set<std::string> replayedOnce;
  for (const auto& purchase : ledger.finishedPurchases()) {
    const auto& product = purchase.payment.productIdentifier;
    const auto* const sold = catalogue.find(product);
    const bool theirs = name.empty() || purchase.payment.applicationUsername.value_or("") == name;
    if (sold == nullptr || !theirs || purchase.cancelDate) continue;
    const bool owned = sold->type == ProductType::nonConsumable;
    const bool renewed = sold->type == ProductType::autoRenewableSubscription;
    if (renewed && isOnlyAChange(purchase)) continue;
    if (!renewed && !(owned && replayedOnce.insert(product).second)) continue;
    entries.push_back(replay(purchase, now));
  }
  return entries;
}

}  // namespace StoreKit
