#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/Date.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKPayment.hpp"
#include "platform/StoreKit/SKPaymentTransaction.hpp"

namespace StoreKit {

/// What the ledger knows about one transaction.
struct LedgerEntry {
  /// The ledger's own number: ascending, in the order in which transactions were added.
  std::int64_t identifier = 0;
  SKPaymentTransactionState state = SKPaymentTransactionState::purchasing;
  SKPayment::Values payment{};
  std::optional<std::string> transactionIdentifier{};
  std::optional<Foundation::Date> transactionDate{};
  std::optional<Foundation::NSError> error{};
  /// The entry of the purchase that a restored transaction repeats.
  std::optional<std::int64_t> original{};
  bool finished = false;
};

/// Where the store keeps its transactions.
///
/// Thread: main.
class Ledger {
 public:
  Ledger() = default;
  Ledger(const Ledger&) = delete;
  Ledger& operator=(const Ledger&) = delete;
  virtual ~Ledger() = default;

  /// The number for an entry that is about to be added; never handed out twice.
  [[nodiscard]] virtual std::int64_t nextIdentifier() = 0;

  /// Adds or replaces these entries: all of them, or none when it answers with an error.
  [[nodiscard]] virtual std::optional<Foundation::NSError> commit(
      const std::vector<LedgerEntry>& entries) = 0;

  /// Absent when there is no such entry.
  [[nodiscard]] virtual std::optional<LedgerEntry> find(std::int64_t identifier) const = 0;

  /// The entries that are not finished, in the order in which they were added.
  [[nodiscard]] virtual std::vector<LedgerEntry> unfinished() const = 0;

  /// The finished entries in state purchased, in the order in which they were added.
  [[nodiscard]] virtual std::vector<LedgerEntry> finishedPurchases() const = 0;
};

}  // namespace StoreKit
