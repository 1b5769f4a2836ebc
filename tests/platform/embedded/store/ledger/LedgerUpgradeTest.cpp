// Ledgers of the earlier versions of the tables become ledgers of this one, in place.

#include "platform/embedded/store/ledger/LedgerFile.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"
#include "tests/platform/embedded/store/ledger/WatchedDisk.hpp"

namespace tests {
namespace {

using Foundation::detail::SqliteDatabase;
using Foundation::detail::SqliteError;
using Foundation::detail::SqliteStatement;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr const char* kTables = R"(
PRAGMA synchronous = OFF;  -- the test makes many of them
CREATE TABLE entry(
  identifier INTEGER PRIMARY KEY AUTOINCREMENT, revision INTEGER NOT NULL, state INTEGER NOT NULL,
  finished INTEGER NOT NULL, owner INTEGER, product TEXT NOT NULL, quantity INTEGER NOT NULL,
  request_data BLOB, username TEXT, asks_to_buy INTEGER NOT NULL, discount TEXT,
  transaction_identifier TEXT, transaction_date REAL, error TEXT, original INTEGER);
CREATE INDEX unfinished ON entry(identifier) WHERE finished = 0;
CREATE INDEX purchases ON entry(identifier) WHERE finished = 1 AND state = 1;
CREATE INDEX revisions ON entry(revision);
CREATE TABLE counter(name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;
INSERT INTO counter VALUES('revision', 0), ('owner', 0);
PRAGMA application_id = 0x5451534C;
PRAGMA user_version = 1;
)";
constexpr const char* kRows = R"(
UPDATE counter SET value = 9 WHERE name = 'revision';
UPDATE counter SET value = 4 WHERE name = 'owner';
INSERT INTO entry VALUES
  (1, 2, 1, 1, NULL, 'crown', 1, NULL, 'ann', 0, NULL, '2000000001', 1000.5, NULL, NULL),
  (2, 4, 3, 0, NULL, 'crown', 1, NULL, 'ann', 0, NULL, '2000000002', 1001.0, NULL, 1),
  (3, 5, 2, 0, NULL, 'gems', 7, x'00FF', '', 1, NULL, NULL, NULL,
   '{"code":2,"domain":"SKErrorDomain","userInfo":{"NSLocalizedDescription":"why"}}', NULL),
  (4, 8, 0, 0, 3, 'coins', 1, NULL, NULL, 0,
   '{"identifier":"offer","keyIdentifier":"key","nonce":"n","signature":"s","timestamp":5}',
   NULL, NULL, NULL, NULL),
  (6, 9, 1, 0, NULL, 'cape', 1, NULL, NULL, 0, NULL, '2000000006', 1002.0, NULL, NULL);
)";

constexpr const char* kSecondVersion = R"(
ALTER TABLE entry ADD COLUMN cancel_date REAL;
ALTER TABLE entry ADD COLUMN refund_revision INTEGER;
ALTER TABLE entry ADD COLUMN issue INTEGER NOT NULL DEFAULT 0;
ALTER TABLE entry ADD COLUMN asks_application INTEGER NOT NULL DEFAULT 0;
ALTER TABLE entry ADD COLUMN deleted INTEGER NOT NULL DEFAULT 0;
ALTER TABLE entry ADD COLUMN subscription_group TEXT;
ALTER TABLE entry ADD COLUMN running INTEGER NOT NULL DEFAULT 0;
ALTER TABLE entry ADD COLUMN period TEXT;
CREATE INDEX periods ON entry(subscription_group) WHERE subscription_group IS NOT NULL;
CREATE INDEX running ON entry(identifier) WHERE running = 1;
CREATE INDEX refunds ON entry(refund_revision) WHERE refund_revision IS NOT NULL;
CREATE TABLE setting(name TEXT PRIMARY KEY, value TEXT NOT NULL) WITHOUT ROWID;
INSERT INTO setting VALUES('locale', 'de_DE');
INSERT INTO counter VALUES('settings', 12), ('told_refunds', 4);
UPDATE counter SET value = 12 WHERE name = 'revision';
UPDATE entry SET cancel_date = 2000, refund_revision = 4 WHERE identifier = 1;
UPDATE entry SET cancel_date = 2000, refund_revision = 9 WHERE identifier = 6;
PRAGMA user_version = 2;
)";

class LedgerUpgrade : public LedgerInFolder {
 protected:
  // As an ended program left it.
  void makeVersion1() const {
    SqliteDatabase database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    database.execute(kTables);
    database.useWriteAheadLog();
    database.execute(kRows);
  }
  void makeVersion2() const {
    makeVersion1();
    executeOnFile(kSecondVersion);
  }
  // As a killed program left it: what it wrote is in the log only.
  void makeVersion1InTheLog() const {
    EXPECT_EQ(inChild([this] {
                SqliteDatabase database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
                database.execute(kTables);
                database.useWriteAheadLog();
                database.execute(kRows);
                std::_Exit(0);
                return 1;
              }),
              0);
    ASSERT_FALSE(bytesOf(path + "-wal").empty());
  }

  [[nodiscard]] std::int64_t versionOfFile() const {
    SqliteDatabase database(path, SQLITE_OPEN_READWRITE);
    SqliteStatement statement(database, "PRAGMA user_version");
    return statement.next() ? statement.integer(0) : -1;
  }

  static void expectContent(const Ledger& ledger) {
    const auto all = ledger.all();
    ASSERT_THAT(products(all), ElementsAre("crown", "crown", "gems", "coins", "cape"));
    EXPECT_EQ(all[0].state, State::purchased);
    EXPECT_TRUE(all[0].finished);
    EXPECT_EQ(all[0].transactionIdentifier, "2000000001");
    EXPECT_EQ(all[0].transactionDate, Foundation::Date::sinceEpoch(1000.5));
    EXPECT_EQ(all[0].payment.applicationUsername, "ann");
    EXPECT_EQ(all[1].original, 1);
    EXPECT_EQ(all[2].payment.quantity, 7);
    EXPECT_EQ(all[2].payment.requestData, (std::vector{std::byte{0}, std::byte{255}}));
    EXPECT_TRUE(all[2].payment.simulatesAskToBuyInSandbox);
    EXPECT_EQ(all[2].error->localizedDescription(), "why");
    EXPECT_EQ(all[3].owner, 3);
    EXPECT_EQ(all[3].payment.paymentDiscount->identifier, "offer");
    EXPECT_EQ(all[4].identifier, 6);
    EXPECT_EQ(all[4].revision, 9);
    for (const auto& each : all) {
      EXPECT_FALSE(each.cancelDate || each.refundRevision || each.period);
      EXPECT_FALSE(each.hasPurchaseIssue || each.asksApplication || each.deleted);
    }
  }
};

TEST_F(LedgerUpgrade, KeepsEverything) {
  makeVersion1();
  const auto ledger = openLedger(path);
  expectContent(*ledger);
  EXPECT_EQ(ledger->revision(), 9);
  EXPECT_EQ(ledger->owner(), 5);
}

TEST_F(LedgerUpgrade, IsThereForTheNextProgram) {
  makeVersion1();
  openLedger(path).reset();
  EXPECT_EQ(versionOfFile(), StoreKit::detail::kLedgerVersion);
  EXPECT_THAT(filesInFolder(), ElementsAre("shop.ledger"));
  expectContent(*openLedger(path));
}

TEST_F(LedgerUpgrade, OfWhatIsOnlyInTheLogKeepsEverything) {
  makeVersion1InTheLog();
  expectContent(*openLedger(path));
}

TEST_F(LedgerUpgrade, LetsEverythingNewBeWritten) {
  makeVersion1();
  const auto ledger = openLedger(path);
  auto entries = LedgerEntries{*ledger->find(6), entry("club")};
  entries[0].cancelDate = Foundation::Date::sinceEpoch(2000);
  entries[1].period = {.group = "readers", .ends = Foundation::Date::sinceEpoch(3000)};
  EXPECT_FALSE(ledger->replace(entries, Ledger::Durability::powerCut).error);
  EXPECT_FALSE(ledger->set("locale", "de_DE"));
  EXPECT_EQ(entries[1].identifier, 7);
  EXPECT_THAT(products(ledger->untoldRefunds()), ElementsAre("cape"));
  EXPECT_THAT(products(ledger->runningPeriods()), ElementsAre("club"));
  EXPECT_THAT(ledger->settings(), ElementsAre(testing::Pair("locale", "de_DE")));
}

TEST_F(LedgerUpgrade, HasNoRefundToTellAndNoSettings) {
  makeVersion1();
  const auto ledger = openLedger(path);
  EXPECT_THAT(ledger->untoldRefunds(), IsEmpty());
  EXPECT_THAT(ledger->runningPeriods(), IsEmpty());
  EXPECT_THAT(ledger->settings(), IsEmpty());
  EXPECT_EQ(ledger->settingsRevision(), 0);
}

TEST_F(LedgerUpgrade, OfTheSecondVersionKeepsEverything) {
  makeVersion2();
  auto ledger = openLedger(path);
  EXPECT_THAT(products(ledger->all()), ElementsAre("crown", "crown", "gems", "coins", "cape"));
  EXPECT_THAT(ledger->settings(), ElementsAre(testing::Pair("locale", "de_DE")));
  EXPECT_THAT(products(ledger->untoldRefunds()), ElementsAre("cape"));
  EXPECT_EQ(ledger->owner(), 5);
  ledger.reset();
  EXPECT_EQ(versionOfFile(), StoreKit::detail::kLedgerVersion);
}

TEST_F(LedgerUpgrade, OfTheSecondVersionGoesOnCountingChanges) {
  makeVersion2();
  const auto ledger = openLedger(path);
  EXPECT_EQ(ledger->revision(), 12);
  EXPECT_EQ(ledger->settingsRevision(), 12);
  EXPECT_EQ(addTo(*ledger, {entry("hat")})[0].revision, 13);
  EXPECT_EQ(ledger->revision(), 13);
}

// It would go on without numbers that the others count by.
TEST_F(LedgerUpgrade, IsNotWrittenToByAProgramOfTheSecondVersionThatHasItOpen) {
  makeVersion2();
  SqliteDatabase older(path, SQLITE_OPEN_READWRITE);
  SqliteStatement raise(older, "UPDATE counter SET value = value + 1 WHERE name = 'revision'");
  const auto ledger = openLedger(path);
  EXPECT_THROW(raise.run(), SqliteError);
}

TEST_F(LedgerUpgrade, OfOrphansLetsThemBeAdopted) {
  makeVersion1();
  const auto ledger = openLedger(path);
  EXPECT_FALSE(ledger->adoptOrphans());
  EXPECT_EQ(ledger->find(4)->owner, ledger->owner());
}

TEST_F(LedgerUpgrade, ByTwoProgramsAtOnceHappensOnce) {
  for (int round = 0; round < 20; ++round) {
    makeVersion1();
    ChildProgram first({LEDGER_NEIGHBOUR, path});
    ChildProgram second({LEDGER_NEIGHBOUR, path});
    first.order("add hat");
    second.order("add coat");
    EXPECT_THAT((std::vector{first.line(), second.line()}), UnorderedElementsAre("7", "8"));
    EXPECT_EQ(first.ask("states"), "1f320111");
    first.end(0);
    second.end(0);
    EXPECT_EQ(versionOfFile(), StoreKit::detail::kLedgerVersion);
    std::filesystem::remove(path);
  }
}

TEST_F(LedgerUpgrade, OfAFileThatIsDamagedIsRefused) {
  makeVersion1();
  executeOnFile("DROP TABLE counter");
  EXPECT_FALSE(SqliteLedger::open(path).ledger);
  EXPECT_EQ(versionOfFile(), 1);
}

// Opens the ledger in a copy of this process, which dies before the disk operation of that number.
// True when it did not have to die.
bool upgradeUntil(const std::string& path, int operation) {
  return inChild([&] {
           int left = operation;
           WatchedDisk::install([&](WatchedDisk::Operation, bool) {
             if (left-- == 0) std::_Exit(1);
           });
           openLedger(path).reset();
           return 0;
         }) == 0;
}

TEST_F(LedgerUpgrade, ThatIsKilledAtAnyMomentIsDoneByTheNextProgram) {
  int operation = 0;
  for (bool alive = false; !alive; ++operation) {
    makeVersion1();
    alive = upgradeUntil(path, operation);
    SCOPED_TRACE("killed at " + std::to_string(operation));
    auto opening = SqliteLedger::open(path);
    ASSERT_TRUE(opening.ledger) << opening.error;
    expectContent(*opening.ledger);
    opening.ledger.reset();
    EXPECT_EQ(versionOfFile(), StoreKit::detail::kLedgerVersion);
    for (const auto& file : filesInFolder()) std::filesystem::remove(folder.file(file));
  }
  EXPECT_LT(10, operation);
}

TEST_F(LedgerUpgrade, ThatIsKilledAtAnyMomentKeepsWhatIsOnlyInTheLog) {
  for (int operation = 0; operation < 12; ++operation) {
    makeVersion1InTheLog();
    (void)upgradeUntil(path, operation);
    SCOPED_TRACE("killed at " + std::to_string(operation));
    expectContent(*openLedger(path));
    for (const auto& file : filesInFolder()) std::filesystem::remove(folder.file(file));
  }
}

}  // namespace
}  // namespace tests
