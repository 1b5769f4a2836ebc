#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/tools/ToolOnLedger.hpp"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ResetCommand : public tests::ToolOnLedger {
 protected:
  void SetUp() override {
    run({"buy", "gems"});
    run({"buy", "levels", "--no-finish"});
    run({"settings", "askToBuyEnabled", "true"});
  }

  // The exit status of a reset by somebody who sits at a terminal and types this.
  int resetAtTerminal(const std::string& typed) const {
    int terminal = -1;
    const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
      ::execl(TQSTORE_PROGRAM, TQSTORE_PROGRAM, "--config", shop_.path().c_str(), "--ledger",
              ledger_.c_str(), "reset", nullptr);
      ::_exit(127);
    }
    EXPECT_EQ(::write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
    std::array<char, 256> shown{};
    while (::read(terminal, shown.data(), shown.size()) > 0) {
      // Its end is the end of the program.
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ::close(terminal);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
};

TEST_F(ResetCommand, RemovesTransactionsAndSettings) {
  EXPECT_THAT(lines({"reset"}),
              ElementsAre(R"({"result":"success","transactions":2,"settings":1})"));

  EXPECT_THAT(lines({"transactions", "--all"}), IsEmpty());
  EXPECT_THAT(lines({"settings", "askToBuyEnabled"}), ElementsAre(R"({"askToBuyEnabled":false})"));
}

TEST_F(ResetCommand, TellsAPersonWhatWasRemoved) {
  EXPECT_EQ(runForPerson({"reset"}).output, "2 transactions and 1 setting removed\n");
}

TEST_F(ResetCommand, NeverGivesANumberTwice) {
  run({"reset"});
  run({"buy", "gems"});

  EXPECT_NE(transaction("3"), "(none)");
}

TEST_F(ResetCommand, AtATerminalNothingIsRemovedWithoutAYes) {
  for (const char* answer : {"n\n", "\n", "yesterday\n", "\x04"}) {
    EXPECT_EQ(resetAtTerminal(answer), 1) << answer;
  }

  EXPECT_THAT(lines({"transactions", "--all"}), testing::SizeIs(2));
}

TEST_F(ResetCommand, AtATerminalAYesRemovesEverything) {
  EXPECT_EQ(resetAtTerminal("y\n"), 0);

  EXPECT_THAT(lines({"transactions", "--all"}), IsEmpty());
}

}  // namespace
