#include "platform/embedded/Foundation/DefaultsStore.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <memory>

#include "platform/Foundation/UserDefaults.hpp"
#include "platform/embedded/Foundation/DefaultsFolder.hpp"
#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace Foundation {
namespace {

using detail::SqliteDatabase;
using tests::bytesOf;

DefaultsObjectPtr number(std::int64_t value) {
  return std::make_shared<const DefaultsObject>(DefaultsObject::integer(value));
}

class DefaultsStoreTest : public testing::Test {
 protected:
  // A store on the file that holds "kept" = 1, closed again.
  void makeFile() const {
    DefaultsStore store(path);
    store.set(number(1), "kept");
    ASSERT_TRUE(store.synchronize());
  }
  void execute(const char* sql) const {
    SqliteDatabase(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE).execute(sql);
  }
  // What is said when a store is opened on the file and used, which leaves the file as it was.
  [[nodiscard]] std::string complaint() const {
    const auto before = bytesOf(path);
    tests::CapturedError error;
    {
      DefaultsStore store(path);
      store.set(number(2), "kept");
      EXPECT_FALSE(store.synchronize());
      EXPECT_EQ(*store.object("kept"), *number(2));
    }
    EXPECT_TRUE(bytesOf(path) == before);
    return error.text();
  }

  tests::TemporaryFolder folder;
  const std::string path = folder.file("some/new/folder/game.defaults");
};

TEST_F(DefaultsStoreTest, MakesItsFileAndTheFoldersAbove) {
  DefaultsStore store(path);
  EXPECT_TRUE(std::filesystem::exists(path));
  EXPECT_TRUE(store.keys().empty());
}

TEST_F(DefaultsStoreTest, LeavesNothingElseBehindWhenItMadeItsFile) {
  {
    DefaultsStore store(path);
  }
  int files = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder.file("some/new/folder"))) {
    files += entry.is_regular_file() ? 1 : 0;
  }
  EXPECT_EQ(files, 1);
}

TEST_F(DefaultsStoreTest, FindsAtTheNextStartWhatWasStored) {
  makeFile();
  EXPECT_EQ(*DefaultsStore(path).object("kept"), *number(1));
}

TEST_F(DefaultsStoreTest, ForgetsWhatWasNotStored) {
  {
    DefaultsStore(path).set(number(1), "lost");
  }
  EXPECT_EQ(DefaultsStore(path).object("lost"), nullptr);
}

TEST_F(DefaultsStoreTest, StoresTheLastOfSeveralChanges) {
  DefaultsStore store(path);
  store.set(number(1), "key");
  store.set(nullptr, "key");
  store.set(number(3), "key");
  ASSERT_TRUE(store.synchronize());
  EXPECT_EQ(*DefaultsStore(path).object("key"), *number(3));
}

TEST_F(DefaultsStoreTest, TakesInWhatAnotherStoredWhenItSynchronizes) {
  DefaultsStore one(path);
  DefaultsStore other(path);
  one.set(number(1), "one");
  ASSERT_TRUE(one.synchronize());
  EXPECT_EQ(other.object("one"), nullptr);
  ASSERT_TRUE(other.synchronize());
  EXPECT_EQ(*other.object("one"), *number(1));
}

TEST_F(DefaultsStoreTest, TakesInARemovalToo) {
  makeFile();
  DefaultsStore one(path);
  DefaultsStore other(path);
  one.set(nullptr, "kept");
  ASSERT_TRUE(one.synchronize());
  ASSERT_TRUE(other.synchronize());
  EXPECT_EQ(other.object("kept"), nullptr);
}

TEST_F(DefaultsStoreTest, TheLastWriterOfAKeyWins) {
  DefaultsStore one(path);
  DefaultsStore other(path);
  one.set(number(1), "key");
  other.set(number(2), "key");
  ASSERT_TRUE(one.synchronize());
  ASSERT_TRUE(other.synchronize());
  ASSERT_TRUE(one.synchronize());
  EXPECT_EQ(*one.object("key"), *number(2));
  EXPECT_EQ(*other.object("key"), *number(2));
}

TEST_F(DefaultsStoreTest, KeepsChangesOfSeveralWritersToSeveralKeys) {
  DefaultsStore one(path);
  DefaultsStore other(path);
  one.set(number(1), "one");
  other.set(number(2), "other");
  ASSERT_TRUE(one.synchronize());
  ASSERT_TRUE(other.synchronize());
  EXPECT_EQ(DefaultsStore(path).keys(), (std::vector<std::string>{"one", "other"}));
}

TEST_F(DefaultsStoreTest, LeavesAForeignTextAlone) {
  std::filesystem::create_directories(folder.file("some/new/folder"));
  tests::write(path, std::string(500, 'x'));
  EXPECT_EQ(complaint(),
            path + ": is no file of user defaults. The user defaults are kept in memory.\n");
}

TEST_F(DefaultsStoreTest, LeavesAnEmptyFileAlone) {
  std::filesystem::create_directories(folder.file("some/new/folder"));
  tests::write(path, "");
  EXPECT_EQ(complaint(),
            path + ": is no file of user defaults. The user defaults are kept in memory.\n");
}

TEST_F(DefaultsStoreTest, LeavesADatabaseOfOthersAlone) {
  std::filesystem::create_directories(folder.file("some/new/folder"));
  execute("CREATE TABLE defaults (key TEXT PRIMARY KEY NOT NULL, kind TEXT NOT NULL, value)");
  EXPECT_EQ(complaint(),
            path + ": is no file of user defaults. The user defaults are kept in memory.\n");
}

TEST_F(DefaultsStoreTest, LeavesAFileOfANewerVersionAlone) {
  makeFile();
  execute("PRAGMA user_version = 2");
  EXPECT_EQ(complaint(),
            path + ": was written by a newer version. The user defaults are kept in memory.\n");
}

TEST_F(DefaultsStoreTest, LeavesATruncatedFileAlone) {
  makeFile();
  tests::write(path, bytesOf(path).substr(0, 5000));
  EXPECT_NE(complaint().find(path), std::string::npos);
}

TEST_F(DefaultsStoreTest, LeavesAFileWithADamagedPageAlone) {
  makeFile();
  auto bytes = bytesOf(path);
  for (std::size_t at = 4096; at < 4196; ++at) bytes[at] = '\xAA';
  tests::write(path, bytes);
  EXPECT_NE(complaint().find(path), std::string::npos);
}

TEST_F(DefaultsStoreTest, LeavesAFileWithoutItsTableAlone) {
  makeFile();
  execute("DROP TABLE defaults");
  EXPECT_NE(complaint().find("no such table"), std::string::npos);
}

TEST_F(DefaultsStoreTest, LeavesAFileWithValuesOfNoKindAlone) {
  for (const auto* const row :
       {"('odd', 'colour', 1)", "('odd', 'integer', 'one')", "('odd', 'data', 'text')",
        "('odd', 'text', 1)", "('odd', 'date', 'today')", "('odd', 'boolean', 0.5)",
        "('odd', 'list', '[1]')", "('odd', 'list', '{\"map\":{}}')", "('odd', 'map', 'x')",
        "('odd', 'list', '{\"list\":[{\"integer\":1,\"text\":\"\"}]}')",
        "('odd', 'list', '{\"list\":[{\"floating\":\"many\"}]}')"}) {
    makeFile();
    execute(("INSERT INTO defaults VALUES " + std::string(row)).c_str());
    EXPECT_NE(complaint().find("is damaged: the value of odd"), std::string::npos) << row;
    std::filesystem::remove_all(folder.file("some"));
  }
}

TEST_F(DefaultsStoreTest, WorksInMemoryWhereNoFileCanBe) {
  std::filesystem::create_directories(path);
  tests::CapturedError error;
  DefaultsStore store(path);
  store.set(number(1), "key");
  EXPECT_FALSE(store.synchronize());
  EXPECT_EQ(*store.object("key"), *number(1));
  EXPECT_NE(error.text().find(path + ": "), std::string::npos);
}

TEST_F(DefaultsStoreTest, WorksInMemoryWhereNoFolderCanBe) {
  tests::write(folder.file("some"), "a file");
  tests::CapturedError error;
  DefaultsStore store(path);
  store.set(number(1), "key");
  EXPECT_EQ(*store.object("key"), *number(1));
  EXPECT_NE(error.text().find("its folder can't be made"), std::string::npos);
}

TEST_F(DefaultsStoreTest, WorksInMemoryWithoutAFolder) {
  tests::CapturedError error;
  DefaultsStore store(std::nullopt);
  EXPECT_FALSE(store.synchronize());
  EXPECT_EQ(error.text(),
            "No folder is named for the user defaults. The user defaults are kept in memory.\n");
}

TEST_F(DefaultsStoreTest, TriesAgainWhatCouldNotBeStored) {
  DefaultsStore store(path);
  execute("ALTER TABLE defaults RENAME TO hidden");
  store.set(number(1), "key");
  store.set(number(1), "other");
  tests::CapturedError error;
  EXPECT_FALSE(store.synchronize());
  EXPECT_FALSE(store.synchronize());
  store.set(number(2), "key");
  execute("ALTER TABLE hidden RENAME TO defaults");
  EXPECT_TRUE(store.synchronize());
  EXPECT_EQ(*DefaultsStore(path).object("key"), *number(2));
  EXPECT_EQ(*DefaultsStore(path).object("other"), *number(1));
  const auto said = error.text();
  EXPECT_EQ(said.find("no such table"), said.rfind("no such table"));
}

TEST_F(DefaultsStoreTest, StoresAllChangesOfOneSynchronizeOrNone) {
  makeFile();
  execute(
      "CREATE TRIGGER refuse BEFORE INSERT ON defaults WHEN NEW.key = 'z'"
      " BEGIN SELECT RAISE(ABORT, 'refused'); END");
  DefaultsStore store(path);
  store.set(number(1), "a");
  store.set(number(1), "z");
  tests::CapturedError error;
  EXPECT_FALSE(store.synchronize());
  EXPECT_EQ(DefaultsStore(path).keys(), std::vector<std::string>{"kept"});
  EXPECT_NE(error.text().find("refused"), std::string::npos);
}

TEST_F(DefaultsStoreTest, KeepsAListAsReadableText) {
  DefaultsStore store(path);
  store.set(std::make_shared<const DefaultsObject>(
                DefaultsObject::list({DefaultsObject::integer(1), DefaultsObject::text("one")})),
            "list");
  ASSERT_TRUE(store.synchronize());
  SqliteDatabase database(path, SQLITE_OPEN_READWRITE);
  detail::SqliteStatement row(database, "SELECT kind, value FROM defaults WHERE key = 'list'");
  ASSERT_TRUE(row.next());
  EXPECT_EQ(row.text(0), "list");
  EXPECT_EQ(row.text(1), R"({"list":[{"integer":1},{"text":"one"}]})");
}

}  // namespace
}  // namespace Foundation
