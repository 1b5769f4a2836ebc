#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <fstream>

#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

namespace fs = std::filesystem;
using tests::address;
using tests::download;

class Download : public testing::Test {
 protected:
  tests::HttpServer server;
  tests::DownloadsInFolder downloads;
};

TEST_F(Download, HasTheWholeBodyInAFileInTheDownloadFolder) {
  const auto loaded = download(server.url("/bytes/300000"));

  ASSERT_TRUE(loaded.path) << loaded.message();
  EXPECT_EQ(fs::path(*loaded.path).parent_path(), downloads.path());
  EXPECT_TRUE(loaded.fileBytes == tests::patternedBytes(300000));
  EXPECT_EQ(loaded.status(), 200);
}

TEST_F(Download, OfNothingIsAnEmptyFile) {
  for (const char* path : {"/empty", "/status/204"}) {
    const auto loaded = download(server.url(path));
    EXPECT_TRUE(loaded.path) << path;
    EXPECT_EQ(loaded.fileBytes, "") << path;
  }
}

TEST_F(Download, OfAFailureStatusIsWhatTheServerSaid) {
  const auto loaded = download(server.url("/status/404"));

  EXPECT_EQ(loaded.fileBytes, "status 404");
  EXPECT_EQ(loaded.status(), 404);
}

TEST_F(Download, IsDecompressed) {
  EXPECT_EQ(download(server.url("/gzip")).fileBytes,
            "The quick brown fox jumps over the lazy dog.");
}

TEST_F(Download, FollowsRedirectsWithoutTheBodiesOnTheWay) {
  EXPECT_EQ(download(server.url("/redirect?to=/file/a")).fileBytes, "0123456789");
}

TEST_F(Download, LeavesNoFileBehindUnlessItIsMovedAway) {
  (void)download(server.url("/file/a"));

  EXPECT_TRUE(tests::eventually([&] { return downloads.files() == 0; }));
}

TEST_F(Download, LeavesNoFileBehindWhileItsTaskIsKept) {
  tests::Endings endings;
  const auto task =
      tests::newSession()->downloadTask(address(server.url("/file/a")), endings.forDownload());
  task->resume();
  EXPECT_TRUE(endings.first().path);

  EXPECT_TRUE(tests::eventually([&] { return downloads.files() == 0; }));
}

TEST_F(Download, LeavesAFileThatWasMovedAway) {
  const auto target = downloads.path() + "/kept";
  tests::Endings endings;
  const auto session = tests::newSession();
  session
      ->downloadTask(address(server.url("/file/a")),
                     [&](auto file, auto, auto) {
                       fs::rename(file->path(), target);
                       endings.add({});
                     })
      ->resume();
  (void)endings.first();
  // What comes behind it on the same queue: the first task is over and done with.
  (void)download(*session, server.url("/file/a"));

  EXPECT_EQ(tests::bytesOf(target), "0123456789");
}

TEST_F(Download, LeavesAnotherFileThatStandsInItsPlace) {
  tests::Endings endings;
  std::string path;
  const auto session = tests::newSession();
  session
      ->downloadTask(address(server.url("/file/a")),
                     [&](auto file, auto, auto) {
                       path = file->path();
                       fs::remove(path);
                       tests::write(path, "another");
                       endings.add({});
                     })
      ->resume();
  (void)endings.first();
  (void)download(*session, server.url("/file/a"));

  EXPECT_EQ(tests::bytesOf(path), "another");
}

TEST_F(Download, ThatFailsHasNoFileAndLeavesNone) {
  for (const char* path : {"/early-close", "/early-chunked", "/hang-up", "/redirects/50"}) {
    const auto loaded = download(server.url(path));
    EXPECT_TRUE(loaded.error) << path;
    EXPECT_FALSE(loaded.path) << path;
    EXPECT_EQ(downloads.files(), 0U) << path;
  }
}

TEST_F(Download, CanBeReadByNobodyElseMeanwhile) {
  mode_t mode = 0;
  tests::Endings endings;
  tests::newSession()
      ->downloadTask(address(server.url("/file/a")),
                     [&](auto file, auto, auto) {
                       struct stat found{};
                       ::stat(file->path().c_str(), &found);
                       mode = found.st_mode & 0777U;
                       endings.add({});
                     })
      ->resume();
  (void)endings.first();

  EXPECT_EQ(mode, 0600U);
}

TEST_F(Download, MakesItsFolder) {
  setDownloadFolder(downloads.path() + "/new/folder");

  EXPECT_EQ(download(server.url("/file/a")).fileBytes, "0123456789");
}

TEST_F(Download, FailsWhereNoFileCanBeMade) {
  tests::write(downloads.path() + "/file", "");
  setDownloadFolder(downloads.path() + "/file");
  const auto loaded = download(server.url("/file/a"));

  EXPECT_EQ(loaded.code(), NSURLErrorCannotCreateFile);
  EXPECT_EQ(loaded.message(), "The file for what comes from 127.0.0.1 could not be made.");
  EXPECT_EQ(loaded.error->underlyingError()->localizedDescription(), "Not a directory");
}

TEST_F(Download, HasMoreRoomThanADataTask) {
  setMaximumDataLength(10);

  EXPECT_EQ(download(server.url("/bytes/1000")).fileBytes.size(), 1000U);
}

TEST(DownloadFolder, IsTheOneThatTheEnvironmentNames) {
  ::setenv("TMPDIR", "/one", 1);
  ::setenv("XDG_CACHE_HOME", "/two", 1);
  ::setenv("HOME", "/three", 1);
  EXPECT_EQ(downloadFolder(), "/one");
  ::unsetenv("TMPDIR");
  EXPECT_EQ(downloadFolder(), "/two/TQStoreKitLib");
  ::setenv("XDG_CACHE_HOME", "relative", 1);
  EXPECT_EQ(downloadFolder(), "/three/.cache/TQStoreKitLib");
  ::unsetenv("HOME");
  EXPECT_EQ(downloadFolder(), "/tmp");
}

long peakMemoryInKilobytes() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

TEST_F(Download, TakesTheSameMemoryForAnySize) {
  const auto session = tests::newSession();
  const auto sizeOf = [&](const std::string& url) {
    tests::Endings endings;
    std::uintmax_t size = 0;
    session
        ->downloadTask(address(url),
                       [&](auto file, auto, auto) {
                         size = fs::file_size(file->path());
                         endings.add({});
                       })
        ->resume();
    (void)endings.first();
    return size;
  };
  (void)sizeOf(server.url("/stream/4000000"));
  const auto before = peakMemoryInKilobytes();

  EXPECT_EQ(sizeOf(server.url("/stream/300000000")), 300'000'000U);
  EXPECT_LT(peakMemoryInKilobytes() - before, 30'000);
}

}  // namespace
}  // namespace Foundation
