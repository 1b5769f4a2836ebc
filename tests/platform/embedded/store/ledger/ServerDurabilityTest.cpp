// What the far end of the store decides waits for the disk before anybody hears of it.

#include <gmock/gmock.h>

#include <functional>
#include <thread>

#include "tests/fakes/ManualClock.hpp"
#include "tests/fakes/OpenShop.hpp"
#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"
#include "tests/platform/embedded/store/ledger/WatchedDisk.hpp"

namespace tests {
namespace {

using StoreKit::SKPayment;
using testing::ElementsAre;

constexpr int kPeriodsOfTwoSeconds = 1005;

class ServerDurability : public testing::Test {
 protected:
  ServerDurability() {
    session.setTimeRate(kPeriodsOfTwoSeconds);
    observer.observe();
    (void)turnUntilIdle();
  }
  ~ServerDurability() override {
    (void)StoreKit::StoreSession(shop());  // lets go of the file
    (void)turnUntilIdle();
  }

  static void buy(const std::string& product) {
    OpenShop::queue().addPayment(SKPayment({.productIdentifier = product}));
    (void)turnUntilIdle();
  }
  static void finishAll() {
    for (const auto& each : OpenShop::queue().transactions()) {
      OpenShop::queue().finishTransaction(each);
    }
    (void)turnUntilIdle();
  }

  // "log" for each wait of this thread for the log, "told" for each update, in their order.
  std::vector<std::string> waitsAndNews(const std::function<void()>& work) {
    std::vector<std::string> lines;
    const auto here = std::this_thread::get_id();
    WatchedDisk::install([&](WatchedDisk::Operation operation, bool log) {
      const bool waits = operation == WatchedDisk::Operation::sync;
      if (waits && std::this_thread::get_id() == here) lines.emplace_back(log ? "log" : "file");
    });
    observer.onUpdated = [&](const auto&) { lines.emplace_back("told"); };
    work();
    (void)turnUntilIdle();
    observer.onUpdated = nullptr;
    WatchedDisk::install(nullptr);
    return lines;
  }

  struct Watched {
    Watched() { WatchedDisk::install(nullptr); }  // before SQLite opens anything
  };

  Watched watched;
  TemporaryFolder folder;
  ManualClock clock;
  StoreKit::StoreSession session{shop(), clock.sources(), openLedger(folder.file("shop.ledger"))};
  JournalingObserver observer;
};

TEST_F(ServerDurability, ARestoreWaitsOnceAndIsToldThen) {
  buy("crown");
  buy("cape");
  finishAll();
  EXPECT_THAT(waitsAndNews([] { OpenShop::queue().restoreCompletedTransactions(std::nullopt); }),
              ElementsAre("log", "told"));
}

TEST_F(ServerDurability, AnApprovalWaitsOnceAndIsToldThen) {
  session.setAskToBuyEnabled(true);
  buy("gems");
  EXPECT_THAT(waitsAndNews([this] { (void)session.approveAskToBuyTransaction(1); }),
              ElementsAre("log", "told"));
}

TEST_F(ServerDurability, APurchaseOutsideWaitsOnceAndIsToldThen) {
  EXPECT_THAT(waitsAndNews([this] { (void)session.buyProduct("gems"); }),
              ElementsAre("log", "told"));
}

TEST_F(ServerDurability, ARefundWaitsOnce) {
  buy("gems");
  EXPECT_THAT(waitsAndNews([this] { (void)session.refundTransaction(1); }), ElementsAre("log"));
}

TEST_F(ServerDurability, ARenewalWaitsOnceAndIsToldThen) {
  buy("club");
  EXPECT_THAT(waitsAndNews([this] { clock.advance(session, 2); }), ElementsAre("log", "told"));
}

}  // namespace
}  // namespace tests
