#include "platform/embedded/store/ledger/LedgerWatch.hpp"

#include <gmock/gmock.h>

#include <ctime>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/DiskOfWatcher.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"

namespace tests {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Foundation::detail::SqliteDatabase;

// Ten times what is promised, for machines that are busy with something else.
constexpr auto kLongEnough = 1s;

// How many entries the file has, for a thread that is not the ledger's.
int entriesIn(const std::string& path) {
  SqliteDatabase database(path, SQLITE_OPEN_READWRITE);
  Foundation::detail::SqliteStatement statement(database, "SELECT COUNT(*) FROM entry");
  return statement.next() ? static_cast<int>(statement.integer(0)) : 0;
}

class LedgerWatch : public testing::Test {
 protected:
  void SetUp() override {
    ledger->watch([this] {
      calls.count();
      seen.raiseTo(entriesIn(path));
    });
    ASSERT_TRUE(calls.reach(1, 10s));  // the first look is a change
  }

  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
  DiskOfWatcher disk;
  Counter calls;
  Counter seen;  // entries, by a look during a call
  std::unique_ptr<SqliteLedger> ledger = openLedger(path);
  ChildProgram neighbour{{LEDGER_NEIGHBOUR, path}};
};

TEST_F(LedgerWatch, TellsOfTheChangeOfAnotherProgramAtOnce) {
  auto fastest = Clock::duration::max();
  for (int i = 1; i <= 5; ++i) {
    ASSERT_EQ(neighbour.ask("add gems"), std::to_string(i));
    const auto begin = Clock::now();
    ASSERT_TRUE(seen.reach(i, kLongEnough));
    fastest = std::min(fastest, Clock::now() - begin);
  }
  EXPECT_LT(fastest, 100ms);
}

TEST_F(LedgerWatch, CostsNextToNothingWhileNothingHappens) {
  const auto begin = Clock::now();
  const auto processorBegin = std::clock();

  ASSERT_TRUE(disk.looks.reachMore(40, 30s));

  const auto worked = static_cast<double>(std::clock() - processorBegin) / CLOCKS_PER_SEC;
  const std::chrono::duration<double> passed = Clock::now() - begin;
  EXPECT_LT(worked, 0.05 * passed.count());
}

TEST_F(LedgerWatch, SaysNextToNothingWhileNothingHappens) {
  ASSERT_EQ(neighbour.ask("add gems"), "1");
  ASSERT_TRUE(seen.reach(1, 10s));
  const auto before = calls.value();

  ASSERT_TRUE(disk.looks.reachMore(60, 30s));

  EXPECT_LE(calls.value(), before + 2);  // it also brings the log into the file meanwhile
}

// Another watcher sees two changes; the second, at least a look later than the first.
TEST_F(LedgerWatch, EndsWithTheLedgerAndIsSilentThen) {
  const auto begin = Clock::now();

  ledger.reset();

  EXPECT_LT(Clock::now() - begin, kLongEnough);
  const auto before = calls.value();
  Counter seenByOther;
  const auto other = openLedger(path);
  other->watch([&] { seenByOther.raiseTo(entriesIn(path)); });
  for (int i = 1; i <= 2; ++i) {
    ASSERT_EQ(neighbour.ask("add gems"), std::to_string(i));
    ASSERT_TRUE(seenByOther.reach(i, 10s));
  }
  EXPECT_EQ(calls.value(), before);
}

class LedgerWatchInTrouble : public testing::Test {
 protected:
  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
  DiskOfWatcher disk;
  Counter calls;
};

TEST_F(LedgerWatchInTrouble, SaysSoOnceAndTriesAgainEachSecond) {
  CapturedError errors;
  const auto begin = Clock::now();
  {
    const StoreKit::detail::LedgerWatch watch(path, [this] { calls.count(); });
    ASSERT_TRUE(disk.opens.reach(3, 30s));
  }
  EXPECT_GE(Clock::now() - begin, 1900ms);
  const auto text = errors.text();
  const std::string complaint = "The ledger cannot be watched for now: ";
  EXPECT_THAT(text, testing::StartsWith(complaint + path));
  EXPECT_EQ(text.find(complaint, 1), std::string::npos);
  EXPECT_EQ(calls.value(), 0);
}

TEST_F(LedgerWatchInTrouble, WatchesOnceTheLedgerIsThere) {
  CapturedError errors;
  const StoreKit::detail::LedgerWatch watch(path, [this] { calls.count(); });
  ASSERT_TRUE(disk.opens.reach(2, 30s));  // the first was in vain
  (void)openLedger(path);
  EXPECT_TRUE(calls.reach(1, 30s));
}

}  // namespace
}  // namespace tests
