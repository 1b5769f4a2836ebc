#pragma once

#include <map>

#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit {

/// A ledger that lasts as long as the process, and that nobody else has open.
class MemoryLedger final : public Ledger {
 public:
  [[nodiscard]] std::int64_t owner() const override { return 1; }
  [[nodiscard]] Failure add(LedgerEntries& entries, Durability durability,
                            const Complete& complete = nullptr) override;
  [[nodiscard]] Failure update(LedgerEntries& entries, Durability durability) override;
  [[nodiscard]] Failure adoptOrphans() override { return std::nullopt; }
  [[nodiscard]] std::optional<LedgerEntry> find(std::int64_t identifier) const override;
  [[nodiscard]] LedgerEntries unfinished() const override;
  [[nodiscard]] LedgerEntries finishedPurchases() const override;
  [[nodiscard]] LedgerEntries all() const override;
  [[nodiscard]] LedgerEntries changedAfter(std::int64_t revision) const override;
  [[nodiscard]] std::int64_t revision() const override { return revision_; }
  void watch(std::function<void()>) override {}

 private:
  std::map<std::int64_t, LedgerEntry> entries_;
  std::int64_t revision_ = 0;
};

}  // namespace StoreKit
