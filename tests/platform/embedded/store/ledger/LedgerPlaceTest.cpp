#include "platform/embedded/store/ledger/LedgerPlace.hpp"

#include <gmock/gmock.h>

#include <cstdlib>

#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace tests {
namespace {

using StoreKit::ledgerPathFor;
using testing::EndsWith;
using testing::StartsWith;

// Each test has a process of its own.
class LedgerPlace : public testing::Test {
 protected:
  LedgerPlace() {
    for (const char* name : {"TQSTORE_LEDGER", "XDG_STATE_HOME", "HOME"}) ::unsetenv(name);
  }
  static void set(const char* name, const std::string& value) { ::setenv(name, value.c_str(), 1); }

  TemporaryFolder folder;
};

TEST_F(LedgerPlace, IsWhatTheEnvironmentNames) {
  set("XDG_STATE_HOME", folder.path());
  set("TQSTORE_LEDGER", "any where.ledger");

  EXPECT_EQ(ledgerPathFor("shop.storekit"), "any where.ledger");
}

TEST_F(LedgerPlace, IsInTheStateFolder) {
  set("XDG_STATE_HOME", folder.path());
  set("HOME", "/nowhere");

  const auto path = ledgerPathFor("/a/shop.storekit");

  EXPECT_THAT(path, StartsWith(folder.path() + "/tqstore/shop-"));
  EXPECT_THAT(path, EndsWith(".ledger"));
  EXPECT_TRUE(std::filesystem::is_directory(folder.path() + "/tqstore"));
}

TEST_F(LedgerPlace, IsInTheHomeFolderWithoutAStateFolder) {
  set("HOME", folder.path());

  EXPECT_THAT(ledgerPathFor("/a/shop.storekit"),
              StartsWith(folder.path() + "/.local/state/tqstore/shop-"));
  EXPECT_TRUE(std::filesystem::is_directory(folder.path() + "/.local/state/tqstore"));
}

TEST_F(LedgerPlace, EmptyVariablesAreAsGoodAsNone) {
  set("TQSTORE_LEDGER", "");
  set("XDG_STATE_HOME", "");
  set("HOME", folder.path());

  EXPECT_THAT(ledgerPathFor("/a/shop.storekit"), StartsWith(folder.path() + "/.local/state/"));
}

TEST_F(LedgerPlace, IsMemoryWithoutAHomeAndSaysSo) {
  CapturedError error;

  EXPECT_EQ(ledgerPathFor("/a/b.storekit"), ":memory:");

  EXPECT_EQ(error.text(),
            "Neither HOME nor XDG_STATE_HOME names a folder by its full path: the transactions and "
            "settings are in memory, and gone with this program.\n");
}

TEST_F(LedgerPlace, IsInNoFolderThatTheCurrentOneWouldChoose) {
  std::filesystem::current_path(folder.path());
  set("XDG_STATE_HOME", "state");
  set("HOME", "home");

  EXPECT_EQ(ledgerPathFor("/a/b.storekit"), ":memory:");
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(LedgerPlace, EachConfigurationHasOneOfItsOwn) {
  set("HOME", folder.path());

  EXPECT_NE(ledgerPathFor("/a/shop.storekit"), ledgerPathFor("/b/shop.storekit"));
}

TEST_F(LedgerPlace, IsTheSameByWhateverNameTheConfigurationIsOpened) {
  set("HOME", folder.path());
  write(folder.file("shop.storekit"), "");
  std::filesystem::create_symlink("shop.storekit", folder.file("link.storekit"));
  const auto path = ledgerPathFor(folder.file("shop.storekit"));

  EXPECT_EQ(ledgerPathFor(folder.file("./x/../shop.storekit")), path);
  EXPECT_EQ(ledgerPathFor(folder.file("link.storekit")), path);
}

// A ledger must be found again after an update of the program.
TEST_F(LedgerPlace, TheNameNeverChanges) {
  set("XDG_STATE_HOME", folder.path());

  EXPECT_EQ(ledgerPathFor("/nowhere/shop.storekit"),
            folder.path() + "/tqstore/shop-f3c70e792443576a.ledger");
}

}  // namespace
}  // namespace tests
