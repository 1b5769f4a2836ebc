#include "tests/crash/programs/CrashTest.hpp"

#include <algorithm>
#include <iterator>
#include <random>
#include <sstream>
#include <utility>

#include "tests/crash/Broken.hpp"
#include "tests/crash/programs/LedgerComparison.hpp"

namespace crash {

namespace {

constexpr std::size_t kLastLines = 30;

// "<tab>12<tab>" for "transaction 12 is lost".
std::string numberIn(const std::string& message) {
  std::istringstream words(message);
  std::string word;
  std::string number;
  words >> word >> number;
  return word == "transaction" ? '\t' + number + '\t' : "";
}

}  // namespace

// What one round does: it depends on the seed and the number of the round, and on nothing else.
struct CrashTest::Plan {
  Plan(std::uint64_t seed, std::uint64_t round) {
    std::seed_seq mixed{seed, seed >> 32U, round};
    std::mt19937_64 random(mixed);
    delay = std::chrono::microseconds(random() % 30'000);
    whileOpening = random() % 4 == 0;
    killsAll = random() % 3 == 0;
    victim = random();
    looksIntoLedger = random() % 3 != 0;
    settles = random() % 25 == 0;
    programSeed = random();
  }

  std::chrono::microseconds delay{};
  bool whileOpening = false;  // the delay begins with the processes, not with their first words
  bool killsAll = false;
  std::uint64_t victim = 0;
  bool looksIntoLedger = false;  // else the next programs meet the ledger as it was left
  bool settles = false;
  std::uint64_t programSeed = 0;
};

void CrashTest::hear(const std::string& line) {
  lines_.push_back(line);
  model_.hear(line);
}

void CrashTest::start(const std::string& name, const std::string& manner) {
  programs_.catchUp();
  model_.start(name);
  programs_.start(name, path_, manner);
}

void CrashTest::round(std::uint64_t number) {
  const Plan plan(options_.seed, number);
  for (auto seed = plan.programSeed; alive_.size() < options_.programs; ++seed) {
    const auto name = "p" + std::to_string(++started_);
    start(name, std::to_string(seed));
    alive_.insert(name);
  }
  if (!plan.whileOpening) waitUntilOpen();
  programs_.listenFor(plan.delay);
  if (plan.settles) return settle();
  if (!plan.killsAll) {
    return kill(*std::next(alive_.begin(), static_cast<long>(plan.victim % alive_.size())));
  }
  killAll();
  if (plan.looksIntoLedger) compareUnfinished(model_, *openLedger());
}

void CrashTest::waitUntilOpen() {
  programs_.listenUntil([this] {
    return std::all_of(alive_.begin(), alive_.end(),
                       [this](const std::string& name) { return model_.hasOpened(name); });
  });
}

// What was written before comes first: from here on, others may take over what it leaves.
void CrashTest::kill(std::string name) {
  programs_.catchUp();
  model_.kill(name);
  programs_.kill(name);
  alive_.erase(name);
}

void CrashTest::killAll() {
  while (!alive_.empty()) kill(*alive_.begin());
  programs_.catchUp();
}

void CrashTest::settle() {
  killAll();
  start("last", "quiet");
  programs_.waitForEnd("last");
  compareSettled(model_, *openLedger());
  const auto& known = std::as_const(model_).transactions();
  transactions_ += known.size();
  removals_ += known.size() - known.unfinished().size();
  model_ = {};
  lines_.clear();
  path_ = folder_.file(std::to_string(++ledgers_) + ".ledger");
}

std::unique_ptr<StoreKit::SqliteLedger> CrashTest::openLedger() const {
  auto opening = StoreKit::SqliteLedger::open(path_);
  if (!opening.ledger) throw Broken("the ledger is refused: " + opening.error);
  return std::move(opening.ledger);
}

std::string CrashTest::summary() const {
  return std::to_string(started_) + " programs, " + std::to_string(transactions_) +
         " transactions, " + std::to_string(removals_) + " removals";
}

std::string CrashTest::linesAbout(const std::string& message) const {
  const auto number = numberIn(message);
  std::string text;
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const bool isLast = lines_.size() - i <= kLastLines;
    const auto& line = lines_[i];
    if (number.empty() ? isLast : (line + '\t').find(number) != std::string::npos) {
      text += line + '\n';
    }
  }
  return text;
}

}  // namespace crash
