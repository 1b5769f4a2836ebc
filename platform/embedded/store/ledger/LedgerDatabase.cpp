#include "platform/embedded/store/ledger/LedgerDatabase.hpp"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/embedded/store/ledger/LedgerFile.hpp"
#include "platform/embedded/store/ledger/LedgerRow.hpp"

namespace StoreKit::detail {

namespace {

using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;
using Foundation::detail::SqliteTransaction;
using Durability = Ledger::Durability;

std::int64_t raise(SqliteDatabase& database, std::string_view counter) {
  SqliteStatement statement(database,
                            "UPDATE counter SET value = value + 1 WHERE name = ? RETURNING value");
  statement.bind(counter);
  const bool there = statement.next();
  const auto value = there ? statement.integer(0) : 0;
  if (there) statement.reset();
  return value;
}

// Commits do not wait for the disk while this lives, and none brings the log into the file: what is
// there must have reached the disk before. What does so afterwards, or closes the database, waits
// again.
class Relaxation {
 public:
  Relaxation(SqliteDatabase& database, bool wanted) : database_(database), wanted_(wanted) {
    if (!wanted_) return;
    sqlite3_wal_autocheckpoint(database_.handle(), 0);
    database_.execute("PRAGMA synchronous = OFF");
  }
  ~Relaxation() {
    if (!wanted_) return;
    sqlite3_exec(database_.handle(), "PRAGMA synchronous = FULL", nullptr, nullptr, nullptr);
    sqlite3_wal_autocheckpoint(database_.handle(), kPagesOfLongLog);
  }
  Relaxation(const Relaxation&) = delete;
  Relaxation& operator=(const Relaxation&) = delete;

 private:
  SqliteDatabase& database_;
  bool wanted_;
};

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

std::int64_t newOwner(SqliteDatabase& database) {
  SqliteTransaction transaction(database);
  const auto owner = raise(database, "owner");
  transaction.commit();
  return owner;
}

// ?1 to ?N, in the order of the columns; the last is the identifier.
std::string parameters(std::string& last) {
  std::string list;
  int count = 1;
  for (const char c : std::string_view(kEntryColumns)) count += c == ',' ? 1 : 0;
  for (int i = 1; i <= count; ++i) list += (i > 1 ? ",?" : "?") + std::to_string(i);
  last = "?" + std::to_string(count);
  return list;
}

std::string insertion() {
  std::string last;
  const auto list = parameters(last);
  return std::string("INSERT INTO entry(") + kEntryColumns + ") VALUES(" + list + ")";
}

std::string replacement() {
  std::string last;
  const auto list = parameters(last);
  return std::string("UPDATE entry SET (") + kEntryColumns + ") = (" + list +
         ") WHERE identifier = " + last;
}

}  // namespace

LedgerDatabase::LedgerDatabase(const std::string& path)
    : path_(wholePath(path)),
      database_(openLedgerFile(path)),
      lock_(path_, newOwner(*database_)),
      insert_(*database_, insertion()),
      replace_(*database_, replacement()),
      find_(*database_, selection("WHERE identifier = ?")),
      changedAfter_(*database_, selection("WHERE revision > ? ORDER BY revision, identifier")),
      counter_(*database_, "SELECT value FROM counter WHERE name = ?") {
  database_->execute("PRAGMA synchronous = FULL");
}

std::string LedgerDatabase::selection(std::string_view condition) {
  return std::string("SELECT ") + kEntryColumns + " FROM entry " + std::string(condition);
}

// What a relaxed change leaves unsynchronised, the next full one brings to the disk along with
// itself: the log is one file.
template <class Work>
void LedgerDatabase::inTransaction(Durability durability, const Work& work) {
  const Relaxation relaxation(*database_, durability == Durability::killedProcess);
  SqliteTransaction transaction(*database_);
  work(raise(*database_, "revision"));
  transaction.commit();
}

void LedgerDatabase::insert(LedgerEntry& entry, std::int64_t revision,
                            const Ledger::Complete& complete) {
  entry.revision = revision;
  entry.identifier = 0;
  bindEntry(insert_, entry);
  insert_.run();
  entry.identifier = sqlite3_last_insert_rowid(database_->handle());
  if (!complete) return;
  complete(entry);
  write(entry, revision);
}

void LedgerDatabase::write(LedgerEntry& entry, std::int64_t revision) {
  entry.revision = revision;
  if (entry.cancelDate && !entry.refundRevision) entry.refundRevision = revision;
  bindEntry(replace_, entry);
  replace_.run();
}

void LedgerDatabase::add(LedgerEntries& entries, Durability durability,
                         const Ledger::Complete& complete) {
  inTransaction(durability, [&](std::int64_t revision) {
    for (auto& entry : entries) insert(entry, revision, complete);
  });
}

LedgerEntry LedgerDatabase::known(std::int64_t identifier) {
  auto entry = find(identifier);
  if (!entry) throw SqliteError(SQLITE_CORRUPT, path_ + ": an entry is missing");
  return std::move(*entry);
}

void LedgerDatabase::update(LedgerEntries& entries, Durability durability) {
  inTransaction(durability, [&](std::int64_t revision) {
    for (auto& entry : entries) {
      auto there = known(entry.identifier);
      if (there.revision == entry.revision) {
        write(entry, revision);
      } else {
        entry = std::move(there);
      }
    }
  });
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
  const Relaxation relaxation(*database_, durability == Durability::killedProcess);
  SqliteTransaction transaction(*database_);
  for (const auto& entry : entries) {
    const bool isNew = entry.identifier == 0;
    if (!isNew && known(entry.identifier).revision != entry.revision) return false;
    if (isSecondRunning(entry, entries)) return false;
  }
  const auto revision = raise(*database_, "revision");
  for (auto& entry : entries) {
    if (entry.identifier == 0) {
      insert(entry, revision, complete);
    } else {
      write(entry, revision);
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
  const Rewinding rewinding(find_.bind(identifier));
  if (!find_.next()) return std::nullopt;
  return readEntry(find_);
}

LedgerEntries LedgerDatabase::changedAfter(std::int64_t revision) {
  return read(changedAfter_.bind(revision));
}

LedgerEntries LedgerDatabase::read(SqliteStatement& statement) {
  const Rewinding rewinding(statement);
  LedgerEntries entries;
  while (statement.next()) entries.push_back(readEntry(statement));
  return entries;
}

std::int64_t LedgerDatabase::counter(std::string_view name) {
  const Rewinding rewinding(counter_.bind(name));
  return counter_.next() ? counter_.integer(0) : 0;
}

void LedgerDatabase::raiseCounter(std::string_view name, std::int64_t value) {
  const Relaxation relaxation(*database_, true);
  SqliteStatement statement(*database_, "UPDATE counter SET value = MAX(value, ?) WHERE name = ?");
  statement.bind(value).bind(name).run();
}

LedgerSettings LedgerDatabase::settings() {
  SqliteStatement statement(*database_, "SELECT name, value FROM setting");
  LedgerSettings settings;
  while (statement.next()) settings.emplace(statement.text(0), statement.text(1));
  return settings;
}

void LedgerDatabase::settingsChanged(std::int64_t revision) {
  SqliteStatement statement(*database_, "UPDATE counter SET value = ? WHERE name = 'settings'");
  statement.bind(revision).run();
}

void LedgerDatabase::set(std::string_view setting, const std::optional<std::string>& value) {
  inTransaction(Durability::killedProcess, [&](std::int64_t revision) {
    if (value) {
      SqliteStatement statement(*database_, "REPLACE INTO setting VALUES(?, ?)");
      statement.bind(setting).bind(*value).run();
    } else {
      SqliteStatement statement(*database_, "DELETE FROM setting WHERE name = ?");
      statement.bind(setting).run();
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
