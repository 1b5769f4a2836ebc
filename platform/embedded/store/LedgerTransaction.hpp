#pragma once

#include <cstdint>
#include <memory>

#include "platform/StoreKit/SKPaymentTransaction.hpp"
#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit {

/// A transaction of the embedded store: a view of one ledger entry, which the queue keeps up to
/// date.
///
/// Two are equal when they are views of one entry of one ledger.
/// Thread: main.
class LedgerTransaction final : public SKPaymentTransaction {
 public:
  /// `ledger` is the number of the ledger that the entry is from; `original` may be null.
  LedgerTransaction(std::uint64_t ledger, LedgerEntry entry, SKPaymentTransactionPtr original);

  [[nodiscard]] const LedgerEntry& entry() const { return entry_; }
  [[nodiscard]] std::uint64_t ledger() const { return ledger_; }

  /// Shows a later state of the same entry. The payment never changes.
  void update(LedgerEntry entry, SKPaymentTransactionPtr original) {
    entry_ = std::move(entry);
    original_ = std::move(original);
  }

  [[nodiscard]] SKPaymentPtr payment() const override { return payment_; }
  [[nodiscard]] SKPaymentTransactionState transactionState() const override;
  [[nodiscard]] std::optional<std::string> transactionIdentifier() const override;
  [[nodiscard]] std::optional<Foundation::Date> transactionDate() const override;
  [[nodiscard]] std::optional<Foundation::NSError> error() const override;
  [[nodiscard]] SKPaymentTransactionPtr originalTransaction() const override { return original_; }
  [[nodiscard]] SKDownloads downloads() const override { return downloads_; }
  void setDownloads(SKDownloads downloads) { downloads_ = std::move(downloads); }
  [[nodiscard]] bool isEqual(const SKPaymentTransaction& other) const override;
  [[nodiscard]] std::size_t hash() const override;

 private:
  std::uint64_t ledger_;
  LedgerEntry entry_;
  SKPaymentPtr payment_;
  SKPaymentTransactionPtr original_;
  SKDownloads downloads_{};
};

}  // namespace StoreKit
