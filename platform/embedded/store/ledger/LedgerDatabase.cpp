#include "platform/embedded/store/ledger/LedgerDatabase.hpp"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/ledger/LedgerFile.hpp"
#include "platform/embedded/store/ledger/LedgerRow.hpp"

namespace StoreKit::detail {

namespace {

using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;
using Foundation::detail::SqliteTransaction;
using Durability = Ledger::Durability;

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
    : path_(wholePath(path)), database_(openLedgerFile(path)), lock_(path_, newOwner()) {
  database_->execute("PRAGMA synchronous = FULL");
}

// Closing may bring the log into the file.
LedgerDatabase::~LedgerDatabase() {
  watch_.reset();
  try {
    promise(Durability::powerCut);
  } catch (const SqliteError& error) {
    Foundation::warn(error.what());
    sqlite3_db_config(database_->handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  }
}

std::int64_t LedgerDatabase::newOwner() {
  SqliteTransaction transaction(statements_);
  const auto owner = counter("owner") + 1;
  statements_["UPDATE counter SET value = ? WHERE name = 'owner'"].bind(owner).run();
  transaction.commit();
  return owner;
}

// While commits do not wait for the disk, none brings the log into the file: what is there must have
// reached the disk before.
void LedgerDatabase::promise(Durability durability) {
  const bool waits = durability == Durability::powerCut;
  if (waits == waits_) return;
  sqlite3_wal_autocheckpoint(database_->handle(), waits ? kPagesOfLongLog : 0);
  database_->execute(waits ? "PRAGMA synchronous = FULL" : "PRAGMA synchronous = OFF");
  waits_ = waits;
}

// What a relaxed change leaves unsynchronised, the next full one brings to the disk along with
// itself: the log is one file.
template <class Work>
void LedgerDatabase::inTransaction(Durability durability, const Work& work) {
  promise(durability);
  SqliteTransaction transaction(statements_);
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
  const bool wasFinished = entry.finished;
  complete(entry);
  write(entry, revision, wasFinished);
}

void LedgerDatabase::write(LedgerEntry& entry, std::int64_t revision, bool wasFinished) {
  entry.revision = revision;
  if (entry.cancelDate && !entry.refundRevision) entry.refundRevision = revision;
  auto& statement = statements_[replacement(entry.finished != wasFinished)];
  bindEntry(statement, entry);
  statement.run();
}

void LedgerDatabase::add(LedgerEntries& entries, Durability durability,
                         const Ledger::Complete& complete) {
  inTransaction(durability, [&](std::int64_t revision) {
    for (auto& entry : entries) insert(entry, revision, complete);
  });
}

LedgerDatabase::Known LedgerDatabase::known(std::int64_t identifier) {
  auto& statement = statements_["SELECT revision, finished FROM entry WHERE identifier = ?"];
  const Rewinding rewinding(statement.bind(identifier));
  if (!statement.next()) throw SqliteError(SQLITE_CORRUPT, path_ + ": an entry is missing");
  return {.revision = statement.integer(0), .finished = statement.integer(1) != 0};
}

void LedgerDatabase::update(LedgerEntries& entries, Durability durability) {
  inTransaction(durability, [&](std::int64_t revision) {
    for (auto& entry : entries) {
      const auto there = known(entry.identifier);
      if (there.revision == entry.revision) {
        write(entry, revision, there.finished);
      } else {
        entry = find(entry.identifier).value_or(entry);
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
  promise(durability);
  SqliteTransaction transaction(statements_);
  std::vector<Known> before;
  for (const auto& entry : entries) {
    const bool isNew = entry.identifier == 0;
    before.push_back(isNew ? Known{.revision = entry.revision} : known(entry.identifier));
    if (before.back().revision != entry.revision) return false;
    if (isSecondRunning(entry, entries)) return false;
  }
  const auto next = revision() + 1;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].identifier == 0) {
      insert(entries[i], next, complete);
    } else {
      write(entries[i], next, before[i].finished);
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
  auto& statement = statements_["SELECT value FROM counter WHERE name = ?"];
  const Rewinding rewinding(statement.bind(name));
  return statement.next() ? statement.integer(0) : 0;
}

std::int64_t LedgerDatabase::revision() {
  auto& statement = statements_["SELECT MAX(revision) FROM entry"];
  const Rewinding rewinding(statement);
  const auto ofEntries = statement.next() ? statement.integer(0) : 0;
  return std::max(ofEntries, counter("settings"));
}

void LedgerDatabase::raiseCounter(std::string_view name, std::int64_t value) {
  promise(Durability::killedProcess);
  statements_["UPDATE counter SET value = MAX(value, ?) WHERE name = ?"]
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
  statements_["UPDATE counter SET value = ? WHERE name = 'settings'"].bind(revision).run();
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
