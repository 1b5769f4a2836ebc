#include "platform/embedded/store/MemoryLedger.hpp"

#include <algorithm>

namespace StoreKit {

namespace {

template <class Wanted>
LedgerEntries select(const std::map<std::int64_t, LedgerEntry>& entries, Wanted wanted) {
  LedgerEntries selected;
  for (const auto& [identifier, entry] : entries) {
    if (wanted(entry)) selected.push_back(entry);
  }
  return selected;
}

}  // namespace

Ledger::Failure MemoryLedger::add(LedgerEntries& entries, Durability, const Complete& complete) {
  for (auto& entry : entries) {
    entry.identifier = entries_.empty() ? 1 : entries_.rbegin()->first + 1;
    entry.revision = ++revision_;
    if (complete) complete(entry);
    entries_.emplace(entry.identifier, entry);
  }
  return std::nullopt;
}

Ledger::Failure MemoryLedger::update(LedgerEntries& entries, Durability) {
  for (auto& entry : entries) {
    auto& known = entries_[entry.identifier];
    if (known.revision == entry.revision) {
      entry.revision = ++revision_;
      known = entry;
    } else {
      entry = known;
    }
  }
  return std::nullopt;
}

std::optional<LedgerEntry> MemoryLedger::find(std::int64_t identifier) const {
  const auto found = entries_.find(identifier);
  if (found == entries_.end()) return std::nullopt;
  return found->second;
}

LedgerEntries MemoryLedger::unfinished() const {
  return select(entries_, [](const LedgerEntry& entry) { return !entry.finished; });
}

LedgerEntries MemoryLedger::finishedPurchases() const {
  return select(entries_, [](const LedgerEntry& entry) {
    return entry.finished && entry.state == SKPaymentTransactionState::purchased;
  });
}

LedgerEntries MemoryLedger::all() const {
  return select(entries_, [](const LedgerEntry&) { return true; });
}

LedgerEntries MemoryLedger::changedAfter(std::int64_t revision) const {
  auto changed =
      select(entries_, [&](const LedgerEntry& entry) { return entry.revision > revision; });
  std::sort(changed.begin(), changed.end(),
            [](const auto& a, const auto& b) { return a.revision < b.revision; });
  return changed;
}

}  // namespace StoreKit
