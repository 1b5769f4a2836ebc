#pragma once

#include <cstdint>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit::detail {

/// The write-ahead log of a ledger, as one connection to it sees it.
///
/// The log is ready before a purchase comes: it has begun, for SQLite waits for the disk when a log
/// begins, and there is room in it, for a file that grows makes the system write more than the
/// change. Both are done when a ledger is opened and when it has become idle.
/// Fails: throws `SqliteError`, unless said otherwise. Thread: that of the connection.
class LedgerLog {
 public:
  /// `statements` are the connection's. Its commits wait for the disk until `promise` says other.
  explicit LedgerLog(Foundation::detail::SqliteStatements& statements);
  ~LedgerLog();
  LedgerLog(const LedgerLog&) = delete;
  LedgerLog& operator=(const LedgerLog&) = delete;

  /// From now on, commits outlive that. Those that do not wait for the disk never bring the log into
  /// the file; the others do so when it has become long.
  void promise(Ledger::Durability durability);

  /// Lays out room for the next changes, unless there is enough. Only inside a transaction that
  /// writes, and before its first change: it keeps others from writing there. Never fails: it only
  /// saves time.
  void makeRoom();

  /// Brings the log into the file and begins a new one, as far as no other program is in the way.
  void tidyUp();

 private:
  static int committed(void* self, sqlite3* handle, const char* schema, int frames);
  void begin();

  Foundation::detail::SqliteStatements& statements_;
  std::int64_t frameSize_ = 0;
  std::int64_t frames_ = 0;  // after the last commit of this connection
  sqlite3_int64 size_ = 0;   // bytes of the file, as far as it is known to be laid out
  bool waits_ = true;
};

}  // namespace StoreKit::detail
