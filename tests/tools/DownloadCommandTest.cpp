#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "tests/tools/RunningTool.hpp"
#include "tests/tools/ToolOnLedger.hpp"

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

// The shop hosts two files for "levels".
class DownloadCommand : public tests::ToolOnLedger {
 protected:
  void SetUp() override {
    ::setenv("XDG_CACHE_HOME", folder_.file("caches").c_str(), 1);
    fs::create_directories(hosted() + "/more");
    tests::write(hosted() + "/first", "one");
    tests::write(hosted() + "/more/second", "two");
    run({"settings", "hostedContent.levels", hosted()});
  }

  [[nodiscard]] std::string hosted() const { return folder_.file("hosted"); }

  void expectContent(const std::string& folder) const {
    EXPECT_EQ(tests::bytesOf(folder + "/first"), "one") << folder;
    EXPECT_EQ(tests::bytesOf(folder + "/more/second"), "two") << folder;
  }

  [[nodiscard]] bool isAnythingArriving() const {
    std::error_code gone;
    fs::recursive_directory_iterator item(folder_.file("caches"), gone);
    for (; !gone && item != fs::recursive_directory_iterator(); item.increment(gone)) {
      if (item->path().filename().string().starts_with(".arriving")) return true;
    }
    return false;
  }
};

TEST_F(DownloadCommand, PrintsTheFolderWithTheFiles) {
  run({"buy", "levels", "--no-finish"});
  const auto answer = runForPerson({"download", "1"});
  EXPECT_EQ(answer.exitStatus, 0) << answer.errors;
  EXPECT_EQ(answer.errors, "");
  ASSERT_EQ(answer.lines().size(), 1U);
  EXPECT_THAT(answer.lines()[0], StartsWith(folder_.file("caches") + "/"));
  expectContent(answer.lines()[0]);
}

TEST_F(DownloadCommand, SaysEverythingInJson) {
  run({"buy", "levels", "--no-finish"});
  run({"settings", "hostedContentVersion.levels", "2.1"});
  const auto answer = run({"download", "2000000001"}).json().at(0);
  const auto folder = answer.at("folder").get<std::string>();
  expectContent(folder);
  EXPECT_EQ(answer.dump(),
            R"({"identifier":"1","productIdentifier":"levels","contentVersion":"2.1",)"
            R"("contentLength":6,"contentURL":"file://)" +
                fs::path(folder).parent_path().string() + R"(","folder":")" + folder + "\"}");
}

TEST_F(DownloadCommand, CopiesToADestination) {
  run({"buy", "levels", "--no-finish"});
  const auto destination = folder_.file("here");
  EXPECT_THAT(runForPerson({"download", "1", destination}).lines(), ElementsAre(destination));
  expectContent(destination);
}

TEST_F(DownloadCommand, RefusesADestinationThatIsThere) {
  run({"buy", "levels", "--no-finish"});
  tests::write(folder_.file("here"), "mine");
  expectRefused({"download", "1", folder_.file("here")},
                folder_.file("here") + " is there already");
  EXPECT_EQ(tests::bytesOf(folder_.file("here")), "mine");
}

TEST_F(DownloadCommand, ContentIsGoneAfterTheFinish) {
  run({"buy", "levels", "--no-finish"});
  const auto folder = runForPerson({"download", "1"}).lines().at(0);
  run({"finish", "1"});
  EXPECT_FALSE(fs::exists(folder));
  expectRefused({"download", "1"}, "transaction 1 is finished: nothing can be downloaded");
}

TEST_F(DownloadCommand, LeavesTheTransactionAndTheRestOfTheQueueAsTheyAre) {
  run({"buy", "levels", "--no-finish"});
  run({"storefront-buy", "gems"});
  const auto before = lines({"transactions", "--all"});
  run({"download", "1"});
  EXPECT_EQ(lines({"transactions", "--all"}), before);
  EXPECT_EQ(before.size(), 2U);
}

TEST_F(DownloadCommand, RefusesWhatHasNothingToDownload) {
  run({"buy", "gems", "--no-finish"});
  run({"buy", "levels", "--no-finish", "--cancel"});
  expectRefused({"download", "7"}, "there is no transaction 7");
  expectRefused({"download", "1"},
                "transaction 1 is purchased and gems has no hosted content for it");
}

TEST_F(DownloadCommand, SaysWhyADownloadFails) {
  run({"buy", "levels", "--no-finish"});
  fs::create_symlink("/etc/passwd", hosted() + "/link");
  const auto answer = run({"download", "1"});
  EXPECT_EQ(answer.exitStatus, 1);
  EXPECT_EQ(answer.output, "");
  EXPECT_THAT(answer.errors, HasSubstr(hosted() + "/link” is a symbolic link"));
}

TEST_F(DownloadCommand, InterruptedOneLeavesNothing) {
  run({"buy", "levels", "--no-finish"});
  run({"settings", "downloadSpeed", "1"});
  auto words = options();
  words.insert(words.end(), {"download", "1"});
  RunningTool tool(words);
  while (!isAnythingArriving()) std::this_thread::yield();
  EXPECT_EQ(tool.end(SIGINT), 1);
  EXPECT_FALSE(isAnythingArriving());
}

TEST_F(DownloadCommand, WantsATransaction) {
  EXPECT_EQ(run({"download"}).exitStatus, 2);
  EXPECT_EQ(run({"download", "1", "a", "b"}).exitStatus, 2);
}

}  // namespace
