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

// Somebody has made a mistake who knows a number that was never given.
Ledger::Failure missingEntry() {
  return Foundation::NSError::withDescription("Ledger", 1, "an entry is missing");
}

}  // namespace

bool MemoryLedger::hasAll(const LedgerEntries& entries) const {
  return std::all_of(entries.begin(), entries.end(), [this](const LedgerEntry& entry) {
    return entry.identifier == 0 || entries_.contains(entry.identifier);
  });
}

void MemoryLedger::store(LedgerEntry& entry) {
  entry.revision = ++revision_;
  if (entry.cancelDate && !entry.refundRevision) entry.refundRevision = revision_;
  entries_[entry.identifier] = entry;
}

Ledger::Failure MemoryLedger::add(LedgerEntries& entries, Durability, const Complete& complete) {
  for (auto& entry : entries) {
    entry.identifier = entries_.empty() ? 1 : entries_.rbegin()->first + 1;
    if (complete) complete(entry);
    store(entry);
  }
  return std::nullopt;
}

Ledger::Failure MemoryLedger::update(LedgerEntries& entries, Durability) {
  if (!hasAll(entries)) return missingEntry();
  for (auto& entry : entries) {
    const auto& known = entries_[entry.identifier];
    if (known.revision == entry.revision) {
      store(entry);
    } else {
      entry = known;
    }
  }
  return std::nullopt;
}

// Whether its subscription has a running period already, which does not change along with it.
bool MemoryLedger::isSecondRunning(const LedgerEntry& entry, const LedgerEntries& changes) const {
  if (!entry.period || !entry.period->running) return false;
  const auto alsoChanges = [&](const LedgerEntry& there) {
    return std::any_of(changes.begin(), changes.end(), [&](const LedgerEntry& change) {
      return change.identifier == there.identifier;
    });
  };
  const auto running = runningPeriods();
  return std::any_of(running.begin(), running.end(), [&](const LedgerEntry& there) {
    return there.period->group == entry.period->group && !alsoChanges(there);
  });
}

Ledger::Replacement MemoryLedger::replace(LedgerEntries& entries, Durability durability,
                                          const Complete& complete) {
  if (!hasAll(entries)) return {.error = missingEntry()};
  for (const auto& entry : entries) {
    const bool isNew = entry.identifier == 0;
    const bool changed = !isNew && entries_[entry.identifier].revision != entry.revision;
    if (changed || isSecondRunning(entry, entries)) return {.conflict = true};
  }
  for (auto& entry : entries) {
    if (entry.identifier != 0) {
      store(entry);
      continue;
    }
    LedgerEntries added = {entry};
    (void)add(added, durability, complete);
    entry = added[0];
  }
  return {};
}

std::optional<LedgerEntry> MemoryLedger::find(std::int64_t identifier) const {
  const auto found = entries_.find(identifier);
  if (found == entries_.end() || found->second.deleted) return std::nullopt;
  return found->second;
}

bool MemoryLedger::isOver(std::int64_t identifier) const {
  const auto entry = find(identifier);
  return !entry || entry->finished;
}

LedgerEntries MemoryLedger::unfinished() const {
  return select(entries_, [](const LedgerEntry& entry) { return !entry.finished; });
}

LedgerEntries MemoryLedger::finishedPurchases() const {
  return select(entries_, [](const LedgerEntry& entry) {
    return entry.finished && !entry.deleted && entry.state == SKPaymentTransactionState::purchased;
  });
}

LedgerEntries MemoryLedger::all() const {
  return select(entries_, [](const LedgerEntry& entry) { return !entry.deleted; });
}

LedgerEntries MemoryLedger::runningPeriods() const {
  return select(entries_,
                [](const LedgerEntry& entry) { return entry.period && entry.period->running; });
}

std::optional<LedgerEntry> MemoryLedger::firstPeriod(std::string_view group) const {
  for (const auto& [identifier, entry] : entries_) {
    if (entry.period && entry.period->group == group) return entry;
  }
  return std::nullopt;
}

LedgerEntries MemoryLedger::untoldRefunds() const {
  auto refunds = select(entries_, [this](const LedgerEntry& entry) {
    return entry.refundRevision.value_or(0) > toldRefunds_;
  });
  std::sort(refunds.begin(), refunds.end(),
            [](const auto& a, const auto& b) { return *a.refundRevision < *b.refundRevision; });
  return refunds;
}

Ledger::Failure MemoryLedger::tellRefunds(std::int64_t revision) {
  toldRefunds_ = std::max(toldRefunds_, revision);
  return std::nullopt;
}

Ledger::Failure MemoryLedger::set(std::string_view setting,
                                  const std::optional<std::string>& value) {
  settings_.erase(std::string(setting));
  if (value) settings_.emplace(setting, *value);
  settingsRevision_ = ++revision_;
  return std::nullopt;
}

Ledger::Failure MemoryLedger::clearSettings() {
  settings_.clear();
  settingsRevision_ = ++revision_;
  return std::nullopt;
}

LedgerEntries MemoryLedger::changedAfter(std::int64_t revision) const {
  auto changed =
      select(entries_, [&](const LedgerEntry& entry) { return entry.revision > revision; });
  std::sort(changed.begin(), changed.end(),
            [](const auto& a, const auto& b) { return a.revision < b.revision; });
  return changed;
}

}  // namespace StoreKit
