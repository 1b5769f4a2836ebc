#include "platform/embedded/store/ledger/SqliteLedger.hpp"

#include <exception>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/store/ledger/LedgerDatabase.hpp"

namespace StoreKit {

namespace {

using Foundation::detail::SqliteError;

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

}  // namespace

SqliteLedger::SqliteLedger(std::unique_ptr<detail::LedgerDatabase> database)
    : database_(std::move(database)) {}

SqliteLedger::~SqliteLedger() = default;

SqliteLedger::Opening SqliteLedger::open(const std::string& path) {
  try {
    auto database = std::make_unique<detail::LedgerDatabase>(path);
    (void)database->select("WHERE finished = 0");  // throws when the file is damaged
    return {.ledger = std::unique_ptr<SqliteLedger>(new SqliteLedger(std::move(database)))};
  } catch (const std::exception& error) {
    return {.error = error.what()};
  }
}

std::string SqliteLedger::path() const { return database_->isFile() ? database_->path() : ""; }

std::int64_t SqliteLedger::owner() const { return database_->owner(); }

Ledger::Failure SqliteLedger::add(LedgerEntries& entries, Durability durability,
                                  const Complete& complete) {
  auto added = entries;
  return attempt([&] {
    database_->add(added, durability, complete);
    entries.swap(added);
  });
}

Ledger::Failure SqliteLedger::update(LedgerEntries& entries, Durability durability) {
  auto changed = entries;
  return attempt([&] {
    database_->update(changed, durability);
    entries.swap(changed);
  });
}

Ledger::Replacement SqliteLedger::replace(LedgerEntries& entries, Durability durability,
                                          const Complete& complete) {
  auto changed = entries;
  bool done = false;
  if (auto error = attempt([&] { done = database_->replace(changed, durability, complete); })) {
    return {.error = std::move(error)};
  }
  if (done) entries.swap(changed);
  return {.conflict = !done};
}

Ledger::Failure SqliteLedger::adoptOrphans() {
  return attempt([&] { database_->adoptOrphans(); });
}

std::optional<LedgerEntry> SqliteLedger::find(std::int64_t identifier) const {
  auto entry = reading([&] { return database_->find(identifier); });
  return entry && !entry->deleted ? entry : std::nullopt;
}

bool SqliteLedger::isOver(std::int64_t identifier) const {
  return reading([&] {
    const auto entry = database_->find(identifier);
    return !entry || entry->deleted || entry->finished;
  });
}

LedgerEntries SqliteLedger::unfinished() const {
  return reading([&] { return database_->select("WHERE finished = 0 ORDER BY identifier"); });
}

LedgerEntries SqliteLedger::finishedPurchases() const {
  return reading([&] {
    return database_->select(
        "WHERE finished = 1 AND state = 1 AND deleted = 0 ORDER BY identifier");
  });
}

LedgerEntries SqliteLedger::all() const {
  return reading([&] { return database_->select("WHERE deleted = 0 ORDER BY identifier"); });
}

LedgerEntries SqliteLedger::changedAfter(std::int64_t revision) const {
  return reading([&] { return database_->changedAfter(revision); });
}

std::int64_t SqliteLedger::revision() const {
  return reading([&] { return database_->revision(); });
}

LedgerEntries SqliteLedger::runningPeriods() const {
  return reading([&] { return database_->select("WHERE running = 1 ORDER BY identifier"); });
}

std::optional<LedgerEntry> SqliteLedger::firstPeriod(std::string_view group) const {
  auto first = reading([&] {
    return database_->select("WHERE subscription_group = ? ORDER BY identifier LIMIT 1", group);
  });
  if (first.empty()) return std::nullopt;
  return std::move(first.front());
}

LedgerEntries SqliteLedger::untoldRefunds() const {
  return reading([&] {
    return database_->select("WHERE refund_revision > ? ORDER BY refund_revision",
                             database_->counter("told_refunds"));
  });
}

Ledger::Failure SqliteLedger::tellRefunds(std::int64_t revision) {
  return attempt([&] { database_->raiseCounter("told_refunds", revision); });
}

LedgerSettings SqliteLedger::settings() const {
  return reading([&] { return database_->settings(); });
}

std::int64_t SqliteLedger::settingsRevision() const {
  return reading([&] { return database_->counter("settings"); });
}

Ledger::Failure SqliteLedger::set(std::string_view setting,
                                  const std::optional<std::string>& value) {
  return attempt([&] { database_->set(setting, value); });
}

Ledger::Failure SqliteLedger::clearSettings() {
  return attempt([&] { database_->clearSettings(); });
}

void SqliteLedger::watch(std::function<void()> changed) { database_->watch(std::move(changed)); }

}  // namespace StoreKit
