#include <sys/wait.h>

#include <array>
#include <cstdio>

#include "tests/tools/ToolOnLedger.hpp"

namespace {

// What real shells make of the scripts. A shell that is not installed is left out.
class CompletionScripts : public tests::ToolOnLedger {
 protected:
  // What `shell` writes when it runs `script`.
  static std::string outputOf(const std::string& shell, const std::string& script) {
    const auto command = shell + " -c '" + script + "' 2>&1";
    std::FILE* const pipe = ::popen(command.c_str(), "r");
    std::string output;
    std::array<char, 4096> bytes{};
    while (const auto count = std::fread(bytes.data(), 1, bytes.size(), pipe)) {
      output.append(bytes.data(), count);
    }
    ::pclose(pipe);
    return output;
  }
  static bool isInstalled(const std::string& shell) {
    return std::system(("command -v " + shell + " > /dev/null").c_str()) == 0;
  }
  std::string scriptFor(const std::string& shell) const {
    const auto path = folder_.file(shell);
    tests::write(path, runTool({"completion", shell}).output);
    return path;
  }
};

TEST_F(CompletionScripts, BashCompletesTheWordAtTheCursor) {
  const auto script = "source " + scriptFor("bash") + "; COMP_WORDS=(" + TQSTORE_PROGRAM +
                      " --config " + shop_.path() + " buy le); COMP_CWORD=4; _tqstore " +
                      TQSTORE_PROGRAM + " 2> /dev/null; echo \"${COMPREPLY[@]}\"";

  EXPECT_EQ(outputOf("bash", script), "levels\n");
}

TEST_F(CompletionScripts, FishCompletesTheWordAtTheCursor) {
  if (!isInstalled("fish")) GTEST_SKIP() << "fish is not installed";
  const auto script = "source " + scriptFor("fish") + "; complete -C \"" + TQSTORE_PROGRAM +
                      " --config " + shop_.path() + " buy le\"";

  EXPECT_EQ(outputOf("HOME=" + folder_.path() + " fish", script), "levels\tNonConsumable\n");
}

TEST_F(CompletionScripts, ZshCompletesTheWordAtTheCursor) {
  if (!isInstalled("zsh")) GTEST_SKIP() << "zsh is not installed";
  // In place of the completion system: what it would be given, and what it would show.
  const auto script = "compdef() { }; _describe() { print -l -- \"${candidates[@]}\" }; source " +
                      scriptFor("zsh") + "; words=(" + TQSTORE_PROGRAM + " --config " +
                      shop_.path() + " buy le); CURRENT=5; _tqstore";

  EXPECT_EQ(outputOf("zsh -f", script), "levels:NonConsumable\n");
}

TEST_F(CompletionScripts, WithJsonAScriptIsOneObject) {
  const auto run = runTool({"--json", "completion", "zsh"});

  ASSERT_EQ(run.lines().size(), 1U);
  EXPECT_EQ(run.json()[0]["shell"], "zsh");
  EXPECT_EQ(run.json()[0]["script"], runTool({"completion", "zsh"}).output);
}

}  // namespace
