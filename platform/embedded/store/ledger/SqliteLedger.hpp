#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit {

namespace detail {
class LedgerDatabase;
}

/// A ledger in a SQLite file, or in memory, that several programs may have open at once.
///
/// A change is in the file before the call returns; with `Durability::powerCut` it is on the disk,
/// and so is everything before it. A program that dies holding a lock lets go of it.
/// Reading from a file that was damaged since it was opened gives nothing, and says so on standard
/// error. `docs/ledger.md` describes the file.
class SqliteLedger final : public Ledger {
 public:
  struct Opening {
    std::unique_ptr<SqliteLedger> ledger{};  ///< null when the file is refused
    std::string error{};                     ///< why; it names the file
  };

  /// Opens the ledger file `path`, which is made when it is missing; its folder must be there.
  /// ":memory:" is a ledger without a file. A file that is no ledger, of a newer version, cut short
  /// or damaged is refused, and left as it is.
  [[nodiscard]] static Opening open(const std::string& path);

  ~SqliteLedger() override;

  [[nodiscard]] std::string path() const override;
  [[nodiscard]] std::int64_t owner() const override;
  [[nodiscard]] Failure add(LedgerEntries& entries, Durability durability,
                            const Complete& complete = nullptr) override;
  [[nodiscard]] Failure update(LedgerEntries& entries, Durability durability) override;
  [[nodiscard]] Replacement replace(LedgerEntries& entries, Durability durability,
                                    const Complete& complete = nullptr) override;
  [[nodiscard]] Failure adoptOrphans() override;
  [[nodiscard]] std::optional<LedgerEntry> find(std::int64_t identifier) const override;
  [[nodiscard]] bool isOver(std::int64_t identifier) const override;
  [[nodiscard]] LedgerEntries unfinished() const override;
  [[nodiscard]] LedgerEntries finishedPurchases() const override;
  [[nodiscard]] LedgerEntries all() const override;
  [[nodiscard]] LedgerEntries runningPeriods() const override;
  [[nodiscard]] std::optional<LedgerEntry> firstPeriod(std::string_view group) const override;
  [[nodiscard]] LedgerEntries untoldRefunds() const override;
  [[nodiscard]] Failure tellRefunds(std::int64_t revision) override;
  [[nodiscard]] LedgerSettings settings() const override;
  [[nodiscard]] std::int64_t settingsRevision() const override;
  [[nodiscard]] Failure set(std::string_view setting,
                            const std::optional<std::string>& value) override;
  [[nodiscard]] Failure clearSettings() override;
  [[nodiscard]] LedgerEntries changedAfter(std::int64_t revision) const override;
  [[nodiscard]] std::int64_t revision() const override;
  void watch(std::function<void()> changed) override;

 private:
  explicit SqliteLedger(std::unique_ptr<detail::LedgerDatabase> database);

  std::unique_ptr<detail::LedgerDatabase> database_;
};

}  // namespace StoreKit
