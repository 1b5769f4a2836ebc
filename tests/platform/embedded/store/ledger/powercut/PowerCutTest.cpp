// What is left of a ledger when the power goes, and with it what was written and not synced, or a
// part of that. By hand, each test with so many power cuts, by chances of one's own:
//
//     TQSTOREKIT_POWER_CUTS=20000 TQSTOREKIT_POWER_CUT_SEED=7 powercut_tests

#include <gmock/gmock.h>

#include <cstdlib>
#include <optional>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/LedgerSamples.hpp"
#include "tests/platform/embedded/store/ledger/powercut/PowerCuts.hpp"

namespace tests {
namespace {

using testing::IsEmpty;

constexpr std::uint64_t kCutsInLife = 100;
// On one ledger: what a power cut leaves of one is where the next begins.
constexpr std::uint64_t kLivesOfLedger = 3;

std::optional<std::uint64_t> environmentNumber(const char* variable) {
  const char* const value = std::getenv(variable);
  if (value == nullptr) return std::nullopt;
  return std::strtoull(value, nullptr, 10);
}

class PowerCut : public testing::Test {
 protected:
  PowerCut() {
    // SQLite's own chances, too: they are in its log.
    sqlite3_test_control(SQLITE_TESTCTRL_PRNG_SEED, 1, nullptr);
  }

  [[nodiscard]] static std::uint64_t cuts(std::uint64_t otherwise) {
    return environmentNumber("TQSTOREKIT_POWER_CUTS").value_or(otherwise);
  }

  void makeLedger() const { (void)openLedger(path); }

  // Answers with what one of the cuts has left.
  LedgerFiles cut(const RecordedLife& life, std::uint64_t count, Dice& dice) const {
    PowerCuts powerCuts(life, left);
    const auto points = powerCuts.choose(count, dice);
    EXPECT_THAT(powerCuts.complaint(points, dice), IsEmpty()) << "with seed " << seed;
    return powerCuts.leftovers();
  }

  const std::uint64_t seed = environmentNumber("TQSTOREKIT_POWER_CUT_SEED").value_or(1);
  TemporaryFolder folder;
  std::string path = folder.file("shop.ledger");
  std::string left = folder.file("left.ledger");
};

TEST_F(PowerCut, LeavesEveryOutcomeThatWasToldAndNoChangeInPart) {
  const auto lives = (cuts(500) + kCutsInLife - 1) / kCutsInLife;
  LedgerFiles leftovers;
  for (std::uint64_t number = 0; number < lives && !HasFailure(); ++number) {
    SCOPED_TRACE("in life " + std::to_string(number));
    Dice dice(seed, number);
    leftovers.write(path);
    if (number % kLivesOfLedger == 0) makeLedger();
    LedgerLife living(path);
    for (int step = 0; step < 40; ++step) living.goOn(dice);
    leftovers = cut(std::move(living).end(), kCutsInLife, dice);
    if (number % kLivesOfLedger == kLivesOfLedger - 1) leftovers = {};
  }
}

TEST_F(PowerCut, LeavesNothingHalfOfALogThatOutgrowsItsRoomAndIsTidiedUp) {
  Dice dice(seed, 0);
  makeLedger();
  LedgerLife living(path);
  for (int again = 0; again < 2; ++again) {
    for (int i = 0; i < 30; ++i) living.buy(1, dice);
    living.finish(dice);
    living.tidyUp();
  }
  living.buy(1, dice);
  cut(std::move(living).end(), cuts(150), dice);
}

// Such a log is begun anew without being cut off.
TEST_F(PowerCut, LeavesNothingHalfOfALongLogThatACommitBringsIntoTheFile) {
  Dice dice(seed, 0);
  makeLedger();
  LedgerLife living(path);
  for (int i = 0; i < 5; ++i) living.set("long" + std::to_string(i), std::string(1 << 20, 'x'));
  for (int i = 0; i < 5; ++i) living.buy(1, dice);
  cut(std::move(living).end(), cuts(30), dice);
}

TEST_F(PowerCut, LeavesALedgerInTheMakingNew) {
  Dice dice(seed, 0);
  const auto life = LedgerLife(path).end();
  PowerCuts powerCuts(life, left);
  const auto points = powerCuts.each(1 + cuts(150) / life.operations.size());
  EXPECT_THAT(powerCuts.complaint(points, dice), IsEmpty()) << "with seed " << seed;
}

}  // namespace
}  // namespace tests
