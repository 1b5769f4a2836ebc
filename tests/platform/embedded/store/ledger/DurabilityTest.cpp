// How often a purchase waits for the disk.

#include <gmock/gmock.h>

#include <functional>
#include <thread>

#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "tests/fakes/JournalingObserver.hpp"
#include "tests/fakes/MainQueueTurns.hpp"
#include "tests/fakes/ShopConfigurations.hpp"
#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"
#include "tests/platform/embedded/store/ledger/WatchedDisk.hpp"

namespace tests {
namespace {

using Operation = WatchedDisk::Operation;
using StoreKit::SKPayment;
using StoreKit::SKPaymentQueue;
using testing::ElementsAre;
using testing::IsEmpty;

class Durability : public testing::Test {
 protected:
  // The waits of this thread, by file; the ledger's own thread keeps nobody waiting.
  std::vector<std::string> waitsOf(const std::function<void()>& work) const {
    std::vector<std::string> waits;
    const auto here = std::this_thread::get_id();
    WatchedDisk::install([&](Operation operation, bool log) {
      if (operation != Operation::sync || std::this_thread::get_id() != here) return;
      waits.emplace_back(log ? "log" : "file");
    });
    work();
    WatchedDisk::install(nullptr);
    return waits;
  }

  static void buyAndFinish(int count) {
    auto& queue = SKPaymentQueue::defaultQueue();
    for (int i = 0; i < count; ++i) queue.addPayment(SKPayment({.productIdentifier = "gems"}));
    EXPECT_TRUE(turnUntilIdle());
    const auto bought = queue.transactions();
    EXPECT_EQ(bought.size(), static_cast<std::size_t>(count));
    for (const auto& transaction : bought) queue.finishTransaction(transaction);
    EXPECT_TRUE(turnUntilIdle());
    EXPECT_TRUE(queue.transactions().empty());
  }

  void openStore() {
    WatchedDisk::install(nullptr);  // before SQLite opens anything
    session.emplace(shop(), StoreKit::StoreSources(), openLedger(path));
    observer.observe();
    EXPECT_TRUE(turnUntilIdle());
  }

  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
  JournalingObserver observer;
  std::optional<StoreKit::StoreSession> session;
};

TEST_F(Durability, APurchaseInAFreshLedgerWaitsOnce) {
  openStore();

  EXPECT_THAT(waitsOf([] { buyAndFinish(1); }), ElementsAre("log"));
}

TEST_F(Durability, APurchaseInALedgerThatWasJustOpenedWaitsOnce) {
  WatchedDisk::install(nullptr);
  addTo(*openLedger(path), {entry("gems")});
  openStore();
  SKPaymentQueue::defaultQueue().finishTransaction(observer.seen.at(0));
  (void)turnUntilIdle();

  EXPECT_THAT(waitsOf([] { buyAndFinish(1); }), ElementsAre("log"));
}

TEST_F(Durability, APurchaseInALedgerThatAKilledProgramLeftWaitsOnce) {
  WatchedDisk::install(nullptr);
  EXPECT_EQ(inChild([this] {
              auto finished = entry("gems");
              finished.finished = true;
              const auto ledger = openLedger(path);
              addTo(*ledger, {finished});
              std::_Exit(0);  // without closing
              return 1;
            }),
            0);
  ASSERT_FALSE(bytesOf(path + "-wal").empty());
  openStore();

  EXPECT_THAT(waitsOf([] { buyAndFinish(1); }), ElementsAre("log"));
}

TEST_F(Durability, ASecondPurchaseWaitsOnceAgain) {
  openStore();
  buyAndFinish(1);

  EXPECT_THAT(waitsOf([] { buyAndFinish(1); }), ElementsAre("log"));
}

TEST_F(Durability, TenPurchasesOfOneTurnWaitOnce) {
  openStore();

  EXPECT_THAT(waitsOf([] { buyAndFinish(10); }), ElementsAre("log"));
}

TEST_F(Durability, TheBeginOfAPurchaseDoesNotWait) {
  openStore();

  EXPECT_THAT(waitsOf([] {
                SKPaymentQueue::defaultQueue().addPayment(SKPayment({.productIdentifier = "gems"}));
                turn();
              }),
              IsEmpty());
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems purchasing"));
}

TEST_F(Durability, TheOutcomeHasWaitedBeforeAnObserverHearsOfIt) {
  openStore();
  bool told = false;
  observer.onUpdated = [&](const auto& all) {
    told = all[0]->transactionState() == State::purchased;
  };
  std::vector<bool> toldAtWait;
  WatchedDisk::install([&](Operation operation, bool log) {
    if (operation == Operation::sync && log) toldAtWait.push_back(told);
  });
  SKPaymentQueue::defaultQueue().addPayment(SKPayment({.productIdentifier = "gems"}));
  (void)turnUntilIdle();
  WatchedDisk::install(nullptr);

  EXPECT_TRUE(told);
  EXPECT_THAT(toldAtWait, ElementsAre(false));
}

TEST_F(Durability, AnOutcomeWritesTheEntryAndTheIndexOfChangesAndNothingElse) {
  WatchedDisk::install(nullptr);
  const auto ledger = openLedger(path);
  auto entries = addTo(*ledger, {entry("gems", State::purchasing), entry("coins")});
  int writes = 0;
  WatchedDisk::install([&](Operation operation, bool) { writes += operation == Operation::write; });
  entries[0].state = State::purchased;
  EXPECT_FALSE(ledger->update(entries, Ledger::Durability::powerCut));
  WatchedDisk::install(nullptr);

  EXPECT_EQ(writes, 2 * 2);  // each page has a header in the log
}

TEST_F(Durability, AFinishDoesNotWait) {
  openStore();
  SKPaymentQueue::defaultQueue().addPayment(SKPayment({.productIdentifier = "gems"}));
  (void)turnUntilIdle();

  EXPECT_THAT(waitsOf([] {
                auto& queue = SKPaymentQueue::defaultQueue();
                queue.finishTransaction(queue.transactions().at(0));
                (void)turnUntilIdle();
              }),
              IsEmpty());
  EXPECT_THAT(observer.removed, testing::SizeIs(1));
}

// What is in the file replaces the log: it would be lost with a power cut in between.
TEST_F(Durability, OnlyACommitThatWaitsBringsALongLogIntoTheFile) {
  WatchedDisk::install(nullptr);
  const auto ledger = openLedger(path);
  std::vector<std::string> asked;
  WatchedDisk::install([&](Operation operation, bool log) {
    const std::string file = log ? "log" : "file";
    const bool writes = operation == Operation::write && !log;
    if (operation == Operation::sync) asked.push_back("wait for " + file);
    if (writes && (asked.empty() || asked.back() != "write file")) asked.emplace_back("write file");
  });
  const std::string text(1 << 20, 'x');
  for (int i = 0; i < 20; ++i) EXPECT_FALSE(ledger->set("long" + std::to_string(i), text));
  EXPECT_THAT(asked, IsEmpty());
  addTo(*ledger, {entry("gems")});
  WatchedDisk::install(nullptr);

  EXPECT_THAT(asked, ElementsAre("wait for log", "wait for log", "write file", "wait for file"));
}

// Closing brings the log into the file and removes it: both must be on the disk before.
TEST_F(Durability, ClosingAfterAFinishWaitsBeforeTheLogIsRemoved) {
  WatchedDisk::install(nullptr);
  auto ledger = openLedger(path);
  auto entries = addTo(*ledger, {entry("gems")});
  entries[0].finished = true;
  EXPECT_FALSE(ledger->update(entries, Ledger::Durability::killedProcess));
  std::vector<std::string> asked;
  WatchedDisk::install([&](Operation operation, bool log) {
    if (operation == Operation::sync) asked.emplace_back(log ? "wait for log" : "wait for file");
    if (operation == Operation::remove) asked.emplace_back("remove log");
  });
  ledger.reset();
  WatchedDisk::install(nullptr);

  EXPECT_THAT(asked, ElementsAre("wait for log", "wait for file", "remove log"));
}

}  // namespace
}  // namespace tests
