#pragma once

#include <sqlite3.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Foundation::detail {

/// What went wrong in a database. Thrown and caught below the seam; nobody above sees it.
class SqliteError : public std::runtime_error {
 public:
  SqliteError(int code, const std::string& message) : std::runtime_error(message), code_(code) {}
  [[nodiscard]] int code() const { return code_; }

 private:
  int code_;
};

/// How long a database waits for locks of others.
inline constexpr std::chrono::milliseconds kSqlitePatience(10'000);

/// An open database file. Thread: one at a time. Fails: every operation throws `SqliteError`, whose
/// text names the file.
class SqliteDatabase {
 public:
  /// `flags` are SQLite's own (SQLITE_OPEN_READWRITE and so on). Waits for locks of others up to
  /// `kSqlitePatience`.
  SqliteDatabase(const std::string& path, int flags);

  /// Runs statements that give no rows.
  void execute(const char* statements);

  /// Keeps changes in a log beside the file from now on, so that readers and a writer do not wait
  /// for each other. Programs may do so at the same time.
  void useWriteAheadLog();

  void setPatience(std::chrono::milliseconds patience);

  [[nodiscard]] sqlite3* handle() const { return handle_.get(); }

  /// Throws what the last operation failed with.
  [[noreturn]] void fail(const std::string& operation) const;
  [[noreturn]] void fail(const std::string& operation, int code, const std::string& reason) const;

 private:
  struct Close {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  std::string path_;
  std::unique_ptr<sqlite3, Close> handle_;
};

/// A statement that is prepared once and run often. It must not outlive its database.
class SqliteStatement {
 public:
  SqliteStatement(SqliteDatabase& database, std::string_view text);

  /// Sets the next parameter, from the first on; `run` and `next` begin with what was set.
  SqliteStatement& bind(std::int64_t value);
  SqliteStatement& bind(double value);
  SqliteStatement& bind(std::string_view text);
  SqliteStatement& bindBytes(const void* bytes, std::size_t size);
  SqliteStatement& bindNull();

  template <class T>
  SqliteStatement& bind(const std::optional<T>& value) {
    return value ? bind(*value) : bindNull();
  }

  /// Runs a statement that gives no rows, and makes it ready again.
  void run();

  /// Goes to the next row; false after the last, and the statement is ready again.
  [[nodiscard]] bool next();

  /// Makes the statement ready again before its last row.
  void reset();

  [[nodiscard]] bool isNull(int column) const;
  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] double real(int column) const;
  [[nodiscard]] std::string text(int column) const;

 private:
  struct Finalize {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  SqliteStatement& check(int status);

  SqliteDatabase& database_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
  int bound_ = 0;
};

/// The statements of a database, each prepared when it is first asked for. They must not outlive it.
class SqliteStatements {
 public:
  explicit SqliteStatements(SqliteDatabase& database) : database_(database) {}

  /// The statement with this text, the same one each time: it is not to be used in two places at
  /// once.
  [[nodiscard]] SqliteStatement& operator[](std::string_view text);

  [[nodiscard]] SqliteDatabase& database() const { return database_; }

 private:
  SqliteDatabase& database_;
  std::map<std::string, SqliteStatement, std::less<>> statements_;
};

/// A transaction that writes: rolled back unless it was committed.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(SqliteStatements& statements) : statements_(statements) {
    statements_["BEGIN IMMEDIATE"].run();
  }
  ~SqliteTransaction();
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;

  void commit();

 private:
  SqliteStatements& statements_;
  bool open_ = true;
};

}  // namespace Foundation::detail
