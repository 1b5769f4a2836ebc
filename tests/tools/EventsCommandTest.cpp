#include <csignal>

#include "tests/tools/RunningTool.hpp"
#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using tests::TransactionLine;

// Each test begins with an unfinished transaction. When that was shown, the tool is watching.
class EventsCommand : public tests::ToolOnLedger {
 protected:
  void SetUp() override { run({"buy", "gems", "--no-finish"}); }

  std::vector<std::string> watching() const {
    auto words = options();
    words.insert(words.end(), {"--json", "events", "--unfinished"});
    return words;
  }
};

const std::string kGems = TransactionLine{"1", "gems", "purchased"};

TEST_F(EventsCommand, ShowsWhatOtherProgramsDo) {
  RunningTool events(watching());
  EXPECT_EQ(tests::withoutDates(events.line()), kGems);

  run({"storefront-buy", "levels"});
  EXPECT_EQ(events.line(),
            std::string(TransactionLine{"2", "levels", "purchasing", false, "", true}));
  run({"finish", "1"});
  EXPECT_EQ(tests::withoutDates(events.line()),
            std::string(TransactionLine{"1", "gems", "purchased", true}));
  run({"reset"});
  EXPECT_EQ(events.line(), R"({"event":"deleted","identifier":"1"})");
  EXPECT_EQ(events.line(), R"({"event":"deleted","identifier":"2"})");

  EXPECT_EQ(events.end(SIGINT), 0);
}

TEST_F(EventsCommand, ShowsASettledPurchaseOfAWaitingApplication) {
  RunningTool events(watching());
  events.line();
  run({"settings", "askToBuyEnabled", "true"});
  RunningTool application(WAITING_APPLICATION, {shop_.path(), ledger_, "levels"});
  ASSERT_EQ(application.line(), "deferred");

  run({"approve", "2"});

  ASSERT_EQ(application.line(), "bought levels");
  const std::string finished = TransactionLine{"2", "levels", "purchased", true};
  std::string last;
  for (int i = 0; i < 5 && last != finished; ++i) last = tests::withoutDates(events.line());
  EXPECT_EQ(last, finished);
}

TEST_F(EventsCommand, DeliversAndFinishesNothing) {
  RunningTool events(watching());
  events.line();
  run({"buy", "levels", "--no-finish"});
  events.line();
  events.end(SIGINT);

  EXPECT_THAT(lines({"transactions"}),
              ElementsAre(kGems, std::string(TransactionLine{"2", "levels", "purchased"})));
}

TEST_F(EventsCommand, LeavesAPurchaseBegunInTheStoreToTheApplication) {
  run({"storefront-buy", "levels"});
  RunningTool events(watching());
  events.line();
  events.line();

  EXPECT_THAT(lines({"launch"}), testing::SizeIs(3));
}

TEST_F(EventsCommand, NeedsNoConfigurationWhenTheLedgerIsNamed) {
  RunningTool events({"--ledger", ledger_, "--json", "events", "--unfinished"});

  EXPECT_EQ(tests::withoutDates(events.line()), kGems);
}

TEST_F(EventsCommand, EndsWellWhenItIsToldToEnd) {
  RunningTool events(watching());
  events.line();

  EXPECT_EQ(events.end(SIGTERM), 0);
}

TEST_F(EventsCommand, TellsAPersonInALine) {
  auto words = options();
  words.insert(words.end(), {"events", "--unfinished"});
  RunningTool events(words);

  EXPECT_THAT(events.line(), testing::MatchesRegex("20..-..-..T..:..:..Z  #1  1 x gems  "
                                                   "purchased  2000000001"));
}

TEST_F(EventsCommand, ShowsARefundAsOne) {
  RunningTool events(watching());
  events.line();

  run({"refund", "1"});
  run({"finish", "1"});

  EXPECT_EQ(events.line(), R"({"event":"refunded","identifier":"1"})");
  EXPECT_EQ(tests::withoutDates(events.line()),
            std::string(TransactionLine{"1", "gems", "purchased", true}));
}

TEST_F(EventsCommand, ARefundThatWasBeforeIsSaidOfWhatIsUnfinished) {
  run({"refund", "1"});
  RunningTool events(watching());

  EXPECT_EQ(events.line(), R"({"event":"refunded","identifier":"1"})");
  EXPECT_EQ(tests::withoutDates(events.line()), kGems);
}

TEST_F(EventsCommand, WhatLooksTheSameIsNotShownAgain) {
  run({"buy", "club", "--no-finish"});
  RunningTool events(watching());
  events.line();
  const auto club = tests::withoutDates(events.line());

  run({"renew", "club"});  // the first period runs no more, of which nothing can be seen
  run({"buy", "levels", "--no-finish"});

  std::vector<std::string> shown;
  do {
    shown.push_back(tests::withoutDates(events.line()));
  } while (shown.size() < 5 && shown.back().find("\"levels\"") == std::string::npos);
  EXPECT_THAT(shown, testing::Not(testing::Contains(club)));
  const auto latest = std::unique(shown.begin(), shown.end());
  EXPECT_EQ(latest, shown.end());
}

TEST_F(EventsCommand, TellsAPersonOfARefund) {
  auto words = options();
  words.insert(words.end(), {"events", "--unfinished"});
  RunningTool events(words);
  events.line();

  run({"refund", "1"});

  EXPECT_THAT(events.line(), testing::HasSubstr("  #1  1 x gems  purchased, refunded  2000000001"));
}

// Standard error and output are one, so that a test can wait for what is said.
class EventsWithoutLedger : public tests::ToolOnLedger {
 protected:
  RunningTool events(const std::string& ledger) const {
    return {"/bin/sh",
            {"-c", R"(exec "$0" --config "$1" --ledger "$2" --json events 2>&1)", TQSTORE_PROGRAM,
             shop_.path(), ledger}};
  }
  static std::string waiting(const std::string& ledger) {
    return "tqstore: " + ledger +
           ": there is no ledger yet; waiting for a program that opens the store";
  }
};

TEST_F(EventsWithoutLedger, WaitForOneAndShowAllThatHappensInIt) {
  auto tool = events(ledger_);
  EXPECT_EQ(tool.line(), waiting(ledger_));

  run({"storefront-buy", "gems"});

  EXPECT_EQ(tool.line(), std::string(TransactionLine{"1", "gems", "purchasing", false, "", true}));
}

TEST_F(EventsWithoutLedger, MakeNoneAndEndWellWhenToldTo) {
  auto tool = events(ledger_);
  tool.line();

  EXPECT_EQ(tool.end(SIGTERM), 0);

  EXPECT_FALSE(std::filesystem::exists(ledger_));
}

TEST_F(EventsWithoutLedger, WaitWhereAnEmptyFileIs) {
  const TemporaryFile empty("");
  auto tool = events(empty.path());
  EXPECT_EQ(tool.line(), waiting(empty.path()));

  EXPECT_EQ(tool.end(SIGINT), 0);

  EXPECT_EQ(tests::bytesOf(empty.path()), "");
}

TEST_F(EventsWithoutLedger, DoNotWaitForWhatIsNoLedger) {
  const auto run = runTool({"--ledger", shop_.path(), "events"});

  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_THAT(run.errors, testing::HasSubstr("is not a ledger"));
}

TEST_F(EventsCommand, ALedgerInMemoryIsWrongUsage) {
  const auto run = runTool({"--config", shop_.path(), "--ledger", ":memory:", "events"});

  EXPECT_EQ(run.exitStatus, 2);
  EXPECT_EQ(run.errors,
            "tqstore: a ledger in memory is this program's own: nothing will ever happen in it\n");
}

TEST_F(EventsCommand, AConfigurationThatCannotBeReadIsRefused) {
  EXPECT_EQ(runTool({"--config", "/nowhere/x", "events"}).exitStatus, 2);
}

}  // namespace
