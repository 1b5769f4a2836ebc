#include "platform/embedded/store/ledger/LedgerFile.hpp"

#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"

namespace tests {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

using LedgerFile = LedgerInFolder;

TEST_F(LedgerFile, IsMadeWhenItIsMissing) {
  makeLedger();

  EXPECT_THAT(bytesOf(path), StartsWith("SQLite format 3"));
  EXPECT_THAT(bytesOf(path).substr(68, 4), "TQSL");
}

TEST_F(LedgerFile, IsMadeOutOfAnEmptyFile) {
  write(path, "");

  EXPECT_THAT(openLedger(path)->all(), IsEmpty());
}

TEST_F(LedgerFile, IsTheOnlyFileThatAnEndedProgramLeaves) {
  makeLedger();

  EXPECT_THAT(filesInFolder(), ElementsAre("shop.ledger"));
}

TEST_F(LedgerFile, HoldsEverythingWhenItIsOpenedAgain) {
  auto whole = entry("gems", State::failed);
  whole.payment.quantity = 7;
  whole.payment.applicationUsername = "ann";
  whole.transactionDate = Foundation::Date::sinceEpoch(1234567.0625);
  whole.error = Foundation::NSError::withDescription("Domain", 12, "why");
  const auto added = addTo(*openLedger(path), {whole, entry("coins")});

  const auto kept = openLedger(path)->all();

  ASSERT_THAT(products(kept), ElementsAre("gems", "coins"));
  EXPECT_EQ(kept[0].identifier, added[0].identifier);
  EXPECT_EQ(kept[0].revision, added[0].revision);
  EXPECT_EQ(kept[0].state, State::failed);
  EXPECT_EQ(kept[0].payment.quantity, 7);
  EXPECT_EQ(kept[0].payment.applicationUsername, "ann");
  EXPECT_EQ(kept[0].transactionDate, whole.transactionDate);
  EXPECT_EQ(kept[0].error->localizedDescription(), "why");
}

TEST_F(LedgerFile, NeverGivesANumberTwice) {
  const auto first = addTo(*openLedger(path), {entry("gems")});
  executeOnFile("DELETE FROM entry");

  EXPECT_LT(first[0].identifier, addTo(*openLedger(path), {entry("gems")})[0].identifier);
}

// What closes a file takes the locks of its whole process off it.
TEST_F(LedgerFile, OpenedTwiceStaysLockedAgainstTheEndOfAnotherProgram) {
  const auto first = openLedger(path);
  const auto second = openLedger(path);
  ChildProgram other({LEDGER_NEIGHBOUR, path});
  EXPECT_EQ(other.ask("states"), "");
  other.end(0);
  EXPECT_TRUE(std::filesystem::exists(path + "-wal"));

  addTo(*second, {entry("gems")});

  ChildProgram another({LEDGER_NEIGHBOUR, path});
  EXPECT_EQ(another.ask("states"), "1");
  another.end(0);
}

TEST_F(LedgerFile, OfGarbageIsRefused) {
  std::string garbage;
  for (int i = 0; i < 5000; ++i) garbage += static_cast<char>(i * 37 + i / 256);
  write(path, garbage);

  expectRefused("is not a ledger");
}

TEST_F(LedgerFile, OfTextIsRefused) {
  write(path, "Dear diary,\n");

  expectRefused("is not a ledger");
}

TEST_F(LedgerFile, OfSomebodyElseIsRefused) {
  executeOnFile("PRAGMA application_id = 7; CREATE TABLE entry(identifier)");

  expectRefused("is not a ledger");
}

TEST_F(LedgerFile, OfANewerVersionIsRefused) {
  makeLedger();
  executeOnFile("PRAGMA user_version = 4");

  expectRefused(
      "is a ledger of version 4, written by a newer program; this one reads up to version 3");
}

TEST_F(LedgerFile, OfAVersionThatIsNewerOnlyInItsLogIsRefused) {
  makeLedger();
  EXPECT_EQ(inChild([this] {
              Foundation::detail::SqliteDatabase newer(path, SQLITE_OPEN_READWRITE);
              newer.execute("PRAGMA user_version = 4");
              std::_Exit(0);
              return 1;
            }),
            0);
  const auto log = bytesOf(path + "-wal");
  ASSERT_FALSE(log.empty());
  const auto before = bytesOf(path);

  EXPECT_THAT(SqliteLedger::open(path).error, HasSubstr("is a ledger of version 4"));

  EXPECT_EQ(bytesOf(path), before);
  EXPECT_EQ(bytesOf(path + "-wal"), log);
}

TEST_F(LedgerFile, CutShortIsRefused) {
  makeLedger();
  const auto whole = bytesOf(path);
  for (const std::size_t length : {1U, 50U, 99U, 100U, 512U, 1023U, 1024U, 8192U, 12000U}) {
    ASSERT_LT(length, whole.size());
    write(path, whole.substr(0, length));
    expectRefused(length < 100 ? "is not a ledger" : "was cut short: it has ");
  }
  write(path, whole.substr(0, whole.size() - 1));
  expectRefused("was cut short: it has ");
}

TEST_F(LedgerFile, WithoutANameIsRefused) {
  EXPECT_EQ(SqliteLedger::open("").error, "ledger: has no name");
}

TEST_F(LedgerFile, ThatIsAFolderIsRefused) {
  std::filesystem::create_directory(path);

  EXPECT_EQ(SqliteLedger::open(path).error, path + ": is not a file");

  EXPECT_TRUE(std::filesystem::is_empty(path));
}

TEST_F(LedgerFile, InAFolderThatIsMissingIsRefused) {
  const auto missing = folder.file("no/shop.ledger");

  EXPECT_THAT(SqliteLedger::open(missing).error, AllOf(StartsWith(missing), HasSubstr("open")));

  EXPECT_THAT(filesInFolder(), IsEmpty());
}

}  // namespace
}  // namespace tests
