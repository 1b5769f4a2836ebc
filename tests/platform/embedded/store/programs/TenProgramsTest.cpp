// Ten programs with one shop on one ledger, all of them applications.

#include <memory>
#include <sstream>

#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/platform/embedded/store/ledger/LedgerInFolder.hpp"

namespace tests {
namespace {

using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::size_t kPrograms = 10;
constexpr std::size_t kPurchasesOfEach = 5;
constexpr std::size_t kPurchases = kPrograms * kPurchasesOfEach;

// How many transactions the reports of that kind name, in what a neighbour has heard.
std::size_t countIn(const std::string& heard, const std::string& report, const std::string& what) {
  std::size_t count = 0;
  std::istringstream reports(heard);
  for (std::string each; std::getline(reports, each, '|');) {
    if (each.find(report + ":") == std::string::npos) continue;
    for (auto at = each.find(what); at != std::string::npos; at = each.find(what, at + 1)) ++count;
  }
  return count;
}

class TenPrograms : public LedgerInFolder {
 protected:
  TenPrograms() {
    while (programs.size() < kPrograms) {
      programs.push_back(
          std::make_unique<ChildProgram>(std::vector<std::string>{STORE_NEIGHBOUR, path}));
    }
    EXPECT_THAT(askAll("observe"), Each("done"));
  }

  // All do it at the same time.
  std::vector<std::string> askAll(const std::string& order) const {
    for (const auto& program : programs) program->order(order);
    std::vector<std::string> answers;
    for (const auto& program : programs) answers.push_back(program->line());
    return answers;
  }

  // What each hears until all have done what they were about to do, and of that.
  std::vector<std::string> heardByAll() const {
    auto heard = askAll("heard");
    const auto later = askAll("heard");
    for (std::size_t i = 0; i < heard.size(); ++i) heard[i] += "|" + later[i];
    return heard;
  }

  std::vector<std::string> buy() const {
    for (std::size_t i = 0; i < kPurchasesOfEach; ++i) {
      EXPECT_THAT(askAll("add gems"), Each("done"));
    }
    return heardByAll();
  }

  std::vector<std::unique_ptr<ChildProgram>> programs;
};

TEST_F(TenPrograms, EachHearsOnceOfEveryPurchase) {
  for (const auto& heard : buy()) {
    EXPECT_EQ(countIn(heard, "updated", "gems purchased"), kPurchases) << heard;
  }
}

TEST_F(TenPrograms, EachHearsOfItsOwnPurchasesOnlyThatTheyBegin) {
  for (const auto& heard : buy()) {
    EXPECT_EQ(countIn(heard, "updated", "gems purchasing"), kPurchasesOfEach) << heard;
  }
}

TEST_F(TenPrograms, NobodysPurchaseIsRefused) {
  EXPECT_THAT(buy(), Each(testing::Not(testing::HasSubstr("failed"))));
  const auto ledger = openLedger(path);
  EXPECT_THAT(ledger->all(), SizeIs(kPurchases));
  EXPECT_THAT(ledger->all(), Each(testing::Field(&LedgerEntry::state, State::purchased)));
}

TEST_F(TenPrograms, EachHearsOnceOfEveryRemovalWhenAllFinishEverything) {
  (void)buy();
  EXPECT_THAT(askAll("finish"), Each("done"));
  for (const auto& heard : heardByAll()) {
    EXPECT_EQ(countIn(heard, "removed", "gems purchased"), kPurchases) << heard;
  }
}

TEST_F(TenPrograms, NothingIsLeftWhenAllFinishEverything) {
  (void)buy();
  EXPECT_THAT(askAll("finish"), Each("done"));
  (void)heardByAll();
  const auto ledger = openLedger(path);
  EXPECT_THAT(ledger->unfinished(), IsEmpty());
  EXPECT_THAT(ledger->finishedPurchases(), SizeIs(kPurchases));
}

}  // namespace
}  // namespace tests
