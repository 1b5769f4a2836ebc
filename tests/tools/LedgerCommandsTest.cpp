#include <gmock/gmock.h>

#include <csignal>
#include <regex>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/platform/embedded/store/ledger/ChildProcess.hpp"
#include "tests/tools/ToolRun.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The one thing that no test knows beforehand.
std::string withoutDate(const std::string& line) {
  static const std::regex date(R"("\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ")");
  return std::regex_replace(line, date, "DATE");
}

std::vector<std::string> withoutDates(std::vector<std::string> lines) {
  for (auto& line : lines) line = withoutDate(line);
  return lines;
}

// Every run is a new process on the same ledger.
class LedgerCommands : public testing::Test {
 protected:
  ToolRun run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--config", shop_.path(), "--ledger", ledger_, "--json"});
    return runTool(arguments);
  }
  std::vector<std::string> lines(const std::vector<std::string>& arguments) const {
    const auto answer = run(arguments);
    EXPECT_EQ(answer.exitStatus, 0) << answer.errors;
    return withoutDates(answer.lines());
  }
  ToolRun runForPerson(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"--config", shop_.path(), "--ledger", ledger_});
    return runTool(arguments);
  }
  std::vector<std::string> tellPerson(const std::vector<std::string>& arguments) const {
    return runForPerson(arguments).lines();
  }
  std::string errorsFor(const std::vector<std::string>& arguments) const {
    return runForPerson(arguments).errors;
  }

  tests::TemporaryFolder folder_;
  std::string ledger_ = folder_.file("shop.ledger");
  TemporaryFile shop_{shopConfiguration()};
};

const std::string kGems =
    R"({"identifier":"1","transactionIdentifier":"2000000001","productIdentifier":"gems",)"
    R"("quantity":3,"state":"purchased","date":DATE,"originalTransactionIdentifier":null,)"
    R"("applicationUsername":"ann","error":null,"finished":false})";
const std::string kGemsFinished = kGems.substr(0, kGems.size() - 6) + "true}";

const std::vector<std::string> kBuyGems = {"buy", "gems",   "--no-finish", "--quantity",
                                           "3",   "--user", "ann"};

TEST_F(LedgerCommands, AnEmptyLedgerHasNoTransactions) {
  EXPECT_THAT(lines({"transactions"}), IsEmpty());
  EXPECT_THAT(lines({"transactions", "--all"}), IsEmpty());
}

TEST_F(LedgerCommands, APersonIsToldThatThereAreNoTransactions) {
  EXPECT_THAT(tellPerson({"transactions"}), IsEmpty());
  EXPECT_EQ(errorsFor({"transactions"}), "tqstore: nothing is unfinished\n");
  EXPECT_EQ(errorsFor({"transactions", "--all"}), "tqstore: the ledger is empty\n");
}

TEST_F(LedgerCommands, TransactionsAreThoseThatAreNotFinished) {
  run(kBuyGems);
  run({"buy", "levels"});

  EXPECT_THAT(lines({"transactions"}), ElementsAre(kGems));
}

TEST_F(LedgerCommands, AllTransactionsAreTheFinishedOnesToo) {
  run({"buy", "levels"});
  run({"buy", "gems", "--fail", "5"});

  EXPECT_THAT(
      lines({"transactions", "--all"}),
      ElementsAre(
          R"({"identifier":"1","transactionIdentifier":"2000000001","productIdentifier":"levels",)"
          R"("quantity":1,"state":"purchased","date":DATE,"originalTransactionIdentifier":null,)"
          R"("applicationUsername":"","error":null,"finished":true})",
          R"({"identifier":"2","transactionIdentifier":null,"productIdentifier":"gems",)"
          R"("quantity":1,"state":"failed","date":null,"originalTransactionIdentifier":null,)"
          R"("applicationUsername":"","error":{"domain":"SKErrorDomain","code":5,"message":)"
          R"~("The operation couldn’t be completed. (SKErrorDomain error 5.)"},"finished":true})~"));
}

TEST_F(LedgerCommands, APersonSeesATable) {
  run(kBuyGems);

  const auto table = tellPerson({"transactions"});

  ASSERT_EQ(table.size(), 2U);
  EXPECT_EQ(table[0], "#  Product  Quantity  State      Transaction  Date                  User");
  EXPECT_THAT(table[1],
              testing::MatchesRegex("1  gems            3  purchased  2000000001   20.+T.+Z  ann"));
}

TEST_F(LedgerCommands, WhatWasBoughtBeforeThePlugWasPulledIsDeliveredAtTheNextLaunch) {
  run(kBuyGems);

  EXPECT_THAT(lines({"launch"}), ElementsAre(kGems));
  EXPECT_THAT(lines({"launch"}), ElementsAre(kGems));  // nobody has finished it
}

TEST_F(LedgerCommands, LaunchFinishesWhenTold) {
  run(kBuyGems);

  EXPECT_THAT(lines({"launch", "--finish"}), ElementsAre(kGems));

  EXPECT_THAT(lines({"launch"}), IsEmpty());
  EXPECT_THAT(lines({"transactions", "--all"}), ElementsAre(kGemsFinished));
}

TEST_F(LedgerCommands, BuyingLeavesTheBacklogAsItIs) {
  run(kBuyGems);
  run({"buy", "levels"});

  EXPECT_THAT(lines({"transactions"}), ElementsAre(kGems));
}

TEST_F(LedgerCommands, FinishTakesTheNumberInTheLedger) {
  run(kBuyGems);

  EXPECT_THAT(lines({"finish", "1"}), ElementsAre(kGemsFinished));

  EXPECT_THAT(lines({"transactions"}), IsEmpty());
}

TEST_F(LedgerCommands, FinishTakesTheIdentifierOfThePlatform) {
  run(kBuyGems);

  EXPECT_THAT(lines({"finish", "2000000001"}), ElementsAre(kGemsFinished));
}

TEST_F(LedgerCommands, FinishingTwiceIsHarmless) {
  run(kBuyGems);
  run({"finish", "1"});

  EXPECT_THAT(lines({"finish", "1"}), ElementsAre(kGemsFinished));
}

TEST_F(LedgerCommands, AnUnknownTransactionIsRefused) {
  run(kBuyGems);
  for (const char* unknown : {"2", "0", "-1", "1.0", "gems", "", " 1"}) {
    const auto answer = run({"finish", unknown});
    EXPECT_EQ(answer.exitStatus, 1) << unknown;
    EXPECT_EQ(answer.output, "") << unknown;
    EXPECT_EQ(answer.errors, "tqstore: there is no transaction " + std::string(unknown) + "\n");
  }
}

TEST_F(LedgerCommands, FinishAllFinishesEverythingInOrder) {
  run(kBuyGems);
  run({"buy", "levels", "--no-finish"});

  const auto finished = lines({"finish", "--all"});

  ASSERT_EQ(finished.size(), 2U);
  EXPECT_EQ(finished[0], kGemsFinished);
  EXPECT_THAT(finished[1], testing::StartsWith(R"({"identifier":"2",)"));
  EXPECT_THAT(lines({"transactions"}), IsEmpty());
  EXPECT_THAT(lines({"finish", "--all"}), IsEmpty());
}

TEST_F(LedgerCommands, FinishWantsEitherATransactionOrAll) {
  EXPECT_EQ(run({"finish"}).exitStatus, 2);
  EXPECT_EQ(run({"finish", "1", "--all"}).exitStatus, 2);
}

TEST_F(LedgerCommands, RestoreBringsBackWhatCanBeHadAgain) {
  run({"buy", "gems"});
  run({"buy", "levels"});

  EXPECT_THAT(
      lines({"restore"}),
      ElementsAre(
          R"({"identifier":"3","transactionIdentifier":"2000000003","productIdentifier":"levels",)"
          R"("quantity":1,"state":"restored","date":DATE,)"
          R"("originalTransactionIdentifier":"2000000002","applicationUsername":"","error":null,)"
          R"("finished":false})",
          R"({"result":"success","restored":1})"));
  EXPECT_THAT(lines({"transactions"}), testing::SizeIs(1));
}

TEST_F(LedgerCommands, RestoreFinishesWhenTold) {
  run({"buy", "levels"});

  run({"restore", "--finish"});

  EXPECT_THAT(lines({"transactions"}), IsEmpty());
}

TEST_F(LedgerCommands, RestoreForAUserLeavesOutWhatOthersBought) {
  run({"buy", "levels", "--user", "ann"});

  EXPECT_THAT(lines({"restore", "--user", "bob"}),
              ElementsAre(R"({"result":"success","restored":0})"));
  EXPECT_THAT(lines({"restore", "--user", "ann"}), testing::SizeIs(2));
}

TEST_F(LedgerCommands, WatchShowsWhatOtherProgramsBuyUntilASignalEndsIt) {
  run(kBuyGems);
  tests::ChildProgram watcher({TQSTORE_PROGRAM, "--config", shop_.path(), "--ledger", ledger_,
                               "--json", "launch", "--watch"});
  EXPECT_EQ(withoutDate(watcher.line()), kGems);

  run({"buy", "levels", "--no-finish"});

  EXPECT_THAT(watcher.line(), testing::HasSubstr(R"("productIdentifier":"levels")"));
  EXPECT_EQ(watcher.end(SIGTERM), SIGTERM);
  EXPECT_THAT(lines({"launch"}), testing::SizeIs(2));
}

TEST_F(LedgerCommands, ALedgerThatIsRefusedIsAnErrorOfTheInput) {
  tests::write(ledger_, "Dear diary,\n");

  const auto answer = run({"transactions"});

  EXPECT_EQ(answer.exitStatus, 2);
  EXPECT_EQ(answer.errors, "tqstore: " + ledger_ + ": is not a ledger\n");
  EXPECT_EQ(tests::bytesOf(ledger_), "Dear diary,\n");
}

TEST_F(LedgerCommands, EachConfigurationHasALedgerInTheStateFolder) {
  const std::vector<std::string> environment = {"XDG_STATE_HOME=" + folder_.path()};
  (void)runTool({"--config", shop_.path(), "buy", "gems", "--no-finish"}, environment);

  const auto again = runTool({"--config", shop_.path(), "--json", "transactions"}, environment);

  EXPECT_EQ(again.lines().size(), 1U);
  EXPECT_TRUE(std::filesystem::is_directory(folder_.file("tqstore")));
}

}  // namespace
