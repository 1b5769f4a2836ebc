#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "platform/embedded/store/Ledger.hpp"
#include "platform/embedded/store/ledger/LedgerLog.hpp"
#include "platform/embedded/store/ledger/LedgerStatements.hpp"
#include "platform/embedded/store/ledger/LedgerWatch.hpp"
#include "platform/embedded/store/ledger/OwnerLock.hpp"

namespace StoreKit::detail {

/// The database of a ledger, with its prepared statements. Everything here means what `Ledger` says
/// of it, and throws when it fails; `SqliteLedger` makes values of that.
class LedgerDatabase {
 public:
  explicit LedgerDatabase(const std::string& path);

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] bool isFile() const { return path_ != ":memory:"; }

  void add(LedgerEntries& entries, Ledger::Durability durability, const Ledger::Complete& complete);
  void update(LedgerEntries& entries, Ledger::Durability durability);
  /// False when somebody else has changed an entry.
  bool replace(LedgerEntries& entries, Ledger::Durability durability,
               const Ledger::Complete& complete);
  void adoptOrphans();

  /// Deleted ones included.
  [[nodiscard]] std::optional<LedgerEntry> find(std::int64_t identifier);
  /// `condition` is what follows the table in a query; `?` stands for the parameter, if there is
  /// one.
  template <class... Parameter>
  [[nodiscard]] LedgerEntries select(std::string_view condition, const Parameter&... parameter) {
    auto& statement = statements_[selection(condition)];
    (statement.bind(parameter), ...);
    return read(statement);
  }
  [[nodiscard]] LedgerEntries changedAfter(std::int64_t revision);

  [[nodiscard]] std::int64_t counter(std::string_view name);
  /// The last change, of an entry or of a setting.
  [[nodiscard]] std::int64_t revision();
  void raiseCounter(std::string_view name, std::int64_t value);

  [[nodiscard]] LedgerSettings settings();
  void set(std::string_view setting, const std::optional<std::string>& value);
  void clearSettings();

  [[nodiscard]] std::int64_t owner() const { return lock_.owner(); }
  void watch(std::function<void()> changed);

 private:
  using SqliteStatement = Foundation::detail::SqliteStatement;

  [[nodiscard]] static LedgerEntries read(SqliteStatement& statement);
  [[nodiscard]] std::int64_t newOwner();
  template <class Work>
  void inTransaction(Ledger::Durability durability, const Work& work);
  void insert(LedgerEntry& entry, std::int64_t revision, const Ledger::Complete& complete);
  // False when somebody else has changed it, or when it is not there.
  [[nodiscard]] bool write(LedgerEntry& entry, std::int64_t revision);
  // Throws when there is none.
  [[nodiscard]] LedgerEntry known(std::int64_t identifier);
  [[nodiscard]] bool isSecondRunning(const LedgerEntry& entry, const LedgerEntries& changes);
  void settingsChanged(std::int64_t revision);

  std::string path_;
  std::unique_ptr<Foundation::detail::SqliteDatabase> database_;
  Foundation::detail::SqliteStatements statements_{*database_};
  LedgerLog log_{statements_};
  OwnerLock lock_;
  std::unique_ptr<LedgerWatch> watch_;
};

}  // namespace StoreKit::detail
