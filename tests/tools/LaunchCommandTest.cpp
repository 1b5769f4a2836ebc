#include <csignal>

#include "tests/tools/RefusingLedger.hpp"
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

  const std::string finished = TransactionLine{"1", "gems", "purchased", true};

  EXPECT_THAT(lines({"launch", "--finish"}), ElementsAre(finished));

  EXPECT_THAT(lines({"launch"}), IsEmpty());
  EXPECT_EQ(transaction("1"), finished);
}

TEST_F(LaunchCommand, TellsAPersonWhatIsStillToBeFinished) {
  run({"buy", "gems", "--no-finish"});

  EXPECT_EQ(runForPerson({"launch"}).output,
            "delivered  purchased  1 x gems, transaction 2000000001, still to be finished\n");
  EXPECT_EQ(runForPerson({"launch", "--finish"}).output,
            "delivered  purchased  1 x gems, transaction 2000000001, finished\n");
}

TEST_F(LaunchCommand, AFinishThatTheLedgerRefusesIsSaidAndEndsWithOne) {
  run({"buy", "gems", "--no-finish"});
  tests::refuseChanges(ledger_, "new.finished = 1");

  const auto answer = run({"launch", "--finish"});

  EXPECT_EQ(answer.exitStatus, 1);
  EXPECT_EQ(withoutDates(answer.lines().at(0)), kGems);
  EXPECT_THAT(answer.errors, testing::HasSubstr("tqstore: the finish of transaction 1 could not be "
                                                "written down: it is still to be finished\n"));
  EXPECT_EQ(runForPerson({"launch", "--finish"}).output,
            "delivered  purchased  1 x gems, transaction 2000000001, still to be finished\n");
}

TEST_F(LaunchCommand, WhatTheLibraryFinishesIsShownAsFinished) {
  run({"buy", "gems", "--ask-to-buy"});
  run({"decline", "1"});

  const auto shown = run({"launch"});

  EXPECT_EQ(shown.json().at(0)["state"], "failed");
  EXPECT_EQ(shown.json().at(0)["finished"], true);
  EXPECT_EQ(transaction("1"), shown.lines().at(0));
}

// Takes as long as the tool waits: eight seconds.
TEST_F(LaunchCommand, APurchaseThatStaysUnderWayEndsWithOne) {
  run({"storefront-buy", "gems"});
  tests::refuseChanges(ledger_, "new.state = 1");

  const auto answer = run({"launch"});

  EXPECT_EQ(answer.exitStatus, 1);
  EXPECT_THAT(answer.errors, testing::EndsWith("tqstore: purchases are still under way\n"));
}

TEST_F(LaunchCommand, ShowsWhatARefundHasTakenAway) {
  run({"buy", "levels"});
  run({"refund", "1"});

  EXPECT_THAT(lines({"launch"}),
              ElementsAre(R"({"event":"revoked","productIdentifier":"levels"})"));
  EXPECT_THAT(lines({"launch"}), IsEmpty());
}

TEST_F(LaunchCommand, WatchShowsARefundAtOnce) {
  run({"buy", "gems", "--no-finish"});
  auto words = options();
  words.insert(words.end(), {"launch", "--watch"});
  RunningTool watcher(words);
  watcher.line();

  run({"refund", "1"});

  std::string line;
  for (int i = 0; i < 2 && line != "revoked    gems"; ++i) line = watcher.line();
  EXPECT_EQ(line, "revoked    gems");
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
