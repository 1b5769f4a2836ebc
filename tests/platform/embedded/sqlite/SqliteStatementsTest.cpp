#include <gtest/gtest.h>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace Foundation::detail {
namespace {

TEST(SqliteStatements, OneThatWasHandedTooMuchCanBeUsedAgain) {
  SqliteDatabase database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  database.execute("CREATE TABLE note(number INTEGER, text TEXT)");
  SqliteStatements statements(database);
  constexpr const char* kInsertion = "INSERT INTO note VALUES(?, ?)";
  sqlite3_limit(database.handle(), SQLITE_LIMIT_LENGTH, 100);
  auto& insertion = statements[kInsertion].bind(std::int64_t{1});
  EXPECT_THROW(insertion.bind(std::string(101, 'x')), SqliteError);

  statements[kInsertion].bind(std::int64_t{2}).bind(std::string_view("short")).run();

  auto& notes = statements["SELECT number, text FROM note"];
  ASSERT_TRUE(notes.next());
  EXPECT_EQ(notes.integer(0), 2);
  EXPECT_EQ(notes.text(1), "short");
  EXPECT_FALSE(notes.next());
}

TEST(SqliteStatements, OneThatMeansNothingYetCanBeAskedForAgain) {
  SqliteDatabase database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  SqliteStatements statements(database);
  constexpr const char* kQuery = "SELECT * FROM note";
  EXPECT_THROW((void)statements[kQuery], SqliteError);

  database.execute("CREATE TABLE note(number INTEGER)");

  EXPECT_FALSE(statements[kQuery].next());
}

TEST(SqliteStatements, AreTheSameForTheSameText) {
  SqliteDatabase database(":memory:", SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
  SqliteStatements statements(database);
  EXPECT_EQ(&statements["SELECT 1"], &statements["SELECT 1"]);
  EXPECT_NE(&statements["SELECT 1"], &statements["SELECT 2"]);
}

}  // namespace
}  // namespace Foundation::detail
