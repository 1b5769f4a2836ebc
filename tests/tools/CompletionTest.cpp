#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

class Completion : public tests::ToolOnLedger {
 protected:
  // What the scripts are answered, without what is said on each word.
  std::vector<std::string> wordsFor(std::vector<std::string> typed) const {
    typed.insert(typed.begin(), "complete-words");
    const auto answer = runTool(typed);
    EXPECT_EQ(answer.exitStatus, 0);
    EXPECT_EQ(answer.errors, "");
    auto words = answer.lines();
    for (auto& word : words) word = word.substr(0, word.find('\t'));
    return words;
  }
  std::vector<std::string> behindOptions(const std::vector<std::string>& typed) const {
    auto words = options();
    words.insert(words.end(), typed.begin(), typed.end());
    return wordsFor(words);
  }
};

TEST_F(Completion, BeginsWithTheCommands) {
  EXPECT_THAT(wordsFor({"re"}),
              ElementsAre("words", "restore", "reset", "refund", "resolve", "renew"));
  EXPECT_THAT(wordsFor({""}), testing::Contains("storefront-buy"));
}

TEST_F(Completion, SaysAFewWordsOnACommand) {
  EXPECT_EQ(runTool({"complete-words", "tran"}).lines().at(1),
            "transactions\tShow the transactions that are not finished");
}

TEST_F(Completion, KnowsTheOptionsOfTheProgramAndOfTheCommand) {
  EXPECT_THAT(wordsFor({"--"}), ElementsAre("words", "--config", "--ledger", "--locale", "--json",
                                            "--help", "--version"));
  EXPECT_THAT(wordsFor({"finish", "--"}),
              UnorderedElementsAre("words", "--help", "--all", "--config", "--ledger", "--locale",
                                   "--json", "--version"));
}

TEST_F(Completion, KnowsTheProductsOfTheConfigurationThatIsNamed) {
  EXPECT_THAT(behindOptions({"buy", ""}), ElementsAre("words", "gems", "levels", "pass", "club"));
  EXPECT_THAT(behindOptions({"renew", "c"}), ElementsAre("words", "club"));
}

TEST_F(Completion, KnowsTheProductsOfTheConfigurationInTheEnvironment) {
  const auto answer = runTool({"complete-words", "buy", "g"}, {"TQSTORE_CONFIG=" + shop_.path()});

  EXPECT_EQ(answer.output, "words\ngems\tConsumable\n");
}

TEST_F(Completion, APlaceThatIsTakenIsNotCompletedAgain) {
  EXPECT_THAT(behindOptions({"buy", "gems", ""}), ElementsAre("words"));
  EXPECT_THAT(behindOptions({"products", "gems", "l"}), ElementsAre("words", "levels"));
}

TEST_F(Completion, KnowsTheTransactionsOfTheLedger) {
  run({"buy", "gems", "--ask-to-buy"});
  run({"buy", "levels"});

  EXPECT_THAT(behindOptions({"approve", ""}), ElementsAre("words", "1", "2"));
  EXPECT_EQ(runTool({"complete-words", "--ledger", ledger_, "approve", "1"}).lines().at(1),
            "1\tgems, deferred");
}

TEST_F(Completion, MakesNoLedgerWhereThereIsNone) {
  EXPECT_THAT(behindOptions({"approve", ""}), ElementsAre("words"));

  EXPECT_FALSE(std::filesystem::exists(ledger_));
}

TEST_F(Completion, KnowsTheSettingsAndTheirTruthValues) {
  EXPECT_THAT(wordsFor({"settings", "ask"}), ElementsAre("words", "askToBuyEnabled"));
  EXPECT_THAT(wordsFor({"settings", "askToBuyEnabled", ""}), ElementsAre("words", "true", "false"));
  EXPECT_THAT(wordsFor({"settings", "timeRate", ""}), ElementsAre("words"));
}

TEST_F(Completion, FilesAreLeftToTheShell) {
  EXPECT_THAT(wordsFor({"--config", ""}), ElementsAre("files"));
  EXPECT_THAT(wordsFor({"--config=sh"}), ElementsAre("files"));
  EXPECT_THAT(wordsFor({"--config", "=", "sh"}), ElementsAre("files"));
  EXPECT_THAT(wordsFor({"check", "a", ""}), ElementsAre("files"));
}

TEST_F(Completion, AnOptionsValueIsNoCommand) {
  EXPECT_THAT(wordsFor({"--locale", "buy", "ap"}), ElementsAre("words", "approve"));
  EXPECT_THAT(wordsFor({"--locale=buy", "ap"}), ElementsAre("words", "approve"));
  EXPECT_THAT(behindOptions({"buy", "--user", "ann", "g"}), ElementsAre("words", "gems"));
  EXPECT_THAT(wordsFor({"buy", "--user", ""}), ElementsAre("words"));
}

TEST_F(Completion, KnowsNothingBehindACommandThatIsNone) {
  EXPECT_THAT(wordsFor({"nope", ""}), ElementsAre("words"));
}

TEST_F(Completion, WithoutAnyWordItBeginsWithTheCommands) {
  EXPECT_EQ(wordsFor({}), wordsFor({""}));
}

TEST_F(Completion, WhatCannotBeReadHasNoWords) {
  EXPECT_THAT(wordsFor({"--config", "/nowhere/x", "buy", ""}), ElementsAre("words"));
  EXPECT_THAT(wordsFor({"buy", ""}), ElementsAre("words"));
  EXPECT_THAT(wordsFor({"approve", ""}), ElementsAre("words"));
}

}  // namespace
