#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/embedded/store/Ledger.hpp"

namespace tests {

/// What a ledger has held after each of its changes, and what it must hold once the power was cut.
///
/// Changes are in one log: after a power cut the ledger is as it was after one of them, and that is
/// the last that was to outlive the cut, or a later one.
class LedgerHistory {
 public:
  /// The ledger as it is opened: nothing of it is to be lost.
  explicit LedgerHistory(const StoreKit::Ledger& ledger);
  /// That of a ledger that nothing was ever written to.
  LedgerHistory() = default;

  /// The disk was asked `begun` things before a change, and `ended` before it had returned.
  struct Span {
    std::size_t begun = 0;
    std::size_t ended = 0;
  };
  void entriesChanged(Span span, StoreKit::Ledger::Durability durability,
                      const StoreKit::LedgerEntries& entries);
  void settingsChanged(Span span, std::int64_t revision, StoreKit::LedgerSettings settings);

  /// What is wrong with the ledger after a power cut before that operation; empty when nothing is.
  /// Adds an entry.
  [[nodiscard]] std::string complaint(StoreKit::Ledger& ledger, std::size_t operation) const;

 private:
  struct Change {
    Span span;
    std::int64_t revision = 0;
    bool outlivesPowerCut = false;
  };

  void learn(const StoreKit::LedgerEntry& entry);
  /// By identifier.
  [[nodiscard]] std::map<std::int64_t, std::string> entriesAt(std::int64_t revision) const;
  [[nodiscard]] std::int64_t leastRevision(std::size_t operation) const;
  [[nodiscard]] std::int64_t greatestRevision(std::size_t operation) const;
  [[nodiscard]] std::string wrongEntries(const StoreKit::Ledger& ledger) const;
  [[nodiscard]] std::string wrongNumber(StoreKit::Ledger& ledger, std::int64_t least) const;

  std::int64_t first_ = 0;
  std::vector<Change> changes_;
  // By identifier, and then by revision.
  std::map<std::int64_t, std::map<std::int64_t, std::string>> entries_;
  // By the revision from which on they were in force.
  std::map<std::int64_t, StoreKit::LedgerSettings> settings_{{0, {}}};
};

}  // namespace tests
