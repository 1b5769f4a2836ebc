#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/embedded/store/LedgerTransaction.hpp"

namespace StoreKit {

class DownloadQueue;

/// The transactions in the payment queue, in the order in which they were added: views of the
/// ledger's entries, brought up to date as those change.
///
/// Thread: main.
class UnfinishedTransactions {
 public:
  using Pointer = std::shared_ptr<LedgerTransaction>;
  using List = std::vector<Pointer>;

  /// What the queue's observers are to be told.
  struct Changes {
    List updated;
    List removed;
  };

  /// Forgets everything; from now on it is about `ledger`, the store's opening with that number.
  /// Transactions get their downloads from `downloads`.
  void restart(const Ledger& ledger, std::uint64_t opening, DownloadQueue& downloads);

  [[nodiscard]] const List& list() const { return list_; }
  [[nodiscard]] List purchasing() const { return inState(true); }
  [[nodiscard]] List settled() const { return inState(false); }
  /// Null when there is none.
  [[nodiscard]] Pointer find(std::int64_t identifier) const;

  /// Adds a view of `entry` in its place. Those that the ledger refused (with negative numbers)
  /// come last.
  Pointer add(LedgerEntry entry);

  /// Takes entries as the ledger holds them. A purchase that another program has under way is its
  /// own business until there is an outcome.
  [[nodiscard]] Changes merge(const LedgerEntries& entries);

 private:
  [[nodiscard]] List inState(bool purchasing) const;
  [[nodiscard]] SKPaymentTransactionPtr originalOf(const LedgerEntry& entry) const;
  void attachDownloads(const Pointer& transaction);

  const Ledger* ledger_ = nullptr;
  std::uint64_t opening_ = 0;
  DownloadQueue* downloads_ = nullptr;
  List list_;
};

}  // namespace StoreKit
