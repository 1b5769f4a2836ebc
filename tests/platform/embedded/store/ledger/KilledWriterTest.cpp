// A program that is killed before each single thing that it asks of the disk.

#include <gmock/gmock.h>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"
#include "tests/platform/embedded/store/ledger/WatchedDisk.hpp"

namespace tests {
namespace {

constexpr int kFinished = 100;

// Each entry fills several pages.
LedgerEntry largeEntry(const std::string& product) {
  auto large = entry(product);
  large.payment.requestData.emplace(10'000);
  return large;
}

// Makes a ledger, adds, finishes and closes, and dies before the operation of that number. Answers
// with how many changes were confirmed, or `kFinished` when it did not have to die.
int liveUntil(const std::string& path, int operation) {
  return inChild([&]() -> int {
    int confirmed = 0;
    int left = operation;
    WatchedDisk::install([&](WatchedDisk::Operation, bool) {
      if (left-- == 0) std::_Exit(confirmed);
    });
    auto ledger = openLedger(path);
    auto entries = addTo(*ledger, {largeEntry("gems")}, Ledger::Durability::killedProcess);
    ++confirmed;
    addTo(*ledger, {largeEntry("coins"), largeEntry("cape")});
    ++confirmed;
    entries[0].finished = true;
    if (ledger->update(entries, Ledger::Durability::killedProcess)) return kFinished + 1;
    ++confirmed;
    ledger.reset();
    return kFinished;
  });
}

TEST(KilledWriter, LeavesALedgerThatHoldsWhatWasConfirmed) {
  const std::vector<std::vector<std::string>> unfinishedAfter = {
      {}, {"gems"}, {"gems", "coins", "cape"}, {"coins", "cape"}};
  int confirmed = 0;
  int operation = 0;
  for (; confirmed < kFinished; ++operation) {
    const TemporaryFolder folder;
    const auto path = folder.file("shop.ledger");
    confirmed = liveUntil(path, operation);
    ASSERT_LE(confirmed, kFinished);
    const auto opening = SqliteLedger::open(path);
    ASSERT_TRUE(opening.ledger) << "killed at " << operation << ": " << opening.error;
    const auto found = products(opening.ledger->unfinished());
    const auto step = static_cast<std::size_t>(std::min(confirmed, 3));
    const auto& next = unfinishedAfter[std::min<std::size_t>(step + 1, 3)];
    EXPECT_TRUE(found == unfinishedAfter[step] || found == next) << "killed at " << operation;
  }
  EXPECT_LT(30, operation);
}

}  // namespace
}  // namespace tests
