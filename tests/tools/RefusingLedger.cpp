#include "tests/tools/RefusingLedger.hpp"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace tests {

void refuseChanges(const std::string& path, const std::string& condition) {
  changeLedger(path, "CREATE TRIGGER refusal BEFORE UPDATE ON entry WHEN " + condition +
                         " BEGIN SELECT RAISE(ABORT, 'refused by a test'); END");
}

void changeLedger(const std::string& path, const std::string& statements) {
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database);
  sqlite3_close(database);
}

}  // namespace tests
