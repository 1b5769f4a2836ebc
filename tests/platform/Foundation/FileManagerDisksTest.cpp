#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "platform/Foundation/FileManager.hpp"
#include "tests/fakes/SmallDisk.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

// Moving from one file system to another one, which may be full.

namespace Foundation {
namespace {

namespace fs = std::filesystem;
using tests::bytesOf;

class FileManagerDisks : public testing::Test {
 protected:
  void SetUp() override {
    if (!disk_.isThere()) GTEST_SKIP() << "this machine lets no test mount a file system";
  }
  [[nodiscard]] std::string here(const std::string& name) const { return here_.file(name); }
  [[nodiscard]] std::string there(const std::string& name) const { return there_.file(name); }
  [[nodiscard]] static std::optional<NSError> move(const std::string& from, const std::string& to) {
    return FileManager::defaultManager().moveItem(URL::fileURLWithPath(from),
                                                  URL::fileURLWithPath(to));
  }
  [[nodiscard]] static bool isEmpty(const std::string& folder) { return fs::is_empty(folder); }

  tests::TemporaryFolder here_;
  tests::TemporaryFolder there_;
  tests::SmallDisk disk_{there_.path()};
};

std::string someBytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
  return bytes;
}

TEST_F(FileManagerDisks, MovesAFileToAnotherFileSystem) {
  const auto bytes = someBytes(100'000);
  tests::write(here("a"), bytes);
  EXPECT_FALSE(move(here("a"), there("b")));
  EXPECT_TRUE(bytesOf(there("b")) == bytes);
  EXPECT_TRUE(isEmpty(here_.path()));
}

TEST_F(FileManagerDisks, LeavesNothingElseInTheOtherFileSystem) {
  tests::write(here("a"), "bytes");
  ASSERT_FALSE(move(here("a"), there("b")));
  const fs::directory_iterator items(there_.path());
  EXPECT_EQ(std::distance(begin(items), end(items)), 1);
}

TEST_F(FileManagerDisks, KeepsTheTimeAndThePermissionsOfAFile) {
  tests::write(here("a"), "bytes");
  const auto time = fs::last_write_time(here("a")) - std::chrono::hours(1000);
  fs::last_write_time(here("a"), time);
  fs::permissions(here("a"), fs::perms::owner_read);
  ASSERT_FALSE(move(here("a"), there("b")));
  EXPECT_EQ(fs::last_write_time(there("b")), time);
  EXPECT_EQ(fs::status(there("b")).permissions(), fs::perms::owner_read);
}

TEST_F(FileManagerDisks, MovesAFolderToAnotherFileSystem) {
  fs::create_directories(here("a/b"));
  tests::write(here("a/b/c"), "bytes");
  fs::create_symlink("c", here("a/b/link"));
  EXPECT_FALSE(move(here("a"), there("d")));
  EXPECT_EQ(bytesOf(there("d/b/c")), "bytes");
  EXPECT_TRUE(fs::is_symlink(there("d/b/link")));
  EXPECT_TRUE(isEmpty(here_.path()));
}

TEST_F(FileManagerDisks, NeverReplacesAFileInAnotherFileSystem) {
  const auto tooMuch = someBytes(1'000'000);
  tests::write(here("a"), tooMuch);
  tests::write(there("b"), "old");
  const auto error = move(here("a"), there("b"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), NSFileWriteFileExistsError);
  EXPECT_TRUE(bytesOf(here("a")) == tooMuch);
  EXPECT_EQ(bytesOf(there("b")), "old");
}

TEST_F(FileManagerDisks, CopyingOntoAFileTakesNoRoom) {
  tests::write(here("a"), someBytes(1'000'000));
  tests::write(there("b"), "old");
  const auto error = FileManager::defaultManager().copyItem(URL::fileURLWithPath(here("a")),
                                                            URL::fileURLWithPath(there("b")));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), NSFileWriteFileExistsError);
}

TEST_F(FileManagerDisks, MovingIntoAMissingFolderOfAnotherFileSystemIsAnError) {
  tests::write(here("a"), "bytes");
  const auto error = move(here("a"), there("b/c"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), NSFileNoSuchFileError);
  EXPECT_EQ(bytesOf(here("a")), "bytes");
}

TEST_F(FileManagerDisks, AFullDiskIsAnErrorThatLosesNothingAndLeavesNothing) {
  const auto bytes = someBytes(1'000'000);
  tests::write(here("a"), bytes);
  const auto error = move(here("a"), there("b"));
  ASSERT_TRUE(error);
  EXPECT_EQ(error->code(), NSFileWriteOutOfSpaceError) << error->localizedDescription();
  EXPECT_TRUE(bytesOf(here("a")) == bytes);
  EXPECT_TRUE(isEmpty(there_.path()));
}

}  // namespace
}  // namespace Foundation
