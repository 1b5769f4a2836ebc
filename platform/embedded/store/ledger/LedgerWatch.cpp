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

constexpr auto kBetweenLooks = 25ms;
// So many looks without a change, and the ledger is idle.
constexpr int kLooksUntilIdle = 20;

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

bool LedgerWatch::waitForNextLook() {
  std::unique_lock lock(mutex_);
  return !ended_.wait_for(lock, kBetweenLooks, [this] { return ending_; });
}

void LedgerWatch::run() {
  try {
    SqliteDatabase database(path_, SQLITE_OPEN_READWRITE);
    SqliteStatement version(database, "PRAGMA data_version");
    std::int64_t seen = 0;
    int quietLooks = 0;
    while (waitForNextLook()) {
      const bool row = version.next();
      const auto now = row ? version.integer(0) : seen;
      version.reset();
      if (now != seen) {
        seen = now;
        quietLooks = 0;
        changed_();
      } else if (++quietLooks == kLooksUntilIdle) {
        database.execute("PRAGMA wal_checkpoint(PASSIVE)");
      }
    }
  } catch (const SqliteError& error) {
    Foundation::warn(std::string("The ledger is not watched any more: ") + error.what());
  }
}

}  // namespace StoreKit::detail
