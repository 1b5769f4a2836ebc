#include "TQStoreKitLib/TQNetworking/DownloadMover.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/Foundation/FileManager.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace TQStoreKitLib {
namespace {

namespace fs = std::filesystem;
using Foundation::URL;
using Options = TQDownloadOptions;
using tests::bytesOf;

constexpr Options kNone;
constexpr Options kRemove = Options::removePreviousFile();
constexpr Options kCreate = Options::createIntermediateDirectories();
constexpr Options kBoth{kRemove, kCreate};

class DownloadMover : public testing::Test {
 protected:
  DownloadMover() { tests::write(path("temporary"), "new"); }

  [[nodiscard]] std::string path(const std::string& name) const { return folder_.file(name); }
  [[nodiscard]] std::optional<Foundation::NSError> moveTo(const std::string& name,
                                                          Options options) const {
    return detail::moveDownload(URL::fileURLWithPath(path("temporary")),
                                {URL::fileURLWithPath(path(name)), options});
  }
  [[nodiscard]] bool isTemporaryThere() const { return fs::exists(path("temporary")); }
  [[nodiscard]] ino_t identityOf(const std::string& name) const {
    struct stat status{};
    EXPECT_EQ(::stat(path(name).c_str(), &status), 0);
    return status.st_ino;
  }

  tests::TemporaryFolder folder_;
};

TEST_F(DownloadMover, MovesTheFile) {
  EXPECT_FALSE(moveTo("a", kNone));
  EXPECT_EQ(bytesOf(path("a")), "new");
  EXPECT_FALSE(isTemporaryThere());
}

TEST_F(DownloadMover, ReplacesAFileWhenAsked) {
  tests::write(path("a"), "old");
  EXPECT_FALSE(moveTo("a", kRemove));
  EXPECT_EQ(bytesOf(path("a")), "new");
}

TEST_F(DownloadMover, ReplacesNoFileUnlessAsked) {
  tests::write(path("a"), "old");
  const auto error = moveTo("a", kCreate);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), Foundation::NSFileWriteFileExistsError);
  EXPECT_EQ(bytesOf(path("a")), "old");
}

TEST_F(DownloadMover, NothingToReplaceIsFine) {
  EXPECT_FALSE(moveTo("a", kRemove));
  EXPECT_EQ(bytesOf(path("a")), "new");
}

TEST_F(DownloadMover, NeverRemovesAFolder) {
  fs::create_directory(path("a"));
  tests::write(path("a/b"), "kept");
  const auto error = moveTo("a", kBoth);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), Foundation::NSFileWriteFileExistsError);
  EXPECT_EQ(bytesOf(path("a/b")), "kept");
}

TEST_F(DownloadMover, NeverRemovesALinkToAFolder) {
  fs::create_directory(path("a"));
  fs::create_symlink(path("a"), path("link"));
  EXPECT_TRUE(moveTo("link", kBoth));
  EXPECT_TRUE(fs::is_symlink(path("link")));
  EXPECT_TRUE(fs::is_empty(path("a")));
}

TEST_F(DownloadMover, ReplacesALinkToAFileAndNotTheFile) {
  tests::write(path("a"), "old");
  fs::create_symlink(path("a"), path("link"));
  EXPECT_FALSE(moveTo("link", kRemove));
  EXPECT_EQ(bytesOf(path("link")), "new");
  EXPECT_EQ(bytesOf(path("a")), "old");
}

TEST_F(DownloadMover, MakesTheFoldersWhenAsked) {
  EXPECT_FALSE(moveTo("a/b/c", kCreate));
  EXPECT_EQ(bytesOf(path("a/b/c")), "new");
}

TEST_F(DownloadMover, MakesNoFoldersUnlessAsked) {
  const auto error = moveTo("a/b/c", kRemove);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), Foundation::NSFileNoSuchFileError);
  EXPECT_FALSE(fs::exists(path("a")));
}

TEST_F(DownloadMover, AFileInThePlaceOfAFolderEndsIt) {
  tests::write(path("a"), "old");
  const auto error = moveTo("a/b", kBoth);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), Foundation::NSFileWriteFileExistsError);
  EXPECT_EQ(bytesOf(path("a")), "old");
  EXPECT_TRUE(isTemporaryThere());
}

TEST_F(DownloadMover, OntoItselfKeepsTheDownloadAsAnotherFile) {
  const auto before = identityOf("temporary");
  EXPECT_FALSE(moveTo("temporary", kBoth));
  EXPECT_EQ(bytesOf(path("temporary")), "new");
  EXPECT_NE(identityOf("temporary"), before);
  const fs::directory_iterator items(folder_.path());
  EXPECT_EQ(std::distance(begin(items), end(items)), 1);
}

TEST_F(DownloadMover, OntoItselfByAnotherPathKeepsTheDownload) {
  fs::create_directory_symlink(folder_.path(), path("link"));
  for (const std::string name : {"./temporary", "/temporary", "link/temporary"}) {
    SCOPED_TRACE(name);
    const auto before = identityOf("temporary");
    EXPECT_FALSE(moveTo(name, kBoth));
    EXPECT_EQ(bytesOf(path("temporary")), "new");
    EXPECT_NE(identityOf("temporary"), before);
  }
}

TEST_F(DownloadMover, OfWhatIsNotThereLeavesThePreviousFile) {
  tests::write(path("a"), "old");
  fs::remove(path("temporary"));
  EXPECT_TRUE(moveTo("a", kBoth));
  EXPECT_EQ(bytesOf(path("a")), "old");
}

// What an earlier one that was killed has left is in the way.
TEST_F(DownloadMover, ThatCannotBeComparedRemovesNothing) {
  tests::write(path("temporary.kept"), "left");
  EXPECT_TRUE(moveTo("./temporary", kBoth));
  EXPECT_EQ(bytesOf(path("temporary")), "new");
}

TEST_F(DownloadMover, OntoItselfIsTakenUnlessItMayBeReplaced) {
  const auto error = moveTo("temporary", kCreate);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), Foundation::NSFileWriteFileExistsError);
}

TEST_F(DownloadMover, ADestinationThatIsNoFilesRemovesNothing) {
  tests::write(path("a"), "old");
  const auto web = *URL::withString("http://example.com" + path("a"));
  EXPECT_TRUE(detail::moveDownload(URL::fileURLWithPath(path("temporary")), {web, kBoth}));
  EXPECT_EQ(bytesOf(path("a")), "old");
  EXPECT_TRUE(isTemporaryThere());
}

}  // namespace
}  // namespace TQStoreKitLib
