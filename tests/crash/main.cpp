// Kills an application that buys on a ledger, again and again, and looks whether the ledger keeps
// what it promises (docs/ledger.md).
//
//     crash_test PROGRAM [--rounds N] [--seed S]

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <sstream>

#include "platform/embedded/store/ledger/SqliteLedger.hpp"
#include "tests/crash/ApplicationRun.hpp"
#include "tests/crash/LedgerModel.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace {

using namespace crash;
using std::chrono::microseconds;

constexpr std::uint64_t kRoundsBetweenFullChecks = 500;

struct Options {
  std::string program;
  std::uint64_t rounds = 300;
  std::uint64_t seed = 1;
};

// What one round does: it depends on the seed and the number of the round, and on nothing else.
struct Plan {
  Plan(std::uint64_t seed, std::uint64_t round) {
    std::seed_seq mixed{seed, seed >> 32U, round};
    std::mt19937_64 random(mixed);
    delay = microseconds(random() % 30'000);
    whileOpening = random() % 4 == 0;
    looksIntoLedger = random() % 3 != 0;
    freshLedger = random() % 40 == 0;
    applicationSeed = std::to_string(random());
  }

  microseconds delay{};
  bool whileOpening = false;     // the delay begins with the process, not with its first word
  bool looksIntoLedger = false;  // else the next application meets the ledger as it was left
  bool freshLedger = false;
  std::string applicationSeed;
};

std::optional<Options> parse(int argc, char** argv) {
  if (argc < 2 || argc % 2 != 0) return std::nullopt;
  Options options{.program = argv[1]};
  for (int at = 2; at < argc; at += 2) {
    const std::string name = argv[at];
    const auto value = std::strtoull(argv[at + 1], nullptr, 10);
    if (name == "--rounds") {
      options.rounds = value;
    } else if (name == "--seed") {
      options.seed = value;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

class CrashTest {
 public:
  explicit CrashTest(Options options) : options_(std::move(options)) {}

  void round(std::uint64_t number) {
    const Plan plan(options_.seed, number);
    if (plan.freshLedger) replaceLedger();
    model_.beginRun(plan.applicationSeed);
    std::istringstream said(liveAndDie(plan));
    for (std::string line; std::getline(said, line);) model_.hear(line);
    if (plan.looksIntoLedger) look(number % kRoundsBetweenFullChecks == 0);
  }

  void look(bool atEverything) {
    const auto opening = StoreKit::SqliteLedger::open(path_);
    if (!opening.ledger) throw Broken("the ledger is refused: " + opening.error);
    if (atEverything) {
      model_.checkAll(*opening.ledger);
    } else {
      model_.check(*opening.ledger);
    }
  }

  [[nodiscard]] std::string summary() const {
    return std::to_string(transactions_ + model_.size()) + " transactions, " +
           std::to_string(removals_ + model_.removals()) + " removals";
  }

 private:
  std::string liveAndDie(const Plan& plan) const {
    ApplicationRun application(options_.program, path_, plan.applicationSeed);
    const bool lived =
        (plan.whileOpening || application.waitForWord()) && application.listenFor(plan.delay);
    auto said = application.kill();
    if (!lived) throw Broken("the application ended by itself; it said: " + said);
    return said;
  }

  void replaceLedger() {
    look(true);
    transactions_ += model_.size();
    removals_ += model_.removals();
    model_ = {};
    path_ = folder_.file(std::to_string(++ledgers_) + ".ledger");
  }

  Options options_;
  tests::TemporaryFolder folder_;
  int ledgers_ = 0;
  std::string path_ = folder_.file("0.ledger");
  LedgerModel model_;
  std::size_t transactions_ = 0;
  std::size_t removals_ = 0;
};

int run(const Options& options) {
  std::cout << "seed " << options.seed << ", " << options.rounds << " rounds" << std::endl;
  CrashTest test(options);
  std::uint64_t round = 0;
  try {
    for (; round < options.rounds; ++round) test.round(round);
    test.look(true);
  } catch (const std::exception& error) {
    std::cout << "round " << round << ": " << error.what() << "\nreplay: --seed " << options.seed
              << " --rounds " << round + 1 << std::endl;
    return 1;
  }
  std::cout << "nothing lost, nothing twice: " << test.summary() << std::endl;
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const auto options = parse(argc, argv);
  if (!options) {
    std::cerr << "usage: crash_test PROGRAM [--rounds N] [--seed S]\n";
    return 2;
  }
  return run(*options);
}
