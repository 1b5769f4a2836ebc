#include "platform/embedded/store/ledger/LedgerDatabase.hpp"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/embedded/store/ledger/LedgerFile.hpp"
#include "platform/embedded/store/ledger/LedgerRow.hpp"

namespace StoreKit::detail {

namespace {

using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;
using Foundation::detail::SqliteTransaction;
using Durability = Ledger::Durability;

// The last change, of an entry or of a setting.
constexpr const char* kLastRevision =
    "SELECT MAX(value, IFNULL((SELECT MAX(revision) FROM entry), 0)) FROM counters "
    "WHERE name = 'settings'";

// Makes a statement ready again, also when what was read cannot be understood.
class Rewinding {
 public:
  explicit Rewinding(SqliteStatement& statement) : statement_(statement) {}
  ~Rewinding() { statement_.reset(); }
  Rewinding(const Rewinding&) = delete;
  Rewinding& operator=(const Rewinding&) = delete;

 private:
  SqliteStatement& statement_;
};

// One name for one file, also after the program has changed its folder.
std::string wholePath(const std::string& path) {
  return path == ":memory:" ? path : std::filesystem::weakly_canonical(path).string();
}

}  // namespace

LedgerDatabase::LedgerDatabase(const std::string& path)
    : path_(wholePath(path)), database_(openLedgerFile(path)), lock_(path_, newOwner()) {}

std::int64_t LedgerDatabase::newOwner() {
  SqliteTransaction transaction(statements_);
  log_.makeRoom();
  const auto owner = counter("owner") + 1;
  statements_["UPDATE counters SET value = ? WHERE name = 'owner'"].bind(owner).run();
  transaction.commit();
  return owner;
}

// What a relaxed change leaves unsynchronised, the next full one brings to the disk along with
// itself: the log is one file.
template <class Work>
void LedgerDatabase::inTransaction(Durability durability, const Work& work) {
  log_.promise(durability);
  SqliteTransaction transaction(statements_);
  log_.makeRoom();
  work(revision() + 1);
  transaction.commit();
}

void LedgerDatabase::insert(LedgerEntry& entry, std::int64_t revision,
                            const Ledger::Complete& complete) {
  entry.revision = revision;
  entry.identifier = 0;
  auto& statement = statements_[insertion()];
  bindEntry(statement, entry);
  statement.run();
  entry.identifier = sqlite3_last_insert_rowid(database_->handle());
  if (!complete) return;
  complete(entry);
  (void)write(entry, revision);
}

bool LedgerDatabase::write(LedgerEntry& entry, std::int64_t revision) {
  const auto known = std::exchange(entry.revision, revision);
  if (entry.cancelDate && !entry.refundRevision) entry.refundRevision = revision;
  const auto change = [&](bool moves) {
    auto& statement = statements_[replacement(moves)];
    bindEntry(statement, entry);
    statement.bind(known).run();
    return sqlite3_changes(database_->handle()) == 1;
  };
  return (!entry.finished && change(false)) || change(true);
}

void LedgerDatabase::add(LedgerEntries& entries, Durability durability,
                         const Ledger::Complete& complete) {
  inTransaction(durability, [&](std::int64_t revision) {
    for (auto& entry : entries) insert(entry, revision, complete);
  });
}

void LedgerDatabase::update(LedgerEntries& entries, Durability durability) {
  inTransaction(durability, [&](std::int64_t revision) {
    for (auto& entry : entries) {
      if (!write(entry, revision)) entry = known(entry.identifier);
    }
  });
}

LedgerEntry LedgerDatabase::known(std::int64_t identifier) {
  auto entry = find(identifier);
  if (!entry) throw SqliteError(SQLITE_CORRUPT, path_ + ": an entry is missing");
  return std::move(*entry);
}

// Whether its subscription has a running period already, which does not change along with it.
bool LedgerDatabase::isSecondRunning(const LedgerEntry& entry, const LedgerEntries& changes) {
  if (!entry.period || !entry.period->running) return false;
  const auto running = select("WHERE running = 1 AND subscription_group = ?", entry.period->group);
  return std::any_of(running.begin(), running.end(), [&](const LedgerEntry& there) {
    return std::none_of(changes.begin(), changes.end(), [&](const LedgerEntry& change) {
      return change.identifier == there.identifier;
    });
  });
}

bool LedgerDatabase::replace(LedgerEntries& entries, Durability durability,
                             const Ledger::Complete& complete) {
  log_.promise(durability);
  SqliteTransaction transaction(statements_);
  log_.makeRoom();
  const auto next = revision() + 1;
  for (auto& entry : entries) {
    if (isSecondRunning(entry, entries)) return false;
    if (entry.identifier == 0) {
      insert(entry, next, complete);
    } else if (!write(entry, next)) {
      (void)known(entry.identifier);  // it is there, and somebody else was faster
      return false;
    }
  }
  transaction.commit();
  return true;
}

void LedgerDatabase::adoptOrphans() {
  LedgerEntries orphans;
  for (auto& entry : select("WHERE finished = 0")) {
    if (!entry.owner || lock_.isAlive(*entry.owner)) continue;
    entry.owner = lock_.owner();
    orphans.push_back(std::move(entry));
  }
  if (!orphans.empty()) update(orphans, Durability::killedProcess);
}

std::optional<LedgerEntry> LedgerDatabase::find(std::int64_t identifier) {
  auto& statement = statements_[selection("WHERE identifier = ?")];
  const Rewinding rewinding(statement.bind(identifier));
  if (!statement.next()) return std::nullopt;
  return readEntry(statement);
}

LedgerEntries LedgerDatabase::changedAfter(std::int64_t revision) {
  return select("WHERE revision > ? ORDER BY revision, identifier", revision);
}

LedgerEntries LedgerDatabase::read(SqliteStatement& statement) {
  const Rewinding rewinding(statement);
  LedgerEntries entries;
  while (statement.next()) entries.push_back(readEntry(statement));
  return entries;
}

std::int64_t LedgerDatabase::counter(std::string_view name) {
  auto& statement = statements_["SELECT value FROM counters WHERE name = ?"];
  const Rewinding rewinding(statement.bind(name));
  return statement.next() ? statement.integer(0) : 0;
}

std::int64_t LedgerDatabase::revision() {
  auto& statement = statements_[kLastRevision];
  const Rewinding rewinding(statement);
  return statement.next() ? statement.integer(0) : 0;
}

void LedgerDatabase::raiseCounter(std::string_view name, std::int64_t value) {
  log_.promise(Durability::killedProcess);
  statements_["UPDATE counters SET value = MAX(value, ?) WHERE name = ?"]
      .bind(value)
      .bind(name)
      .run();
}

LedgerSettings LedgerDatabase::settings() {
  auto& statement = statements_["SELECT name, value FROM setting"];
  const Rewinding rewinding(statement);
  LedgerSettings settings;
  while (statement.next()) settings.emplace(statement.text(0), statement.text(1));
  return settings;
}

void LedgerDatabase::settingsChanged(std::int64_t revision) {
  statements_["UPDATE counters SET value = ? WHERE name = 'settings'"].bind(revision).run();
}

void LedgerDatabase::set(std::string_view setting, const std::optional<std::string>& value) {
  inTransaction(Durability::killedProcess, [&](std::int64_t revision) {
    if (value) {
      statements_["REPLACE INTO setting VALUES(?, ?)"].bind(setting).bind(*value).run();
    } else {
      statements_["DELETE FROM setting WHERE name = ?"].bind(setting).run();
    }
    settingsChanged(revision);
  });
}

void LedgerDatabase::clearSettings() {
  inTransaction(Durability::killedProcess, [&](std::int64_t revision) {
    database_->execute("DELETE FROM setting");
    settingsChanged(revision);
  });
}

void LedgerDatabase::watch(std::function<void()> changed) {
  if (isFile()) watch_ = std::make_unique<LedgerWatch>(path_, std::move(changed));
}

}  // namespace StoreKit::detail
