#include <gmock/gmock.h>

#include "tests/tools/ToolRun.hpp"

namespace {

using testing::HasSubstr;

// Those that `tqstore --help` lists: behind four spaces, in front of what they do.
std::vector<std::string> commands() {
  std::vector<std::string> names;
  bool listed = false;
  for (const auto& line : runTool({"--help"}).lines()) {
    if (line == "COMMANDS") listed = true;
    if (line == "OPTIONS") listed = false;
    const bool isCommand =
        listed && line.rfind("    ", 0) == 0 && line.size() > 4 && line[4] != ' ';
    if (isCommand) names.push_back(line.substr(4, line.find(' ', 4) - 4));
  }
  return names;
}

TEST(Help, ListsEveryCommand) {
  for (const char* command :
       {"products", "settings", "check", "buy", "restore", "launch", "transactions", "finish",
        "events", "reset", "approve", "decline", "refund", "resolve", "storefront-buy", "renew",
        "expire", "completion"}) {
    EXPECT_THAT(commands(), testing::Contains(command));
  }
}

TEST(Help, OfTheProgramHasTheSectionsOfAManualPage) {
  const auto run = runTool({"--help"});

  EXPECT_EQ(run.exitStatus, 0);
  for (const char* title :
       {"NAME\n", "\nSYNOPSIS\n", "\nDESCRIPTION\n", "\nCOMMANDS\n", "\nOPTIONS\n",
        "\nEXIT STATUS\n", "\nENVIRONMENT\n", "\nFILES\n", "\nEXAMPLES\n"}) {
    EXPECT_THAT(run.output, HasSubstr(title));
  }
}

TEST(Help, OfEachCommandHasTheSectionsOfAManualPage) {
  for (const auto& command : commands()) {
    const auto run = runTool({command, "--help"});
    EXPECT_EQ(run.exitStatus, 0) << command;
    EXPECT_EQ(run.errors, "") << command;
    EXPECT_THAT(run.output, testing::StartsWith("NAME\n  tqstore " + command + " - "));
    EXPECT_THAT(run.output, HasSubstr("\nSYNOPSIS\n  tqstore [OPTION...] " + command));
    for (const char* title : {"\nDESCRIPTION\n", "\nOPTIONS OF EVERY COMMAND\n", "\nEXIT STATUS\n",
                              "\nENVIRONMENT\n", "\nEXAMPLES\n"}) {
      EXPECT_THAT(run.output, HasSubstr(title)) << command;
    }
  }
}

TEST(Help, NamesArgumentsAsTheyAreToBeGiven) {
  EXPECT_THAT(runTool({"products", "--help"}).output,
              HasSubstr("tqstore [OPTION...] products [PRODUCT...]\n"));
  EXPECT_THAT(runTool({"settings", "--help"}).output,
              HasSubstr("tqstore [OPTION...] settings [OPTION...] [KEY] [VALUE]\n"));
  EXPECT_THAT(runTool({"approve", "--help"}).output,
              HasSubstr("tqstore [OPTION...] approve TRANSACTION\n"));
  EXPECT_THAT(runTool({"finish", "--help"}).output,
              HasSubstr("tqstore [OPTION...] finish (TRANSACTION | --all)\n"));
  EXPECT_THAT(runTool({"check", "--help"}).output,
              HasSubstr("tqstore [OPTION...] check FILE...\n"));
}

TEST(Help, OfWhatCanBeRefusedTellsWhenTheStatusIsOne) {
  for (const char* command : {"buy", "restore", "launch", "products", "finish", "reset"}) {
    EXPECT_THAT(runTool({command, "--help"}).output, HasSubstr("\n  1  ")) << command;
  }
}

TEST(Help, ShowsOptionsWithTheirValuesAndDefaults) {
  EXPECT_THAT(runTool({"buy", "--help"}).output,
              HasSubstr("\n  --quantity N  How many; the store sells 1 to 10 at once "
                        "(default: 1).\n"));
}

TEST(Help, FitsIntoEightyColumns) {
  auto pages = commands();
  pages.emplace_back("--version");
  for (const auto& page : pages) {
    for (const auto& line : runTool({page, "--help"}).lines()) {
      EXPECT_LE(line.size(), 80U) << page << ": " << line;
    }
  }
}

TEST(Help, NeedsNeitherAConfigurationNorALedger) {
  EXPECT_EQ(runTool({"--config", "/nowhere/x", "buy", "--help"}).exitStatus, 0);
}

}  // namespace
