#include "platform/embedded/Foundation/DefaultsFile.hpp"

#include <utility>

#include "platform/embedded/Foundation/DefaultsFileFormat.hpp"
#include "platform/embedded/Foundation/DefaultsRow.hpp"

namespace Foundation {

namespace {

using detail::SqliteDatabase;
using detail::SqliteError;
using detail::SqliteStatement;
using detail::SqliteTransaction;

constexpr const char* kReplace = "REPLACE INTO defaults (key, kind, value) VALUES (?, ?, ?)";
constexpr const char* kRemove = "DELETE FROM defaults WHERE key = ?";

// A connection that, while its file is not known to be whole, does not write to it when it closes.
SqliteDatabase connection(const std::string& path) {
  SqliteDatabase database(path, SQLITE_OPEN_READWRITE);
  sqlite3_db_config(database.handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  SqliteStatement check(database, "PRAGMA quick_check(1)");
  const bool isWhole = check.next() && check.text(0) == "ok";
  if (!isWhole) throw SqliteError(SQLITE_CORRUPT, path + ": is damaged: " + check.text(0));
  database.execute("PRAGMA synchronous = FULL");
  return database;
}

}  // namespace

DefaultsFile::DefaultsFile(const std::string& path)
    : path_(path), database_(connection(path)), statements_(database_) {}

DefaultsFile::Opening DefaultsFile::open(const std::string& path) {
  auto problem = makeDefaultsFile(path);
  if (problem.empty()) problem = defaultsHeaderProblem(path);
  if (!problem.empty()) return {.problem = path + ": " + problem};
  try {
    Opening opening;
    opening.file.reset(new DefaultsFile(path));
    (void)opening.file->othersHaveStored();
    opening.content = opening.file->readAll();
    sqlite3_db_config(opening.file->database_.handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0,
                      nullptr);
    return opening;
  } catch (const SqliteError& error) {
    return {.problem = error.what()};
  }
}

DefaultsValues DefaultsFile::readAll() {
  DefaultsValues values;
  SqliteStatement rows(database_, "SELECT key, kind, value, typeof(value) FROM defaults");
  while (rows.next()) {
    auto key = rows.text(0);
    auto object = readObject(rows, 1);
    if (!object) throw SqliteError(SQLITE_CORRUPT, path_ + ": is damaged: the value of " + key);
    values.emplace(std::move(key), std::make_shared<const DefaultsObject>(std::move(*object)));
  }
  return values;
}

void DefaultsFile::store(const DefaultsValues& changes) {
  SqliteTransaction transaction(statements_);
  for (const auto& [key, object] : changes) {
    auto& statement = statements_[object ? kReplace : kRemove].bind(key);
    if (object) bindObject(statement, *object);
    statement.run();
  }
  transaction.commit();
}

// Another connection's commits change the number, our own do not.
bool DefaultsFile::othersHaveStored() {
  auto& statement = statements_["PRAGMA data_version"];
  if (!statement.next()) return false;
  const auto version = statement.integer(0);
  statement.reset();
  return std::exchange(lastVersion_, version) != version;
}

DefaultsFile::Exchange DefaultsFile::exchange(const DefaultsValues& changes) {
  Exchange exchange;
  try {
    if (!changes.empty()) store(changes);
    exchange.isStored = true;
    if (othersHaveStored()) exchange.content = readAll();
  } catch (const SqliteError& error) {
    exchange.problem = error.what();
  }
  return exchange;
}

}  // namespace Foundation
