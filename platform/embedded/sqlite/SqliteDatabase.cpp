#include "platform/embedded/sqlite/SqliteDatabase.hpp"

#include <chrono>
#include <thread>
#include <utility>

namespace Foundation::detail {

SqliteDatabase::SqliteDatabase(const std::string& path, int flags) : path_(path) {
  sqlite3* handle = nullptr;
  const int status = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  handle_.reset(handle);
  if (status != SQLITE_OK) fail("cannot be opened");
  sqlite3_extended_result_codes(handle, 1);
  setPatience(kSqlitePatience);
}

void SqliteDatabase::setPatience(std::chrono::milliseconds patience) {
  sqlite3_busy_timeout(handle(), static_cast<int>(patience.count()));
}

void SqliteDatabase::execute(const char* statements) {
  if (sqlite3_exec(handle(), statements, nullptr, nullptr, nullptr) != SQLITE_OK) {
    fail("refused a statement");
  }
}

// While another program makes the same change, SQLite answers that the file is busy at once, whatever
// its patience.
void SqliteDatabase::useWriteAheadLog() {
  const auto end = std::chrono::steady_clock::now() + kSqlitePatience;
  for (;;) {
    const int status =
        sqlite3_exec(handle(), "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr);
    if (status == SQLITE_OK) return;
    const bool busy = (status & 0xFF) == SQLITE_BUSY;
    if (!busy || std::chrono::steady_clock::now() > end) fail("refused a statement");
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

void SqliteDatabase::fail(const std::string& operation) const {
  if (!handle_) fail(operation, SQLITE_NOMEM, "out of memory");
  fail(operation, sqlite3_extended_errcode(handle()), sqlite3_errmsg(handle()));
}

void SqliteDatabase::fail(const std::string& operation, int code, const std::string& reason) const {
  throw SqliteError(code, path_ + ": " + operation + ": " + reason);
}

SqliteStatement::SqliteStatement(SqliteDatabase& database, std::string_view text)
    : database_(database) {
  sqlite3_stmt* statement = nullptr;
  const int status =
      sqlite3_prepare_v3(database.handle(), text.data(), static_cast<int>(text.size()),
                         SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
  statement_.reset(statement);
  check(status);
}

SqliteStatement& SqliteStatement::check(int status) {
  if (status == SQLITE_OK) return *this;
  const std::string reason = sqlite3_errmsg(database_.handle());
  if (statement_) reset();
  database_.fail("refused a statement", status, reason);
}

SqliteStatement& SqliteStatement::bind(std::int64_t value) {
  return check(sqlite3_bind_int64(statement_.get(), ++bound_, value));
}

SqliteStatement& SqliteStatement::bind(double value) {
  return check(sqlite3_bind_double(statement_.get(), ++bound_, value));
}

SqliteStatement& SqliteStatement::bind(std::string_view text) {
  // SQLite takes null for NULL, so an empty view without a text behind it needs one.
  const char* const start = text.data() == nullptr ? "" : text.data();
  return check(sqlite3_bind_text64(statement_.get(), ++bound_, start, text.size(), SQLITE_TRANSIENT,
                                   SQLITE_UTF8));
}

SqliteStatement& SqliteStatement::bindBytes(const void* bytes, std::size_t size) {
  if (size == 0) return check(sqlite3_bind_zeroblob(statement_.get(), ++bound_, 0));
  return check(sqlite3_bind_blob64(statement_.get(), ++bound_, bytes, size, SQLITE_TRANSIENT));
}

SqliteStatement& SqliteStatement::bindNull() {
  return check(sqlite3_bind_null(statement_.get(), ++bound_));
}

void SqliteStatement::run() {
  if (next()) reset();
}

bool SqliteStatement::next() {
  const int status = sqlite3_step(statement_.get());
  if (status == SQLITE_ROW) return true;
  const std::string reason = status == SQLITE_DONE ? "" : sqlite3_errmsg(database_.handle());
  reset();
  if (status != SQLITE_DONE) database_.fail("cannot be read or written", status, reason);
  return false;
}

void SqliteStatement::reset() {
  sqlite3_reset(statement_.get());
  sqlite3_clear_bindings(statement_.get());
  bound_ = 0;
}

bool SqliteStatement::isNull(int column) const {
  return sqlite3_column_type(statement_.get(), column) == SQLITE_NULL;
}

std::int64_t SqliteStatement::integer(int column) const {
  return sqlite3_column_int64(statement_.get(), column);
}

double SqliteStatement::real(int column) const {
  return sqlite3_column_double(statement_.get(), column);
}

std::string SqliteStatement::text(int column) const {
  const void* const start = sqlite3_column_blob(statement_.get(), column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column));
  return size == 0 ? "" : std::string(static_cast<const char*>(start), size);
}

SqliteStatement& SqliteStatements::operator[](std::string_view text) {
  auto found = statements_.find(text);
  if (found == statements_.end()) {
    found = statements_.try_emplace(std::string(text), database_, text).first;
  }
  return found->second;
}

SqliteTransaction::~SqliteTransaction() {
  if (!open_) return;
  sqlite3_exec(statements_.database().handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void SqliteTransaction::commit() {
  statements_["COMMIT"].run();
  open_ = false;
}

}  // namespace Foundation::detail
