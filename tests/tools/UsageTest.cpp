#include <gtest/gtest.h>

#include "tests/tools/ToolRun.hpp"

namespace {

TEST(Usage, HelpNamesTheCommandsOnStandardOutput) {
  const auto run = runTool({"--help"});

  EXPECT_EQ(run.exitStatus, 0);
  for (const char* word : {"products", "buy", "--config", "--json", "EXIT STATUS"}) {
    EXPECT_NE(run.output.find(word), std::string::npos) << word;
  }
}

TEST(Usage, VersionIsOneLine) {
  const auto run = runTool({"--version"});

  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.output.rfind("tqstore ", 0), 0U);
}

TEST(Usage, WrongUsageExitsWithTwoAndSaysWhyOnStandardError) {
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"sell"},
      {"buy"},
      {"--config", "x", "buy", "gems", "--quantity", "many"},
      {"--config", "x", "buy", "gems", "--quantity", "99999999999999999999"},
      {"--config", "x", "buy", "gems", "--fail", "2", "--cancel"},
      {"--config", "x", "products", "--unknown"},
      {"--config", "x", "finish"},
      {"--config", "x", "finish", "1", "--all"},
      {"--config", "x", "approve"},
      {"--config", "x", "decline", "1", "2"},
      {"--config", "x", "refund"},
      {"--config", "x", "resolve"},
      {"--config", "x", "renew"},
      {"--config", "x", "expire", "a", "b"},
      {"--config", "x", "storefront-buy"},
      {"--config", "x", "settings", "a", "b", "c"},
      {"--config", "x", "settings", "timeRate", "0", "--reset"},
      {"check"},
      {"completion"},
      {"completion", "tcsh"},
  };
  for (const auto& arguments : wrong) {
    const auto run = runTool(arguments);
    EXPECT_EQ(run.exitStatus, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(run.output, "") << testing::PrintToString(arguments);
    EXPECT_EQ(run.errors.rfind("tqstore: ", 0), 0U) << testing::PrintToString(arguments);
  }
}

TEST(Usage, NamesTheWordThatIsWrongAndWhatIsNearIt) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> wrong = {
      {{"nonsense"}, "there is no command \"nonsense\"\n(tqstore --help tells more)\n"},
      {{"prodcts"},
       "there is no command \"prodcts\"; did you mean products?\n(tqstore --help tells more)\n"},
      {{"--nonsense"}, "there is no option --nonsense\n(tqstore --help tells more)\n"},
      {{"--jsn", "products"},
       "there is no option --jsn; did you mean --json?\n(tqstore products --help tells more)\n"},
      {{"buy", "a", "--quantty=3"},
       "there is no option --quantty; did you mean --quantity?\n(tqstore buy --help tells "
       "more)\n"},
      {{"decline", "1", "2"},
       "decline has no use for \"2\"\n(tqstore decline --help tells more)\n"},
      {{}, "no command; tqstore --help lists them\n"}};
  for (const auto& [arguments, problem] : wrong) {
    EXPECT_EQ(runTool(arguments).errors, "tqstore: " + problem);
  }
}

TEST(Usage, WithoutAConfigurationItSaysHowToNameOne) {
  for (const char* command : {"products", "transactions", "settings", "events", "reset"}) {
    const auto run = runTool({command});
    EXPECT_EQ(run.exitStatus, 2) << command;
    EXPECT_EQ(run.errors,
              "tqstore: no configuration: name one with --config FILE or TQSTORE_CONFIG\n");
  }
}

TEST(Usage, TheEnvironmentNamesTheConfiguration) {
  const TemporaryFile shop(shopConfiguration());

  EXPECT_EQ(runTool({"--json", "products", "gems"}, {"TQSTORE_CONFIG=" + shop.path()}).exitStatus,
            0);
}

TEST(Usage, GlobalOptionsMayStandBehindTheCommand) {
  const TemporaryFile shop(shopConfiguration());

  EXPECT_EQ(runTool({"products", "gems", "--json", "--config", shop.path()}).json().size(), 1U);
}

}  // namespace
