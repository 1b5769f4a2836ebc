#include "tests/tools/RefusingLedger.hpp"
#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using tests::TransactionLine;

class RestoreCommand : public tests::ToolOnLedger {};

std::string levels(const char* identifier) {
  return TransactionLine{identifier, "levels", "restored", false, "2000000001"};
}

TEST_F(RestoreCommand, BringsBackWhatCanBeHadAgain) {
  run({"buy", "levels"});
  run({"buy", "gems"});

  EXPECT_THAT(lines({"restore"}), ElementsAre(levels("3"), R"({"result":"success","restored":1})"));
  EXPECT_THAT(lines({"transactions"}), ElementsAre(levels("3")));
}

TEST_F(RestoreCommand, FinishesWhenTold) {
  run({"buy", "levels"});

  run({"restore", "--finish"});

  EXPECT_THAT(lines({"transactions"}), IsEmpty());
}

TEST_F(RestoreCommand, ShowsOnlyWhatThisRestoreBrings) {
  run({"buy", "levels"});
  run({"restore"});

  EXPECT_THAT(lines({"restore"}), ElementsAre(levels("3"), R"({"result":"success","restored":1})"));
}

TEST_F(RestoreCommand, LeavesWhatAnEarlierRestoreBroughtUnfinished) {
  run({"buy", "levels"});
  run({"restore"});

  run({"restore", "--finish"});

  EXPECT_THAT(lines({"transactions"}), ElementsAre(levels("2")));
}

TEST_F(RestoreCommand, ForAUserLeavesOutWhatOthersBought) {
  run({"buy", "levels", "--user", "ann"});

  EXPECT_THAT(lines({"restore", "--user", "bob"}),
              ElementsAre(R"({"result":"success","restored":0})"));
  EXPECT_THAT(lines({"restore", "--user", "ann"}), testing::SizeIs(2));
}

TEST_F(RestoreCommand, ForAUserLeavesOutWhatWasRestoredForAnother) {
  run({"buy", "levels", "--user", "ann"});
  run({"restore", "--user", "ann"});

  EXPECT_THAT(lines({"restore", "--user", "bob"}),
              ElementsAre(R"({"result":"success","restored":0})"));
}

TEST_F(RestoreCommand, TellsAPersonHowManyThereWere) {
  run({"buy", "levels"});

  EXPECT_EQ(
      runForPerson({"restore", "--finish"}).lines(),
      (std::vector<std::string>{"delivered  restored  1 x levels, transaction 2000000002, finished",
                                "result     1 restored"}));
}

TEST_F(RestoreCommand, AFinishThatTheLedgerRefusesIsSaidAndEndsWithOne) {
  run({"buy", "levels"});
  tests::refuseChanges(ledger_, "new.finished = 1 AND new.state = 3");

  const auto answer = run({"restore", "--finish"});

  EXPECT_EQ(answer.exitStatus, 1);
  EXPECT_EQ(answer.json().at(0)["finished"], false);
  EXPECT_THAT(answer.errors,
              testing::HasSubstr("the finish of transaction 2 could not be written"));
}

TEST_F(RestoreCommand, LeavesAPurchaseBegunInTheStoreToTheApplication) {
  run({"storefront-buy", "levels"});

  run({"restore"});

  EXPECT_THAT(lines({"launch"}), testing::Contains(testing::HasSubstr("storePurchase")));
}

}  // namespace
