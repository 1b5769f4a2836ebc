#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>

#include "tests/fakes/TemporaryFolder.hpp"
#include "tests/server/HttpServer.hpp"
#include "tests/tools/ToolRun.hpp"

namespace {

namespace fs = std::filesystem;

class DownloadFileCommand : public testing::Test {
 protected:
  DownloadFileCommand() {
    fs::current_path(folder.path());
    server.answer("/", [](tests::Exchange& exchange) { exchange.respond(200, "home"); });
  }

  ToolRun download(const std::string& path, std::vector<std::string> more = {}) const {
    more.insert(more.begin(), {"download-file", server.url(path)});
    return runTool(more);
  }
  [[nodiscard]] std::size_t files() const {
    const fs::directory_iterator entries(folder.path());
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
  }
  [[nodiscard]] std::string bytesOf(const std::string& name) const {
    return tests::bytesOf(folder.file(name));
  }

  tests::HttpServer server;
  tests::TemporaryFolder folder;
};

TEST_F(DownloadFileCommand, PutsTheFileIntoTheCurrentFolderUnderTheServersName) {
  const auto run = download("/file/maps.zip");

  EXPECT_EQ(bytesOf("maps.zip"), "0123456789");
  EXPECT_EQ(run.output, "Downloaded 10 bytes to " + folder.file("maps.zip") + "\n");
  EXPECT_EQ(run.errors, "");
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(files(), 1U);
}

TEST_F(DownloadFileCommand, TakesTheNameWhereRedirectsLead) {
  (void)download("/redirect?to=/file/real.zip");

  EXPECT_EQ(bytesOf("real.zip"), "0123456789");
}

TEST_F(DownloadFileCommand, PutsTheFileIntoAFolderThatIsThereOrHasASlash) {
  fs::create_directory("there");
  (void)download("/file/a", {"there"});
  (void)download("/file/a", {"new/one/"});

  EXPECT_EQ(bytesOf("there/a"), "0123456789");
  EXPECT_EQ(bytesOf("new/one/a"), "0123456789");
}

TEST_F(DownloadFileCommand, PutsItWhereADestinationSays) {
  (void)download("/file/a", {"new/name"});

  EXPECT_EQ(bytesOf("new/name"), "0123456789");
}

TEST_F(DownloadFileCommand, FindsANameWhereTheAddressHasNone) {
  for (const std::string destination : {"", "new/", "new/one"}) {
    SCOPED_TRACE(destination);
    const auto run = download("/?a=b", {destination, "--replace"});
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.exitStatus, 0);
  }

  EXPECT_EQ(bytesOf("download"), "home");
  EXPECT_EQ(bytesOf("new/download"), "home");
  EXPECT_EQ(bytesOf("new/one"), "home");
}

TEST_F(DownloadFileCommand, LeavesAFileThatIsThere) {
  tests::write("a", "mine");
  const auto run = download("/file/a");

  EXPECT_EQ(bytesOf("a"), "mine");
  EXPECT_NE(run.errors, "");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(files(), 1U);
}

TEST_F(DownloadFileCommand, ReplacesAFileWhenItIsTold) {
  tests::write("a", "mine");

  EXPECT_EQ(download("/file/a", {"--replace"}).exitStatus, 0);
  EXPECT_EQ(bytesOf("a"), "0123456789");
}

TEST_F(DownloadFileCommand, NeverReplacesAFolder) {
  fs::create_directories("b/a/c");

  EXPECT_EQ(download("/file/a", {"b", "--replace"}).exitStatus, 1);
  EXPECT_TRUE(fs::is_directory("b/a/c"));
}

TEST_F(DownloadFileCommand, SaysAFailureStatusAndKeepsWhatTheServerSent) {
  const auto run = download("/status/404", {"page"});

  EXPECT_EQ(run.errors, "tqstore: the server answered with status 404\n");
  EXPECT_EQ(bytesOf("page"), "status 404");
  EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(DownloadFileCommand, LeavesNothingWhenItFails) {
  const auto run = download("/early-close", {"a"});

  EXPECT_EQ(run.errors, "tqstore: The connection to 127.0.0.1 was lost.\n");
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.exitStatus, 1);
  EXPECT_EQ(files(), 0U);
}

TEST_F(DownloadFileCommand, TellsAProgramInOneObject) {
  const auto run = download("/file/a", {"--json"});

  EXPECT_EQ(run.output, R"({"file":")" + folder.file("a") + R"(","bytes":10,"status":200})" + "\n");
}

TEST_F(DownloadFileCommand, GivesTheFileUsualPermissions) {
  const auto before = ::umask(027);
  (void)download("/file/a");
  ::umask(before);
  struct stat found{};
  ::stat("a", &found);

  EXPECT_EQ(found.st_mode & 0777U, 0640U);
}

TEST_F(DownloadFileCommand, RefusesWhatIsNoAddress) {
  EXPECT_EQ(runTool({"download-file", "maps.zip"}).exitStatus, 2);
}

TEST_F(DownloadFileCommand, LeavesNothingWhenItIsInterrupted) {
  const pid_t child = ::fork();
  if (child == 0) {
    const auto url = server.url("/stall");
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDERR_FILENO);
    ::execl(TQSTORE_PROGRAM, "tqstore", "download-file", url.c_str(), nullptr);
    ::_exit(127);
  }
  ASSERT_TRUE(server.waitForRequests(1));
  while (files() == 0) ::usleep(1000);
  ::kill(child, SIGINT);
  int status = 0;
  ::waitpid(child, &status, 0);

  EXPECT_EQ(files(), 0U);
  EXPECT_NE(status, 0);
}

// What the program writes on a terminal of 80 columns, escapes and all.
std::string onATerminal(const std::string& url) {
  int terminal = -1;
  winsize size{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
  const pid_t child = ::forkpty(&terminal, nullptr, nullptr, &size);
  if (child == 0) {
    ::execl(TQSTORE_PROGRAM, "tqstore", "download-file", url.c_str(), nullptr);
    ::_exit(127);
  }
  std::string text;
  std::array<char, 4096> bytes{};
  for (;;) {
    const auto count = ::read(terminal, bytes.data(), bytes.size());
    if (count <= 0) break;
    text.append(bytes.data(), static_cast<std::size_t>(count));
  }
  ::close(terminal);
  ::waitpid(child, nullptr, 0);
  return text;
}

TEST_F(DownloadFileCommand, ShowsAPersonHowFarItHasCome) {
  const auto text = onATerminal(server.url("/bytes/2000000"));

  EXPECT_NE(text.find("2000000"), std::string::npos);  // the name of it
  EXPECT_NE(text.find("2.0 MB of 2.0 MB"), std::string::npos) << text;
  EXPECT_NE(text.find("100%"), std::string::npos);
  EXPECT_NE(text.find("\r\033[KDownloaded 2.0 MB to "), std::string::npos) << text;
}

TEST_F(DownloadFileCommand, ShowsThePersonTheBytesWhenTheLengthIsNotKnown) {
  const auto text = onATerminal(server.url("/no-length/2000000"));

  EXPECT_NE(text.find("\r2000000  "), std::string::npos) << text;
  EXPECT_EQ(text.find('%'), std::string::npos);
}

}  // namespace
