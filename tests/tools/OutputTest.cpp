#include "tests/tools/RunningTool.hpp"
#include "tests/tools/ToolOnLedger.hpp"

namespace {

// What the tool says on standard error when its standard output is a full disk.
class OutputOnAFullDisk : public tests::ToolOnLedger {
 protected:
  void expectComplaint(const std::string& arguments) const {
    const auto command = std::string(TQSTORE_PROGRAM) + " --config " + shop_.path() + " --ledger " +
                         ledger_ + " " + arguments + " 2>&1 >/dev/full";
    RunningTool shell("/bin/sh", {"-c", command});
    EXPECT_EQ(shell.line(),
              "tqstore: standard output cannot be written to: No space left on device")
        << arguments;
    EXPECT_EQ(shell.line(), "(nothing)") << arguments;
    EXPECT_EQ(shell.end(0), 1) << arguments;
  }
};

TEST_F(OutputOnAFullDisk, IsSaidOnceAndEndsWithOne) {
  for (const char* arguments :
       {"--help", "buy --help", "products", "--json settings", "completion bash"}) {
    expectComplaint(arguments);
  }
}

TEST_F(OutputOnAFullDisk, EndsWhatWouldGoOnForEver) {
  run({"buy", "gems", "--no-finish"});

  expectComplaint("--json launch --watch");
  expectComplaint("--json events --unfinished");
}

using Output = tests::ToolOnLedger;

TEST_F(Output, ShowsNoByteThatDrivesATerminal) {
  EXPECT_EQ(runForPerson({"products", "a\xff\x1b\xc2\x9b\xed\xa0\x80\x7f\xc3\xa9"}).errors,
            "tqstore: the store does not know the product "
            "\"a\\xff\\x1b\\xc2\\x9b\\xed\\xa0\\x80\\x7f\xc3\xa9\"\n");
}

TEST_F(Output, WhatTheLibraryPrintsIsOnStandardError) {
  const auto bought = runForPerson({"buy", "gems", "--no-finish"});

  EXPECT_EQ(bought.output.find("TQStoreKit"), std::string::npos);
  EXPECT_THAT(bought.errors, testing::HasSubstr("TQStoreKit.completeTransactions() should be"));
}

}  // namespace
