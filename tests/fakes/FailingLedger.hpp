#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/embedded/store/MemoryLedger.hpp"

namespace tests {

/// A ledger in memory that can be told to refuse commits, and writes each one that it takes into
/// a journal. Once the store owns it, a test steers it through `Control`.
class FailingLedger final : public StoreKit::Ledger {
 public:
  struct Control {
    /// Every commit is refused with this while it is set.
    std::optional<Foundation::NSError> refusal{};
    std::shared_ptr<std::vector<std::string>> journal{};
    /// So many of the next replacements find that somebody else was faster.
    int conflicts = 0;
  };

  explicit FailingLedger(std::shared_ptr<Control> control) : control_(std::move(control)) {}

  [[nodiscard]] std::int64_t owner() const override { return ledger_.owner(); }

  [[nodiscard]] Failure add(StoreKit::LedgerEntries& entries, Durability durability,
                            const Complete& complete = nullptr) override {
    if (control_->refusal) return control_->refusal;
    write(entries);
    return ledger_.add(entries, durability, complete);
  }
  [[nodiscard]] Failure update(StoreKit::LedgerEntries& entries, Durability durability) override {
    if (control_->refusal) return control_->refusal;
    write(entries);
    return ledger_.update(entries, durability);
  }
  [[nodiscard]] Replacement replace(StoreKit::LedgerEntries& entries, Durability durability,
                                    const Complete& complete = nullptr) override {
    if (control_->refusal) return {.error = control_->refusal};
    if (control_->conflicts > 0) {
      --control_->conflicts;
      return {.conflict = true};
    }
    write(entries);
    return ledger_.replace(entries, durability, complete);
  }
  [[nodiscard]] Failure adoptOrphans() override { return ledger_.adoptOrphans(); }

  [[nodiscard]] std::optional<StoreKit::LedgerEntry> find(std::int64_t identifier) const override {
    return ledger_.find(identifier);
  }
  [[nodiscard]] bool isOver(std::int64_t identifier) const override {
    return ledger_.isOver(identifier);
  }
  [[nodiscard]] StoreKit::LedgerEntries unfinished() const override { return ledger_.unfinished(); }
  [[nodiscard]] StoreKit::LedgerEntries finishedPurchases() const override {
    return ledger_.finishedPurchases();
  }
  [[nodiscard]] StoreKit::LedgerEntries all() const override { return ledger_.all(); }
  [[nodiscard]] StoreKit::LedgerEntries runningPeriods() const override {
    return ledger_.runningPeriods();
  }
  [[nodiscard]] std::optional<StoreKit::LedgerEntry> firstPeriod(
      std::string_view group) const override {
    return ledger_.firstPeriod(group);
  }
  [[nodiscard]] StoreKit::LedgerEntries untoldRefunds() const override {
    return ledger_.untoldRefunds();
  }
  [[nodiscard]] Failure tellRefunds(std::int64_t revision) override {
    if (control_->refusal) return control_->refusal;
    return ledger_.tellRefunds(revision);
  }
  [[nodiscard]] StoreKit::LedgerSettings settings() const override { return ledger_.settings(); }
  [[nodiscard]] std::int64_t settingsRevision() const override {
    return ledger_.settingsRevision();
  }
  [[nodiscard]] Failure set(std::string_view setting,
                            const std::optional<std::string>& value) override {
    if (control_->refusal) return control_->refusal;
    return ledger_.set(setting, value);
  }
  [[nodiscard]] Failure clearSettings() override {
    if (control_->refusal) return control_->refusal;
    return ledger_.clearSettings();
  }
  [[nodiscard]] StoreKit::LedgerEntries changedAfter(std::int64_t revision) const override {
    return ledger_.changedAfter(revision);
  }
  [[nodiscard]] std::int64_t revision() const override { return ledger_.revision(); }
  void watch(std::function<void()> changed) override { ledger_.watch(std::move(changed)); }

 private:
  static std::string describe(const StoreKit::LedgerEntry& entry) {
    static constexpr const char* kStates[] = {"purchasing", "purchased", "failed", "restored",
                                              "deferred"};
    return "commit: " + entry.payment.productIdentifier + " " +
           kStates[static_cast<std::size_t>(entry.state)] + (entry.finished ? " finished" : "");
  }

  void write(const StoreKit::LedgerEntries& entries) const {
    if (!control_->journal) return;
    for (const auto& entry : entries) control_->journal->push_back(describe(entry));
  }

  std::shared_ptr<Control> control_;
  StoreKit::MemoryLedger ledger_;
};

}  // namespace tests
