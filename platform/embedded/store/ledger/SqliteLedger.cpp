#include "platform/embedded/store/ledger/SqliteLedger.hpp"

#include <exception>
#include <filesystem>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/ledger/LedgerFile.hpp"
#include "platform/embedded/store/ledger/LedgerRow.hpp"
#include "platform/embedded/store/ledger/LedgerWatch.hpp"
#include "platform/embedded/store/ledger/OwnerLock.hpp"

namespace StoreKit {

namespace {

using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;
using Foundation::detail::SqliteTransaction;

std::string columns() { return detail::kEntryColumns; }

Foundation::NSError ledgerError(const std::exception& error) {
  const auto* known = dynamic_cast<const SqliteError*>(&error);
  return Foundation::NSError::withDescription("SQLite", known ? known->code() : 0, error.what());
}

// Runs `work`; what it throws becomes a value.
template <class Work>
Ledger::Failure attempt(const Work& work) {
  try {
    work();
    return std::nullopt;
  } catch (const std::exception& error) {
    return ledgerError(error);
  }
}

// What `work` reads, or nothing and a warning.
template <class Work>
auto reading(const Work& work) -> decltype(work()) {
  try {
    return work();
  } catch (const std::exception& error) {
    Foundation::warn(std::string("The ledger cannot be read: ") + error.what());
    return {};
  }
}

std::int64_t raise(SqliteDatabase& database, std::string_view counter) {
  SqliteStatement statement(database,
                            "UPDATE counter SET value = value + 1 WHERE name = ? RETURNING value");
  statement.bind(counter);
  const bool there = statement.next();
  const auto value = there ? statement.integer(0) : 0;
  if (there) statement.reset();
  return value;
}

// Commits do not wait for the disk while this lives. What closes the database afterwards, and may
// bring the log into the file and remove it, waits again.
class Relaxation {
 public:
  Relaxation(SqliteDatabase& database, bool wanted) : database_(database), wanted_(wanted) {
    if (wanted_) database_.execute("PRAGMA synchronous = OFF");
  }
  ~Relaxation() {
    if (wanted_) {
      sqlite3_exec(database_.handle(), "PRAGMA synchronous = FULL", nullptr, nullptr, nullptr);
    }
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

}  // namespace

// The database with its prepared statements. Everything here throws; the ledger's functions make
// values of it.
class SqliteLedger::Implementation {
 public:
  explicit Implementation(const std::string& path)
      : path_(wholePath(path)), database_(detail::openLedgerFile(path)) {
    database_->execute("PRAGMA synchronous = FULL");
  }

  void add(LedgerEntries& entries, Durability durability, const Complete& complete) {
    inTransaction(durability, [&](std::int64_t revision) {
      for (auto& entry : entries) {
        entry.revision = revision;
        entry.identifier = 0;
        write(insert_, entry);
        entry.identifier = sqlite3_last_insert_rowid(database_->handle());
        if (!complete) continue;
        complete(entry);
        write(replace_, entry);
      }
    });
  }

  void update(LedgerEntries& entries, Durability durability) {
    inTransaction(durability, [&](std::int64_t revision) {
      for (auto& entry : entries) {
        auto known = find(entry.identifier);
        if (!known) throw SqliteError(SQLITE_CORRUPT, path_ + ": an entry is missing");
        if (known->revision == entry.revision) {
          entry.revision = revision;
          write(replace_, entry);
        } else {
          entry = std::move(*known);
        }
      }
    });
  }

  void adoptOrphans() {
    LedgerEntries orphans;
    for (auto& entry : select("WHERE finished = 0")) {
      if (!entry.owner || lock_.isAlive(*entry.owner)) continue;
      entry.owner = lock_.owner();
      orphans.push_back(std::move(entry));
    }
    if (!orphans.empty()) update(orphans, Durability::killedProcess);
  }

  std::optional<LedgerEntry> find(std::int64_t identifier) {
    const Rewinding rewinding(find_.bind(identifier));
    if (!find_.next()) return std::nullopt;
    return detail::readEntry(find_);
  }

  LedgerEntries select(const std::string& condition) {
    SqliteStatement statement(*database_, "SELECT " + columns() + " FROM entry " + condition);
    return read(statement);
  }

  LedgerEntries changedAfter(std::int64_t revision) { return read(changedAfter_.bind(revision)); }

  std::int64_t revision() {
    const auto value = revision_.next() ? revision_.integer(0) : 0;
    revision_.reset();
    return value;
  }

  [[nodiscard]] std::int64_t owner() const { return lock_.owner(); }

  void watch(std::function<void()> changed) {
    if (path_ != ":memory:")
      watch_ = std::make_unique<detail::LedgerWatch>(path_, std::move(changed));
  }

 private:
  // What a relaxed change leaves unsynchronised, the next full one brings to the disk along with
  // itself: the log is one file.
  template <class Work>
  void inTransaction(Durability durability, const Work& work) {
    const Relaxation relaxation(*database_, durability == Durability::killedProcess);
    SqliteTransaction transaction(*database_);
    work(raise(*database_, "revision"));
    transaction.commit();
  }

  static void write(SqliteStatement& statement, const LedgerEntry& entry) {
    detail::bindEntry(statement, entry);
    statement.run();
  }

  static LedgerEntries read(SqliteStatement& statement) {
    const Rewinding rewinding(statement);
    LedgerEntries entries;
    while (statement.next()) entries.push_back(detail::readEntry(statement));
    return entries;
  }

  std::string path_;
  std::unique_ptr<SqliteDatabase> database_;
  detail::OwnerLock lock_{path_, newOwner(*database_)};
  SqliteStatement insert_{
      *database_, "INSERT INTO entry(" + columns() + ") VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)"};
  SqliteStatement replace_{*database_, "UPDATE entry SET (" + columns() +
                                           ") = (?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14,"
                                           "?15) WHERE identifier = ?15"};
  SqliteStatement find_{*database_, "SELECT " + columns() + " FROM entry WHERE identifier = ?"};
  SqliteStatement changedAfter_{*database_, "SELECT " + columns() +
                                                " FROM entry WHERE revision > ?"
                                                " ORDER BY revision, identifier"};
  SqliteStatement revision_{*database_, "SELECT value FROM counter WHERE name = 'revision'"};
  std::unique_ptr<detail::LedgerWatch> watch_;
};

SqliteLedger::SqliteLedger(std::unique_ptr<Implementation> implementation)
    : implementation_(std::move(implementation)) {}

SqliteLedger::~SqliteLedger() = default;

SqliteLedger::Opening SqliteLedger::open(const std::string& path) {
  try {
    auto implementation = std::make_unique<Implementation>(path);
    (void)implementation->select("WHERE finished = 0");  // throws when the file is damaged
    return {.ledger = std::unique_ptr<SqliteLedger>(new SqliteLedger(std::move(implementation)))};
  } catch (const std::exception& error) {
    return {.error = error.what()};
  }
}

std::int64_t SqliteLedger::owner() const { return implementation_->owner(); }

Ledger::Failure SqliteLedger::add(LedgerEntries& entries, Durability durability,
                                  const Complete& complete) {
  auto added = entries;
  return attempt([&] {
    implementation_->add(added, durability, complete);
    entries.swap(added);
  });
}

Ledger::Failure SqliteLedger::update(LedgerEntries& entries, Durability durability) {
  auto changed = entries;
  return attempt([&] {
    implementation_->update(changed, durability);
    entries.swap(changed);
  });
}

Ledger::Failure SqliteLedger::adoptOrphans() {
  return attempt([&] { implementation_->adoptOrphans(); });
}

std::optional<LedgerEntry> SqliteLedger::find(std::int64_t identifier) const {
  return reading([&] { return implementation_->find(identifier); });
}

LedgerEntries SqliteLedger::unfinished() const {
  return reading([&] { return implementation_->select("WHERE finished = 0 ORDER BY identifier"); });
}

LedgerEntries SqliteLedger::finishedPurchases() const {
  return reading([&] {
    return implementation_->select("WHERE finished = 1 AND state = 1 ORDER BY identifier");
  });
}

LedgerEntries SqliteLedger::all() const {
  return reading([&] { return implementation_->select("ORDER BY identifier"); });
}

LedgerEntries SqliteLedger::changedAfter(std::int64_t revision) const {
  return reading([&] { return implementation_->changedAfter(revision); });
}

std::int64_t SqliteLedger::revision() const {
  return reading([&] { return implementation_->revision(); });
}

void SqliteLedger::watch(std::function<void()> changed) {
  implementation_->watch(std::move(changed));
}

}  // namespace StoreKit
