#include "platform/Foundation/FileManager.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "tests/fakes/TemporaryFolder.hpp"

namespace Foundation {
namespace {

namespace fs = std::filesystem;
using Kind = FileManager::Kind;
using tests::bytesOf;

class FileManagerTest : public testing::Test {
 protected:
  [[nodiscard]] std::string path(const std::string& name) const { return folder_.file(name); }
  [[nodiscard]] URL url(const std::string& name) const { return URL::fileURLWithPath(path(name)); }
  void write(const std::string& name, const std::string& bytes = "bytes") const {
    tests::write(path(name), bytes);
  }
  [[nodiscard]] static FileManager& files() { return FileManager::defaultManager(); }
  [[nodiscard]] std::size_t countOfItems() const {
    const fs::directory_iterator items(folder_.path());
    return static_cast<std::size_t>(std::distance(begin(items), end(items)));
  }

  // From now on nothing can be written into the folder, whoever runs the test.
  [[nodiscard]] bool forbid(const std::string& name) const {
    fs::permissions(folder_.path(), fs::perms::all);
    fs::permissions(path(name), fs::perms::all & ~(fs::perms::owner_write | fs::perms::group_write |
                                                   fs::perms::others_write));
    return ::geteuid() != 0 || (::setegid(65534) == 0 && ::seteuid(65534) == 0);
  }
  void TearDown() override {
    EXPECT_TRUE(::getuid() != 0 || (::seteuid(0) == 0 && ::setegid(0) == 0));
    for (const auto& item : fs::directory_iterator(folder_.path())) {
      if (item.is_directory()) fs::permissions(item, fs::perms::owner_all);
    }
  }

  tests::TemporaryFolder folder_;
};

void expectCode(const std::optional<NSError>& error, NSFileErrorCode code) {
  ASSERT_TRUE(error);
  EXPECT_EQ(error->domain(), "NSCocoaErrorDomain");
  EXPECT_EQ(error->code(), code) << error->localizedDescription();
}

// --- what is there ---

TEST_F(FileManagerTest, TellsFilesFromFoldersAndNothing) {
  write("file");
  EXPECT_EQ(files().kind(path("file")), Kind::file);
  EXPECT_EQ(files().kind(folder_.path()), Kind::folder);
  EXPECT_EQ(files().kind(path("nothing")), Kind::nothing);
  EXPECT_EQ(files().kind(""), Kind::nothing);
}

TEST_F(FileManagerTest, FollowsSymbolicLinks) {
  fs::create_symlink(folder_.path(), path("to-folder"));
  fs::create_symlink(path("nowhere"), path("to-nowhere"));
  EXPECT_EQ(files().kind(path("to-folder")), Kind::folder);
  EXPECT_FALSE(files().fileExists(path("to-nowhere")));
}

TEST_F(FileManagerTest, FindsNothingUnderAPathWithANul) {
  EXPECT_FALSE(files().fileExists(folder_.path() + std::string("\0x", 2)));
}

// --- removing ---

TEST_F(FileManagerTest, RemovesAFile) {
  write("file");
  EXPECT_FALSE(files().removeItem(url("file")));
  EXPECT_FALSE(fs::exists(path("file")));
}

TEST_F(FileManagerTest, RemovesAFolderWithAllInIt) {
  fs::create_directories(path("a/b"));
  write("a/b/c");
  EXPECT_FALSE(files().removeItem(url("a")));
  EXPECT_FALSE(fs::exists(path("a")));
}

TEST_F(FileManagerTest, RemovesALinkAndNotWhatItLeadsTo) {
  fs::create_directory(path("a"));
  write("a/b");
  fs::create_symlink(path("a"), path("link"));
  EXPECT_FALSE(files().removeItem(url("link")));
  EXPECT_TRUE(fs::exists(path("a/b")));
}

TEST_F(FileManagerTest, RemovingNothingIsAnError) {
  expectCode(files().removeItem(url("nothing")), NSFileNoSuchFileError);
}

TEST_F(FileManagerTest, RemovingWithoutPermissionIsAnError) {
  fs::create_directory(path("a"));
  write("a/b");
  ASSERT_TRUE(forbid("a"));
  expectCode(files().removeItem(url("a/b")), NSFileWriteNoPermissionError);
  EXPECT_TRUE(fs::exists(path("a/b")));
}

TEST_F(FileManagerTest, RemovingSomebodyElsesFileFromASharedFolderIsAnError) {
  if (::geteuid() != 0) GTEST_SKIP() << "needs a file of another user";
  write("a");
  fs::permissions(folder_.path(), fs::perms::all | fs::perms::sticky_bit);
  ASSERT_EQ(::seteuid(65534), 0);
  expectCode(files().removeItem(url("a")), NSFileWriteNoPermissionError);
}

// --- folders ---

TEST_F(FileManagerTest, CreatesAFolder) {
  EXPECT_FALSE(files().createDirectory(url("a"), false));
  EXPECT_TRUE(fs::is_directory(path("a")));
}

TEST_F(FileManagerTest, CreatesTheFoldersAboveOnlyWhenAsked) {
  expectCode(files().createDirectory(url("a/b/c"), false), NSFileNoSuchFileError);
  EXPECT_FALSE(fs::exists(path("a")));
  EXPECT_FALSE(files().createDirectory(url("a/b/c"), true));
  EXPECT_TRUE(fs::is_directory(path("a/b/c")));
}

TEST_F(FileManagerTest, AFolderThatIsThereIsFineOnlyWithThoseAbove) {
  EXPECT_FALSE(files().createDirectory(url("a"), true));
  EXPECT_FALSE(files().createDirectory(url("a"), true));
  expectCode(files().createDirectory(url("a"), false), NSFileWriteFileExistsError);
}

TEST_F(FileManagerTest, AFileInThePlaceOfTheFolderIsAnError) {
  write("a");
  expectCode(files().createDirectory(url("a"), true), NSFileWriteFileExistsError);
  expectCode(files().createDirectory(url("a"), false), NSFileWriteFileExistsError);
  EXPECT_EQ(bytesOf(path("a")), "bytes");
}

TEST_F(FileManagerTest, CreatingWithoutPermissionIsAnError) {
  fs::create_directory(path("a"));
  ASSERT_TRUE(forbid("a"));
  expectCode(files().createDirectory(url("a/b/c"), true), NSFileWriteNoPermissionError);
}

// --- copying ---

TEST_F(FileManagerTest, CopiesAFile) {
  write("a");
  EXPECT_FALSE(files().copyItem(url("a"), url("b")));
  EXPECT_EQ(bytesOf(path("a")), "bytes");
  EXPECT_EQ(bytesOf(path("b")), "bytes");
  EXPECT_FALSE(fs::equivalent(path("a"), path("b")));
  EXPECT_EQ(countOfItems(), 2U);
}

TEST_F(FileManagerTest, CopiesAFolderWithAllInIt) {
  fs::create_directories(path("a/b"));
  write("a/b/c");
  EXPECT_FALSE(files().copyItem(url("a"), url("d")));
  EXPECT_EQ(bytesOf(path("d/b/c")), "bytes");
}

TEST_F(FileManagerTest, CopyingOntoAFileIsAnError) {
  write("a", "new");
  write("b", "old");
  expectCode(files().copyItem(url("a"), url("b")), NSFileWriteFileExistsError);
  EXPECT_EQ(bytesOf(path("b")), "old");
  EXPECT_EQ(countOfItems(), 2U);
}

TEST_F(FileManagerTest, CopyingAFolderIntoItselfIsAnError) {
  fs::create_directory(path("a"));
  const auto error = files().copyItem(url("a"), url("a/b"));
  expectCode(error, NSFileWriteInvalidFileNameError);
  EXPECT_EQ(error->underlyingError()->code(), EINVAL);
  EXPECT_TRUE(fs::is_empty(path("a")));
}

TEST_F(FileManagerTest, CopyingIntoAMissingFolderLeavesNothingAnywhere) {
  write("a");
  fs::create_directory(path("here"));
  fs::current_path(path("here"));
  expectCode(files().copyItem(url("a"), url("b/c")), NSFileNoSuchFileError);
  EXPECT_TRUE(fs::is_empty(path("here")));
  fs::current_path("/");
}

TEST_F(FileManagerTest, CopyingNothingIsAnError) {
  expectCode(files().copyItem(url("nothing"), url("b")), NSFileNoSuchFileError);
  EXPECT_EQ(countOfItems(), 0U);
}

// --- moving ---

TEST_F(FileManagerTest, MovesAFile) {
  write("a");
  EXPECT_FALSE(files().moveItem(url("a"), url("b")));
  EXPECT_FALSE(fs::exists(path("a")));
  EXPECT_EQ(bytesOf(path("b")), "bytes");
}

TEST_F(FileManagerTest, MovesAFolderWithAllInIt) {
  fs::create_directory(path("a"));
  write("a/b");
  EXPECT_FALSE(files().moveItem(url("a"), url("c")));
  EXPECT_EQ(bytesOf(path("c/b")), "bytes");
  EXPECT_FALSE(fs::exists(path("a")));
}

TEST_F(FileManagerTest, MovingOntoAFileIsAnErrorAndLosesNeither) {
  write("a", "new");
  write("b", "old");
  expectCode(files().moveItem(url("a"), url("b")), NSFileWriteFileExistsError);
  EXPECT_EQ(bytesOf(path("a")), "new");
  EXPECT_EQ(bytesOf(path("b")), "old");
}

TEST_F(FileManagerTest, MovingOntoAFolderIsAnErrorAndLosesNeither) {
  write("a");
  fs::create_directory(path("b"));
  write("b/c");
  expectCode(files().moveItem(url("a"), url("b")), NSFileWriteFileExistsError);
  EXPECT_EQ(bytesOf(path("a")), "bytes");
  EXPECT_EQ(bytesOf(path("b/c")), "bytes");
}

TEST_F(FileManagerTest, MovingAFolderOntoAnEmptyFolderIsAnError) {
  fs::create_directory(path("a"));
  fs::create_directory(path("b"));
  expectCode(files().moveItem(url("a"), url("b")), NSFileWriteFileExistsError);
  EXPECT_TRUE(fs::exists(path("a")));
}

TEST_F(FileManagerTest, MovingOntoALinkThatLeadsNowhereIsAnError) {
  write("a");
  fs::create_symlink(path("nowhere"), path("b"));
  expectCode(files().moveItem(url("a"), url("b")), NSFileWriteFileExistsError);
  EXPECT_TRUE(fs::exists(path("a")));
}

TEST_F(FileManagerTest, MovingIntoAMissingFolderIsAnError) {
  write("a");
  expectCode(files().moveItem(url("a"), url("b/c")), NSFileNoSuchFileError);
  EXPECT_EQ(bytesOf(path("a")), "bytes");
}

TEST_F(FileManagerTest, MovingNothingIsAnError) {
  expectCode(files().moveItem(url("nothing"), url("b")), NSFileNoSuchFileError);
}

TEST_F(FileManagerTest, MovingIntoAFolderWithoutPermissionIsAnErrorAndLosesNothing) {
  write("a");
  fs::create_directory(path("b"));
  ASSERT_TRUE(forbid("b"));
  expectCode(files().moveItem(url("a"), url("b/a")), NSFileWriteNoPermissionError);
  EXPECT_EQ(bytesOf(path("a")), "bytes");
}

TEST_F(FileManagerTest, MovingOutOfAFolderWithoutPermissionLeavesNothingNew) {
  fs::create_directory(path("a"));
  write("a/b");
  fs::permissions(path("a/b"), fs::perms::all);
  ASSERT_TRUE(forbid("a"));
  expectCode(files().moveItem(url("a/b"), url("c")), NSFileWriteNoPermissionError);
  EXPECT_EQ(bytesOf(path("a/b")), "bytes");
  EXPECT_FALSE(fs::exists(path("c")));
}

// --- what the errors say ---

TEST_F(FileManagerTest, ErrorNamesThePathAndHasTheSystemsOwnBeneath) {
  const auto error = files().removeItem(url("nothing"));
  ASSERT_TRUE(error);
  const auto* const blamed = std::any_cast<std::string>(&error->userInfo().at("NSFilePath"));
  ASSERT_NE(blamed, nullptr);
  EXPECT_EQ(*blamed, path("nothing"));
  ASSERT_TRUE(error->underlyingError());
  EXPECT_EQ(error->underlyingError()->domain(), "NSPOSIXErrorDomain");
  EXPECT_EQ(error->underlyingError()->code(), ENOENT);
}

TEST_F(FileManagerTest, ErrorSaysBothPlacesAndTheReason) {
  write("a");
  write("b");
  const auto error = files().moveItem(url("a"), url("b"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->localizedDescription(),
            "“" + path("a") + "” can’t be moved to “" + path("b") + "”: File exists");
}

TEST_F(FileManagerTest, AnAddressThatIsNoFilesIsAnError) {
  write("a");
  const auto web = *URL::withString("http://example.com" + path("a"));
  expectCode(files().removeItem(web), NSFileWriteUnsupportedSchemeError);
  expectCode(files().moveItem(url("a"), web), NSFileWriteUnsupportedSchemeError);
  expectCode(files().moveItem(web, url("b")), NSFileWriteUnsupportedSchemeError);
  EXPECT_TRUE(fs::exists(path("a")));
}

TEST_F(FileManagerTest, APathWithANulIsAnErrorAndNotTheShorterPath) {
  write("a");
  const auto cut = *URL::withString("file://" + path("a") + "%00b");
  expectCode(files().removeItem(cut), NSFileWriteInvalidFileNameError);
  EXPECT_TRUE(fs::exists(path("a")));
}

TEST_F(FileManagerTest, ANameThatIsTooLongIsAnError) {
  write("a");
  expectCode(files().moveItem(url("a"), url(std::string(300, 'n'))),
             NSFileWriteInvalidFileNameError);
}

}  // namespace
}  // namespace Foundation
