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
  [[nodiscard]] Replacement replace(LedgerEntries& entries, Durability durability,
                                    const Complete& complete = nullptr) override;
  [[nodiscard]] Failure adoptOrphans() override { return std::nullopt; }
  [[nodiscard]] std::optional<LedgerEntry> find(std::int64_t identifier) const override;
  [[nodiscard]] bool isOver(std::int64_t identifier) const override;
  [[nodiscard]] LedgerEntries unfinished() const override;
  [[nodiscard]] LedgerEntries finishedPurchases() const override;
  [[nodiscard]] LedgerEntries all() const override;
  [[nodiscard]] LedgerEntries runningPeriods() const override;
  [[nodiscard]] std::optional<LedgerEntry> firstPeriod(std::string_view group) const override;
  [[nodiscard]] LedgerEntries untoldRefunds() const override;
  [[nodiscard]] Failure tellRefunds(std::int64_t revision) override;
  [[nodiscard]] LedgerSettings settings() const override { return settings_; }
  [[nodiscard]] std::int64_t settingsRevision() const override { return settingsRevision_; }
  [[nodiscard]] Failure set(std::string_view setting,
                            const std::optional<std::string>& value) override;
  [[nodiscard]] Failure clearSettings() override;
  [[nodiscard]] LedgerEntries changedAfter(std::int64_t revision) const override;
  [[nodiscard]] std::int64_t revision() const override { return revision_; }
  void watch(std::function<void()>) override {}

 private:
  [[nodiscard]] bool isSecondRunning(const LedgerEntry& entry, const LedgerEntries& changes) const;
  [[nodiscard]] bool hasAll(const LedgerEntries& entries) const;
  void store(LedgerEntry& entry);

  std::map<std::int64_t, LedgerEntry> entries_;
  LedgerSettings settings_;
  std::int64_t revision_ = 0;
  std::int64_t settingsRevision_ = 0;
  std::int64_t toldRefunds_ = 0;
};

}  // namespace StoreKit
