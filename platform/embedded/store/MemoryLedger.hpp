#pragma once

#include <map>

#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit {

/// A ledger that lasts as long as the process.
class MemoryLedger final : public Ledger {
 public:
  [[nodiscard]] std::int64_t nextIdentifier() override { return ++lastIdentifier_; }
  [[nodiscard]] std::optional<Foundation::NSError> commit(
      const std::vector<LedgerEntry>& entries) override;
  [[nodiscard]] std::optional<LedgerEntry> find(std::int64_t identifier) const override;
  [[nodiscard]] std::vector<LedgerEntry> unfinished() const override;
  [[nodiscard]] std::vector<LedgerEntry> finishedPurchases() const override;

 private:
  std::map<std::int64_t, LedgerEntry> entries_;
  std::int64_t lastIdentifier_ = 0;
};

}  // namespace StoreKit
