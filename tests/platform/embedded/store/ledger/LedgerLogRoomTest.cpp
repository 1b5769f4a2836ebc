// The write-ahead log is ready before a purchase comes: it has begun, and there is room in it.

#include <gmock/gmock.h>

#include <atomic>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/DiskOfWatcher.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"

namespace tests {
namespace {

using namespace std::chrono_literals;
using Durability = Ledger::Durability;
using Operation = WatchedDisk::Operation;

constexpr std::uintmax_t kRoom = 256 << 10;

class LedgerLogRoom : public testing::Test {
 protected:
  // From the begin to the finish.
  static void buy(SqliteLedger& ledger) {
    auto entries = addTo(ledger, {entry("gems", State::purchasing)}, Durability::killedProcess);
    entries[0].state = State::purchased;
    EXPECT_FALSE(ledger.update(entries, Durability::powerCut));
    entries[0].finished = true;
    EXPECT_FALSE(ledger.update(entries, Durability::killedProcess));
  }

  [[nodiscard]] std::uintmax_t sizeOfLog() const {
    return std::filesystem::file_size(path + "-wal");
  }

  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
};

TEST_F(LedgerLogRoom, IsThereWhenTheLedgerIsOpened) {
  const auto ledger = openLedger(path);
  EXPECT_EQ(sizeOfLog(), kRoom);

  buy(*ledger);

  EXPECT_EQ(sizeOfLog(), kRoom);
}

TEST_F(LedgerLogRoom, IsLaidOutAgainBeforeItIsUsedUp) {
  const auto ledger = openLedger(path);
  for (int i = 0; i < 100; ++i) {
    buy(*ledger);
    ASSERT_EQ(sizeOfLog() % kRoom, 0U) << "after purchase " << i;
  }
  EXPECT_LT(kRoom, sizeOfLog());
}

TEST_F(LedgerLogRoom, IsLaidOutOnceForAllPrograms) {
  const auto first = openLedger(path);
  const auto second = openLedger(path);
  EXPECT_EQ(sizeOfLog(), kRoom);
}

TEST_F(LedgerLogRoom, IsNotInTheWayOfAnotherProgram) {
  const auto first = openLedger(path);
  const auto second = openLedger(path);
  for (int i = 0; i < 50; ++i) {
    buy(*first);
    buy(*second);
  }
  EXPECT_EQ(first->all().size(), 100U);
  EXPECT_EQ(second->all().size(), 100U);
}

// Begins when the ledger's own thread has emptied the log and made it ready again.
class IdleLedger : public LedgerLogRoom {
 protected:
  void SetUp() override {
    WatchedDisk::install([this](Operation operation, bool log) {
      const bool waits = operation == Operation::sync && log;
      if (std::this_thread::get_id() == main) {
        waitsHere += waits ? 1 : 0;
      } else if (log && operation == Operation::truncate) {
        emptied = true;
      } else if (emptied) {
        if (!waits && waitsAfterwards.value() == 0) writesTooEarly = true;
        if (waits) waitsAfterwards.count();
      }
    });
    ledger = openLedger(path);
    ledger->watch([] {});
    ASSERT_TRUE(waitsAfterwards.reach(3, 10s));
  }
  void TearDown() override {
    ledger.reset();
    WatchedDisk::install(nullptr);
  }

  const std::thread::id main = std::this_thread::get_id();
  std::atomic<bool> emptied = false;
  std::atomic<bool> writesTooEarly = false;
  Counter waitsAfterwards;
  std::atomic<int> waitsHere = 0;
  std::unique_ptr<SqliteLedger> ledger;
};

TEST_F(IdleLedger, LetsAPurchaseWaitForTheDiskOnce) {
  waitsHere = 0;
  buy(*ledger);
  EXPECT_EQ(waitsHere, 1);
}

// A power cut must not leave the zeros in the midst of what was cut off.
TEST_F(IdleLedger, HasWaitedForTheCutBeforeItMadeRoom) { EXPECT_FALSE(writesTooEarly); }

TEST_F(IdleLedger, HasRoomInItsLog) { EXPECT_EQ(sizeOfLog(), kRoom); }

// Making the log ready is a commit, which the others see.
TEST(LedgersOfTwoPrograms, MakeTheLogReadyOnceEach) {
  const TemporaryFolder folder;
  DiskOfWatcher disk;
  const auto first = openLedger(folder.file("shop.ledger"));
  const auto second = openLedger(folder.file("shop.ledger"));
  first->watch([] {});
  second->watch([] {});

  ASSERT_TRUE(disk.looks.reachMore(200, 30s));

  EXPECT_LE(disk.emptied.value(), 2);
  EXPECT_LE(1, disk.emptied.value());
}

}  // namespace
}  // namespace tests
