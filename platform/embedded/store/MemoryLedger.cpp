#include "platform/embedded/store/MemoryLedger.hpp"

namespace StoreKit {

namespace {

template <class Wanted>
std::vector<LedgerEntry> select(const std::map<std::int64_t, LedgerEntry>& entries, Wanted wanted) {
  std::vector<LedgerEntry> selected;
  for (const auto& [identifier, entry] : entries) {
    if (wanted(entry)) selected.push_back(entry);
  }
  return selected;
}

}  // namespace

std::optional<Foundation::NSError> MemoryLedger::commit(const std::vector<LedgerEntry>& entries) {
  for (const auto& entry : entries) entries_.insert_or_assign(entry.identifier, entry);
  return std::nullopt;
}

std::optional<LedgerEntry> MemoryLedger::find(std::int64_t identifier) const {
  const auto found = entries_.find(identifier);
  if (found == entries_.end()) return std::nullopt;
  return found->second;
}

std::vector<LedgerEntry> MemoryLedger::unfinished() const {
  return select(entries_, [](const LedgerEntry& entry) { return !entry.finished; });
}

std::vector<LedgerEntry> MemoryLedger::finishedPurchases() const {
  return select(entries_, [](const LedgerEntry& entry) {
    return entry.finished && entry.state == SKPaymentTransactionState::purchased;
  });
}

}  // namespace StoreKit
