#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include "tests/fakes/SmallDisk.hpp"
#include "tests/platform/embedded/Foundation/urlsession/Loading.hpp"

namespace Foundation {
namespace {

using tests::download;

class DownloadOnAFullDisk : public testing::Test {
 protected:
  void SetUp() override {
    if (!disk.isThere()) GTEST_SKIP() << "this machine lets no test mount a file system";
    setDownloadFolder(folder.path());
  }

  [[nodiscard]] std::size_t room() const {
    struct statvfs found{};
    ::statvfs(folder.path().c_str(), &found);
    return found.f_bavail * found.f_bsize;
  }
  void expectFailure(const tests::Loaded& loaded) const {
    EXPECT_EQ(loaded.code(), NSURLErrorCannotWriteToFile) << loaded.message();
    EXPECT_FALSE(loaded.path);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
  }

  const tests::TemporaryFolder folder;
  const tests::SmallDisk disk{folder.path()};
  tests::HttpServer server;
};

TEST_F(DownloadOnAFullDisk, FailsAndLeavesNothing) {
  const auto loaded = download(server.url("/bytes/1000000"));

  expectFailure(loaded);
  EXPECT_EQ(loaded.error->underlyingError()->localizedDescription(), "No space left on device");
}

TEST_F(DownloadOnAFullDisk, SucceedsWhenTheLastByteHasRoom) {
  const auto size = room();
  EXPECT_EQ(download(server.url("/bytes/" + std::to_string(size))).fileBytes.size(), size);
}

TEST_F(DownloadOnAFullDisk, FailsWhenOnlyTheLastByteHasNoRoom) {
  expectFailure(download(server.url("/bytes/" + std::to_string(room() + 1))));
}

TEST_F(DownloadOnAFullDisk, FailsAtOnceWhenMoreBytesAreToCome) {
  const auto size = room() + 1;
  server.answer("/begin", [size](auto& exchange) {
    exchange.send(tests::responseHead(200, {{"Content-Length", std::to_string(size + 1)}}));
    exchange.send(tests::patternedBytes(size));
    exchange.waitForGate("never");
    exchange.close();
  });

  expectFailure(download(server.url("/begin")));
}

}  // namespace
}  // namespace Foundation
