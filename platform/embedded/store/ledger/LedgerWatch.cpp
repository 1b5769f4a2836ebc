#include "platform/embedded/store/ledger/LedgerWatch.hpp"

#include <chrono>
#include <utility>

#include "platform/Foundation/Print.hpp"
#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace StoreKit::detail {

namespace {

using namespace std::chrono_literals;
using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;

constexpr int kPatienceInMilliseconds = 10'000;
constexpr auto kBetweenLooks = 25ms;
// So many looks without a change, and the ledger is idle.
constexpr int kLooksUntilIdle = 20;
constexpr auto kAfterTrouble = 1s;

// First what takes time, and keeps nobody from writing; then the log is emptied, unless somebody
// has begun to write. An emptied one has no old frames that a power cut could bring back among the
// first new ones, which are not synchronised. What fails is tried again after the next change.
void checkpoint(SqliteDatabase& database) {
  auto* const handle = database.handle();
  int frames = 0;
  int moved = 0;
  const int status =
      sqlite3_wal_checkpoint_v2(handle, nullptr, SQLITE_CHECKPOINT_PASSIVE, &frames, &moved);
  if (status != SQLITE_OK || frames != moved) return;
  sqlite3_busy_timeout(handle, 0);
  sqlite3_wal_checkpoint_v2(handle, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
  sqlite3_busy_timeout(handle, kPatienceInMilliseconds);
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
  database.execute("PRAGMA synchronous = FULL");
  SqliteStatement version(database, "PRAGMA data_version");
  std::int64_t seen = 0;
  int quietLooks = 0;
  while (waitFor(kBetweenLooks)) {
    const bool row = version.next();
    const auto now = row ? version.integer(0) : seen;
    version.reset();
    const bool changed = std::exchange(seen, now) != now;
    quietLooks = changed ? 0 : quietLooks + 1;
    if (changed) changed_();
    if (quietLooks == kLooksUntilIdle) checkpoint(database);
  }
}

}  // namespace StoreKit::detail
