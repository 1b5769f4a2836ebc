// What the ledger's own thread does with the write-ahead log.

#include <gmock/gmock.h>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/DiskOfWatcher.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"

namespace tests {
namespace {

using namespace std::chrono_literals;
using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteStatement;
using testing::ElementsAre;

class LedgerLog : public testing::Test {
 protected:
  void SetUp() override {
    ledger->watch([] {});
    ASSERT_TRUE(disk.emptied.reach(1, 10s));
  }

  // What is in the file without its log.
  std::vector<std::string> productsInFile() const {
    const auto copy = folder.file("copy.ledger");
    std::filesystem::copy_file(path, copy, std::filesystem::copy_options::overwrite_existing);
    return products(openLedger(copy)->all());
  }

  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
  DiskOfWatcher disk;
  std::unique_ptr<SqliteLedger> ledger = openLedger(path);
};

TEST_F(LedgerLog, IsBroughtIntoTheFileEachTimeThatNothingHappens) {
  for (const auto* product : {"gems", "coins"}) {
    addTo(*ledger, {entry(product)});
    ASSERT_TRUE(disk.emptied.reachMore(1, 10s));
    EXPECT_EQ(productsInFile(), products(ledger->all()));
  }
}

TEST_F(LedgerLog, IsEmptiedOnceTheFileIsOnTheDisk) {
  addTo(*ledger, {entry("gems")}, Ledger::Durability::killedProcess);
  ASSERT_TRUE(disk.emptied.reachMore(1, 10s));
  EXPECT_THAT(disk.askedOfEmptying(),
              ElementsAre("wait for log", "write file", "cut file", "wait for file", "cut log"));
}

// It goes on looking, and others write.
TEST_F(LedgerLog, IsNotWaitedForWhileSomebodyReadsIt) {
  addTo(*ledger, {entry("gems")});
  SqliteDatabase other(path, SQLITE_OPEN_READWRITE);
  SqliteStatement reading(other, "SELECT * FROM entry");
  ASSERT_TRUE(reading.next());
  const auto emptiedBefore = disk.emptied.value();

  EXPECT_TRUE(disk.looks.reachMore(40, 8s));

  EXPECT_EQ(disk.emptied.value(), emptiedBefore);
  const auto begin = std::chrono::steady_clock::now();
  addTo(*ledger, {entry("coins")});
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
}

TEST_F(LedgerLog, ThatIsNeverIdleDoesNotGrowWithoutEnd) {
  const LedgerEntries batch(200, entry("gems"));
  std::uintmax_t longest = 0;

  for (int i = 0; i < 600; ++i) {  // 37 MiB in all
    addTo(*ledger, batch);
    longest = std::max(longest, std::filesystem::file_size(path + "-wal"));
  }

  EXPECT_LT(longest, 20U << 20U);
}

}  // namespace
}  // namespace tests
