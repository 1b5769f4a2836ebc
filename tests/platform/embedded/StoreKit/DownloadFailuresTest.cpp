#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Foundation/FileManager.hpp"
#include "tests/fakes/DownloadShop.hpp"
#include "tests/fakes/SmallDisk.hpp"

namespace StoreKit {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::turn;
using tests::turnUntilIdle;

constexpr uid_t kNobody = 65534;

class DownloadFailures : public testing::Test {
 protected:
  tests::DownloadShop shop;
  tests::DownloadObserver observer;
  SKDownloadPtr crown = shop.buy("crown");

  static SKPaymentQueue& queue() { return tests::DownloadShop::queue(); }

  void start() const {
    queue().startDownloads({crown});
    (void)turnUntilIdle();
  }

  void expectFailure(std::int64_t code, const std::string& text) const {
    EXPECT_EQ(crown->state(), SKDownloadState::failed);
    ASSERT_TRUE(crown->error().has_value());
    EXPECT_EQ(crown->error()->domain(), "NSCocoaErrorDomain");
    EXPECT_EQ(crown->error()->code(), code);
    EXPECT_THAT(crown->error()->localizedDescription(), HasSubstr(text));
    EXPECT_EQ(crown->contentURL(), std::nullopt);
    EXPECT_THAT(shop.arrived(), IsEmpty());
  }

  // Nothing but empty folders, also no hidden one.
  [[nodiscard]] bool leftNothing() const {
    for (const auto& item : fs::recursive_directory_iterator(shop.caches())) {
      if (!item.is_directory() || item.path().filename().string().starts_with(".")) return false;
    }
    return true;
  }
};

TEST_F(DownloadFailures, OrderedOneComesHalfWay) {
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7));
  start();
  EXPECT_THAT(*observer.journal,
              ElementsAre("crown active 0%", "crown active 25%", "crown failed 50%"));
  EXPECT_EQ(crown->error()->domain(), "Net");
  EXPECT_EQ(crown->error()->code(), 7);
  EXPECT_TRUE(leftNothing());
}

TEST_F(DownloadFailures, OrderedOneComesHalfWayThroughALargeFile) {
  shop.host("gems", {{"film", std::string(999, 'f')}});
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7));
  const auto gems = shop.buy("gems");
  queue().startDownloads({gems});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({gems}), "gems failed 50%");
}

TEST_F(DownloadFailures, OrderedOneComesHalfWayAlsoByTheClock) {
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7));
  (void)shop.shop.session.setDownloadSpeed(10);
  start();
  shop.moveClock(4.9);
  EXPECT_EQ(tests::describe({crown}), "crown active 49%");
  shop.moveClock(100);
  EXPECT_EQ(tests::describe({crown}), "crown failed 50%");
}

TEST_F(DownloadFailures, OrderedOneFailsEmptyContentToo) {
  shop.host("gems", {});
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7));
  const auto gems = shop.buy("gems");
  queue().startDownloads({gems});
  (void)turnUntilIdle();
  EXPECT_EQ(gems->state(), SKDownloadState::failed);
}

TEST_F(DownloadFailures, AreTakenInTheOrderOfTheStarts) {
  const auto cape = shop.buy("cape");
  const auto second = shop.buy("cape");
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7), 2);
  queue().startDownloads({cape, crown});
  queue().startDownloads({second});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({cape, crown, second}),
            "cape failed 50%, crown failed 50%, cape finished 100%");
}

TEST_F(DownloadFailures, AStartThatIsIgnoredTakesNone) {
  start();
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7));
  start();
  const auto cape = shop.buy("cape");
  queue().startDownloads({cape});
  (void)turnUntilIdle();
  EXPECT_EQ(tests::describe({crown, cape}), "crown finished 100%, cape failed 50%");
}

TEST_F(DownloadFailures, CanBeOrderedForAlwaysAndTakenBack) {
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7), kAlways);
  start();
  start();
  EXPECT_EQ(crown->state(), SKDownloadState::failed);
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7), 0);
  start();
  EXPECT_EQ(crown->state(), SKDownloadState::finished);
}

TEST_F(DownloadFailures, AnotherStartBeginsFromNothingWithoutTheError) {
  shop.shop.session.failDownloads(Foundation::NSError("Net", 7));
  start();
  observer.journal->clear();
  queue().startDownloads({crown});
  turn();
  EXPECT_THAT(*observer.journal, ElementsAre("crown active 0%"));
  EXPECT_FALSE(crown->error().has_value());
  (void)turnUntilIdle();
  EXPECT_EQ(tests::filesIn(tests::contentFolder(*crown) + "/Contents"),
            tests::filesIn(shop.hosted("crown")));
}

TEST_F(DownloadFailures, MissingFolder) {
  fs::remove_all(shop.hosted("crown"));
  start();
  EXPECT_THAT(*observer.journal, ElementsAre("crown active 0%", "crown failed 0%"));
  expectFailure(Foundation::NSFileReadNoSuchFileError,
                shop.hosted("crown") + "” can’t be read: No such file or directory");
}

TEST_F(DownloadFailures, MissingFolderThatIsThereAgainCanBeDownloaded) {
  fs::rename(shop.hosted("crown"), shop.hosted("elsewhere"));
  start();
  fs::rename(shop.hosted("elsewhere"), shop.hosted("crown"));
  start();
  EXPECT_EQ(crown->state(), SKDownloadState::finished);
}

TEST_F(DownloadFailures, FileThatGoesAwayMeanwhile) {
  queue().startDownloads({crown});
  turn();
  turn();
  fs::remove(shop.hosted("crown") + "/more/d");
  (void)turnUntilIdle();
  expectFailure(Foundation::NSFileReadNoSuchFileError, "more/d” can’t be read");
  EXPECT_TRUE(leftNothing());
}

TEST_F(DownloadFailures, FileThatGrowsMeanwhile) {
  queue().startDownloads({crown});
  turn();
  turn();
  tests::write(shop.hosted("crown") + "/more/c", std::string(26, 'c'));
  (void)turnUntilIdle();
  expectFailure(Foundation::NSFileReadUnknownError, "more/c” was changed while it was downloaded");
}

TEST_F(DownloadFailures, FileThatIsCutShortWhileItIsCopied) {
  shop.host("gems", {{"film", std::string(1024 * 1024, 'f')}});
  crown = shop.buy("gems");
  queue().startDownloads({crown});
  turn();
  turn();
  tests::write(shop.hosted("gems") + "/film", "short");
  (void)turnUntilIdle();
  expectFailure(Foundation::NSFileReadUnknownError, "film” was changed while it was downloaded");
}

TEST_F(DownloadFailures, UnreadableFile) {
  const auto user = ::geteuid();
  fs::permissions(shop.hosted("crown") + "/b", fs::perms::none);
  fs::create_directories(shop.caches());
  for (const auto& path : {shop.folder.path(), shop.caches()}) {
    fs::permissions(path, fs::perms::all);
  }
  // Nothing is unreadable for root.
  ASSERT_EQ(::seteuid(user == 0 ? kNobody : user), 0);
  start();
  ASSERT_EQ(::seteuid(user), 0);
  expectFailure(Foundation::NSFileReadNoPermissionError, "/b” can’t be read: Permission denied");
  EXPECT_TRUE(leftNothing());
}

TEST_F(DownloadFailures, SymbolicLinkInTheContent) {
  tests::write(shop.folder.file("secret"), "secret");
  fs::create_symlink(shop.folder.file("secret"), shop.hosted("crown") + "/more/link");
  start();
  expectFailure(Foundation::NSFileReadUnknownError, "more/link” is a symbolic link");
}

TEST_F(DownloadFailures, SymbolicLinkThatTakesThePlaceOfAFile) {
  tests::write(shop.folder.file("secret"), std::string(25, 's'));
  queue().startDownloads({crown});
  turn();
  turn();
  fs::remove(shop.hosted("crown") + "/more/d");
  fs::create_symlink(shop.folder.file("secret"), shop.hosted("crown") + "/more/d");
  (void)turnUntilIdle();
  EXPECT_EQ(crown->state(), SKDownloadState::failed);
  EXPECT_THAT(shop.arrived(), IsEmpty());
}

TEST_F(DownloadFailures, PipeInTheContentIsNotWaitedFor) {
  ASSERT_EQ(::mkfifo((shop.hosted("crown") + "/pipe").c_str(), 0600), 0);
  start();
  expectFailure(Foundation::NSFileReadUnknownError, "/pipe” is neither a file nor a folder");
}

TEST_F(DownloadFailures, FolderItselfMayBeALink) {
  fs::rename(shop.hosted("crown"), shop.hosted("elsewhere"));
  fs::create_directory_symlink(shop.hosted("elsewhere"), shop.hosted("crown"));
  start();
  EXPECT_EQ(crown->state(), SKDownloadState::finished);
}

TEST_F(DownloadFailures, FileInPlaceOfTheCaches) {
  tests::write(shop.caches(), "in the way");
  start();
  EXPECT_EQ(crown->state(), SKDownloadState::failed);
  EXPECT_THAT(crown->error()->localizedDescription(), HasSubstr("can’t be made"));
  EXPECT_EQ(tests::bytesOf(shop.caches()), "in the way");
}

TEST_F(DownloadFailures, FullDisk) {
  fs::create_directories(shop.caches());
  const tests::SmallDisk disk(shop.caches());
  if (!disk.isThere()) GTEST_SKIP() << "this machine lets nobody make a disk";
  shop.host("gems", {{"small", "s"}, {"toolarge", std::string(300 * 1024, 'f')}});
  crown = shop.buy("gems");
  start();
  expectFailure(Foundation::NSFileWriteOutOfSpaceError, "can’t be written: No space left");
  EXPECT_TRUE(leftNothing());
}

}  // namespace
}  // namespace StoreKit
