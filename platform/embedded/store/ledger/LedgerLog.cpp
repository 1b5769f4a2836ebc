#include "platform/embedded/store/ledger/LedgerLog.hpp"

#include <array>
#include <chrono>

namespace StoreKit::detail {

namespace {

using Foundation::detail::kSqlitePatience;
using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;
using Foundation::detail::SqliteStatements;
using Foundation::detail::SqliteTransaction;

// Bytes, by SQLite's published format of the log.
constexpr std::int64_t kLogHeaderSize = 32;
constexpr std::int64_t kFrameHeaderSize = 24;

// Bytes. A purchase takes about ten thousand.
constexpr std::int64_t kRoom = 256 << 10;
constexpr std::int64_t kLittleRoom = 64 << 10;

// Should the store never be idle, then a commit that waits for the disk brings the log into the
// file, each time that so many pages have come together.
constexpr int kPagesOfLongLog = 4096;

std::int64_t pageSize(SqliteDatabase& database) {
  SqliteStatement statement(database, "PRAGMA page_size");
  return statement.next() ? statement.integer(0) : 0;
}

// Does not wait for other programs while it lives.
class Impatience {
 public:
  explicit Impatience(SqliteDatabase& database) : database_(database) {
    database_.setPatience(std::chrono::milliseconds(0));
  }
  ~Impatience() { database_.setPatience(kSqlitePatience); }
  Impatience(const Impatience&) = delete;
  Impatience& operator=(const Impatience&) = delete;

 private:
  SqliteDatabase& database_;
};

// Null when there is no log.
sqlite3_file* logFile(sqlite3* handle) {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(handle, "main", SQLITE_FCNTL_JOURNAL_POINTER, static_cast<void*>(&file));
  return file == nullptr || file->pMethods == nullptr ? nullptr : file;
}

}  // namespace

LedgerLog::LedgerLog(SqliteStatements& statements)
    : statements_(statements), frameSize_(kFrameHeaderSize + pageSize(statements.database())) {
  statements_.database().execute("PRAGMA synchronous = FULL");
  sqlite3_wal_hook(statements_.database().handle(), &committed, this);
}

LedgerLog::~LedgerLog() { sqlite3_wal_hook(statements_.database().handle(), nullptr, nullptr); }

int LedgerLog::committed(void* self, sqlite3* handle, const char* schema, int frames) {
  auto& log = *static_cast<LedgerLog*>(self);
  if (frames < log.frames_) log.size_ = 0;  // it is another log
  log.frames_ = frames;
  if (log.waits_ && frames >= kPagesOfLongLog) sqlite3_wal_checkpoint(handle, schema);
  return SQLITE_OK;
}

void LedgerLog::promise(Ledger::Durability durability) {
  const bool waits = durability == Ledger::Durability::powerCut;
  if (waits == waits_) return;
  statements_.database().execute(waits ? "PRAGMA synchronous = FULL"
                                       : "PRAGMA synchronous = NORMAL");
  waits_ = waits;
}

// What is laid out is zeros, in which SQLite sees the end of the log; its files take less than 128
// KiB at once. The file is not asked for its size each time: on some systems the next wait for the
// disk is longer after that, for the file's time is written as well.
void LedgerLog::makeRoom() {
  static constexpr std::array<char, 64 << 10> kZeros{};
  const auto enough = kLogHeaderSize + frames_ * frameSize_ + kLittleRoom;
  if (size_ >= enough) return;
  auto* const file = logFile(statements_.database().handle());
  if (file == nullptr || file->pMethods->xFileSize(file, &size_) != SQLITE_OK) return;
  // What was cut off must be gone before there are zeros in its place: a log of old changes with a
  // gap would be taken for one that ends there.
  if (size_ == 0 && file->pMethods->xSync(file, SQLITE_SYNC_NORMAL) != SQLITE_OK) return;
  const auto end = size_ < enough ? size_ + kRoom : size_;
  for (; size_ < end; size_ += kZeros.size()) {
    if (file->pMethods->xWrite(file, kZeros.data(), kZeros.size(), size_) != SQLITE_OK) return;
  }
}

// With a change that is about nothing but this. When it fails, then the next one is slower.
void LedgerLog::begin() {
  try {
    SqliteTransaction transaction(statements_);
    makeRoom();
    statements_["UPDATE counters SET value = value + 1 WHERE name = 'log'"].run();
    transaction.commit();
  } catch (const SqliteError&) {
    return;
  }
}

// First what takes time, and keeps nobody from writing; then the log is cut off, unless somebody
// has begun to write.
void LedgerLog::tidyUp() {
  auto* const handle = statements_.database().handle();
  int frames = 0;
  int moved = 0;
  const int status =
      sqlite3_wal_checkpoint_v2(handle, nullptr, SQLITE_CHECKPOINT_PASSIVE, &frames, &moved);
  if (status != SQLITE_OK || frames != moved) return;
  const Impatience impatience(statements_.database());
  const int cut =
      sqlite3_wal_checkpoint_v2(handle, nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
  if (cut != SQLITE_OK) return;
  size_ = 0;
  frames_ = 0;
  begin();
}

}  // namespace StoreKit::detail
