#include "platform/embedded/store/UnfinishedTransactions.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/embedded/store/downloads/DownloadQueue.hpp"

namespace StoreKit {

namespace {

bool isUnderWay(const LedgerEntry& entry) {
  return entry.state == SKPaymentTransactionState::purchasing;
}

// Negative numbers come last, and count downwards.
std::pair<bool, std::int64_t> place(std::int64_t identifier) {
  return {identifier < 0, identifier < 0 ? -identifier : identifier};
}

bool isBefore(const UnfinishedTransactions::Pointer& transaction, std::int64_t identifier) {
  return place(transaction->entry().identifier) < place(identifier);
}

}  // namespace

void UnfinishedTransactions::restart(const Ledger& ledger, std::uint64_t opening,
                                     DownloadQueue& downloads) {
  ledger_ = &ledger;
  opening_ = opening;
  downloads_ = &downloads;
  list_.clear();
}

UnfinishedTransactions::Pointer UnfinishedTransactions::find(std::int64_t identifier) const {
  const auto found = std::lower_bound(list_.begin(), list_.end(), identifier, isBefore);
  const bool isIt = found != list_.end() && (*found)->entry().identifier == identifier;
  return isIt ? *found : nullptr;
}

SKPaymentTransactionPtr UnfinishedTransactions::originalOf(const LedgerEntry& entry) const {
  if (!entry.original) return nullptr;
  auto purchase = ledger_->find(*entry.original);
  if (!purchase) return nullptr;
  return std::make_shared<LedgerTransaction>(opening_, std::move(*purchase), nullptr);
}

UnfinishedTransactions::Pointer UnfinishedTransactions::add(LedgerEntry entry) {
  auto original = originalOf(entry);
  auto added = std::make_shared<LedgerTransaction>(opening_, std::move(entry), std::move(original));
  const auto identifier = added->entry().identifier;
  list_.insert(std::lower_bound(list_.begin(), list_.end(), identifier, isBefore), added);
  attachDownloads(added);
  return added;
}

void UnfinishedTransactions::attachDownloads(const Pointer& transaction) {
  if (!transaction->downloads().empty()) return;
  transaction->setDownloads(downloads_->attach(transaction));
}

UnfinishedTransactions::Changes UnfinishedTransactions::merge(const LedgerEntries& entries) {
  Changes changes;
  std::vector<std::int64_t> finished;
  for (const auto& entry : entries) {
    const auto transaction = find(entry.identifier);
    if (!transaction) {
      if (!entry.finished && !isUnderWay(entry)) changes.updated.push_back(add(entry));
      continue;
    }
    if (transaction->entry().revision > entry.revision) continue;
    const auto stateBefore = transaction->entry().state;
    const bool continues = entry.original != transaction->entry().original;
    transaction->update(entry, continues ? originalOf(entry) : transaction->originalTransaction());
    attachDownloads(transaction);
    if (entry.finished) {
      finished.push_back(entry.identifier);
      changes.removed.push_back(transaction);
    } else if (entry.state != stateBefore) {
      changes.updated.push_back(transaction);
    }
  }
  downloads_->detach(finished);
  std::erase_if(list_, [](const Pointer& each) { return each->entry().finished; });
  return changes;
}

UnfinishedTransactions::List UnfinishedTransactions::inState(bool purchasing) const {
  List found;
  std::copy_if(list_.begin(), list_.end(), std::back_inserter(found),
               [&](const Pointer& each) { return isUnderWay(each->entry()) == purchasing; });
  return found;
}

}  // namespace StoreKit
