#include <csignal>

#include "tests/tools/RunningTool.hpp"
#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::TransactionLine;
using tests::withoutDates;

class LaunchCommand : public tests::ToolOnLedger {
 protected:
  std::vector<std::string> watching() const {
    auto words = options();
    words.insert(words.end(), {"--json", "launch", "--watch"});
    return words;
  }
};

const std::string kGems = TransactionLine{"1", "gems", "purchased"};
const std::string kGemsFromStore = TransactionLine{"1", "gems", "purchased", false, "", true};

TEST_F(LaunchCommand, DeliversWhatWasBoughtBeforeThePlugWasPulled) {
  run({"buy", "gems", "--no-finish"});

  EXPECT_THAT(lines({"launch"}), ElementsAre(kGems));
  EXPECT_THAT(lines({"launch"}), ElementsAre(kGems));  // nobody has finished it
}

TEST_F(LaunchCommand, FinishesWhenTold) {
  run({"buy", "gems", "--no-finish"});

  EXPECT_THAT(lines({"launch", "--finish"}), ElementsAre(kGems));

  EXPECT_THAT(lines({"launch"}), IsEmpty());
  EXPECT_EQ(transaction("1"), std::string(TransactionLine{"1", "gems", "purchased", true}));
}

TEST_F(LaunchCommand, TellsAPersonWhatIsStillToBeFinished) {
  run({"buy", "gems", "--no-finish"});

  EXPECT_EQ(runForPerson({"launch"}).output,
            "delivered  purchased  1 x gems, transaction 2000000001, still to be finished\n");
  EXPECT_EQ(runForPerson({"launch", "--finish"}).output,
            "delivered  purchased  1 x gems, transaction 2000000001, finished\n");
}

TEST_F(LaunchCommand, TellsAPersonWhatWaitsForAnApproval) {
  run({"buy", "gems", "--ask-to-buy"});

  EXPECT_EQ(runForPerson({"launch"}).output,
            "delivered  deferred  1 x gems, transaction #1, to be approved or declined\n");
}

TEST_F(LaunchCommand, LeavesWhatWaitsForAnApprovalUnfinished) {
  run({"buy", "gems", "--ask-to-buy"});
  const auto deferred = std::string(TransactionLine{"1", "gems", "deferred"});

  EXPECT_THAT(lines({"launch", "--finish"}), ElementsAre(deferred));
  EXPECT_EQ(transaction("1"), deferred);
}

TEST_F(LaunchCommand, AcceptsAPurchaseThatTheUserBeganInTheStore) {
  run({"storefront-buy", "gems"});

  EXPECT_THAT(lines({"launch"}),
              ElementsAre(R"({"event":"storePurchase","productIdentifier":"gems","accepted":true})",
                          kGemsFromStore));
}

TEST_F(LaunchCommand, RefusesAPurchaseThatTheUserBeganInTheStoreWhenTold) {
  run({"storefront-buy", "gems"});

  EXPECT_THAT(
      lines({"launch", "--refuse"}),
      ElementsAre(R"({"event":"storePurchase","productIdentifier":"gems","accepted":false})"));
  EXPECT_THAT(lines({"transactions", "--all"}), IsEmpty());
}

TEST_F(LaunchCommand, WaitsForAStoreThatTakesItsTime) {
  run({"settings", "answerDelay", "0.2"});
  run({"storefront-buy", "gems"});

  EXPECT_THAT(lines({"launch"}), ElementsAre(testing::HasSubstr("storePurchase"), kGemsFromStore));
}

TEST_F(LaunchCommand, WatchShowsWhatOtherProgramsBuyUntilItIsInterrupted) {
  run({"buy", "gems", "--no-finish"});
  RunningTool watcher(watching());
  EXPECT_EQ(withoutDates(watcher.line()), kGems);

  run({"buy", "levels", "--no-finish"});

  EXPECT_EQ(withoutDates(watcher.line()), std::string(TransactionLine{"2", "levels", "purchased"}));
  EXPECT_EQ(watcher.end(SIGINT), 0);
}

TEST_F(LaunchCommand, WatchEndsWellWhenItIsToldToEnd) {
  run({"buy", "gems", "--no-finish"});
  RunningTool watcher(watching());
  watcher.line();

  EXPECT_EQ(watcher.end(SIGTERM), 0);
}

}  // namespace
