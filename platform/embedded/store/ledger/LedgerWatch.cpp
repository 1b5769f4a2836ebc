#include "platform/embedded/store/ledger/LedgerWatch.hpp"

#include <chrono>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "platform/embedded/store/ledger/LedgerLog.hpp"

namespace StoreKit::detail {

namespace {

using namespace std::chrono_literals;
using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatements;

constexpr auto kBetweenLooks = 25ms;
// So many looks without a change, and the ledger is idle.
constexpr int kLooksUntilIdle = 20;
constexpr auto kAfterTrouble = 1s;

std::int64_t number(SqliteStatements& statements, const char* query) {
  auto& statement = statements[query];
  const bool row = statement.next();
  const auto number = row ? statement.integer(0) : 0;
  if (row) statement.reset();
  return number;
}

// Grows with every change, but not with a new log.
std::int64_t lastChange(SqliteStatements& statements) {
  return number(statements,
                "SELECT SUM(value) + (SELECT IFNULL(MAX(revision), 0) FROM entry) FROM counters "
                "WHERE name <> 'log'");
}

}  // namespace

LedgerWatch::LedgerWatch(std::string path, std::function<void()> changed)
    : path_(std::move(path)), changed_(std::move(changed)), thread_([this] { run(); }) {}

LedgerWatch::~LedgerWatch() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

bool LedgerWatch::waitFor(std::chrono::milliseconds pause) {
  std::unique_lock lock(mutex_);
  return !ended_.wait_for(lock, pause, [this] { return ending_; });
}

void LedgerWatch::run() {
  bool complained = false;
  do {
    try {
      watch();
    } catch (const SqliteError& error) {
      if (!std::exchange(complained, true)) {
        Foundation::warn(std::string("The ledger cannot be watched for now: ") + error.what());
      }
    }
  } while (waitFor(kAfterTrouble));
}

void LedgerWatch::watch() {
  SqliteDatabase database(path_, SQLITE_OPEN_READWRITE);
  SqliteStatements statements(database);
  LedgerLog log(statements);
  std::int64_t seen = 0;
  std::int64_t tidied = -1;
  int quietLooks = 0;
  while (waitFor(kBetweenLooks)) {
    const auto version = number(statements, "PRAGMA data_version");
    const bool changed = std::exchange(seen, version) != version;
    quietLooks = changed ? 0 : quietLooks + 1;
    if (changed) changed_();
    if (quietLooks != kLooksUntilIdle) continue;
    // A program that tidies up makes the others look, and they have nothing to tidy up after it.
    const auto change = lastChange(statements);
    if (std::exchange(tidied, change) != change) log.tidyUp();
  }
}

}  // namespace StoreKit::detail
