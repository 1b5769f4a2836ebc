#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/platform/embedded/store/configuration/ConfigurationTexts.hpp"

namespace StoreKit::tests {
namespace {

namespace fs = std::filesystem;

// A folder that lives as long as one test.
class ConfigurationFile : public testing::Test {
 protected:
  ConfigurationFile() { fs::create_directories(folder_); }
  ~ConfigurationFile() override { fs::remove_all(folder_); }

  std::string path() const { return (folder_ / "shop.storekit").string(); }
  std::string written(std::string_view text) const {
    std::ofstream(path(), std::ios::binary) << text;
    return path();
  }

  fs::path folder_ =
      fs::temp_directory_path() / ("configuration-" + std::to_string(::getpid()) + "-" +
                                   testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(ConfigurationFile, IsReadFromTheDisk) {
  const auto reading = readConfiguration(written(textWithProduct("")));
  ASSERT_TRUE(reading.configuration);
  EXPECT_EQ(reading.configuration->products.at(0).productID, "gems");
}

TEST_F(ConfigurationFile, MissingOneIsRefusedWithTheSystemsReason) {
  EXPECT_TRUE(
      isRefusedWith(readConfiguration(path()), "", "can't be opened: No such file or directory"));
}

TEST_F(ConfigurationFile, EmptyNameIsRefused) {
  EXPECT_TRUE(
      isRefusedWith(readConfiguration(""), "", "can't be opened: No such file or directory"));
}

TEST_F(ConfigurationFile, NameWithZeroByteIsNotCutThere) {
  auto name = written(textWithProduct(""));
  name.push_back('\0');
  EXPECT_TRUE(
      isRefusedWith(readConfiguration(name), "", "can't be opened: the name has a zero byte"));
}

TEST_F(ConfigurationFile, UnreadableOneIsRefusedWithTheSystemsReason) {
  const auto name = written(textWithProduct(""));
  fs::permissions(name, fs::perms::none);
  const auto reading = readConfiguration(name);
  if (::geteuid() == 0) {
    EXPECT_TRUE(reading.configuration);  // nothing is unreadable to the superuser
  } else {
    EXPECT_TRUE(isRefusedWith(reading, "", "can't be opened: Permission denied"));
  }
}

TEST_F(ConfigurationFile, FolderIsRefused) {
  EXPECT_TRUE(isRefusedWith(readConfiguration(folder_.string()), "", "is a folder, not a file"));
}

TEST_F(ConfigurationFile, PipeIsRefusedWithoutWaitingForAWriter) {
  ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
  EXPECT_TRUE(isRefusedWith(readConfiguration(path()), "", "is not a regular file"));
}

TEST_F(ConfigurationFile, EndlessDeviceIsRefused) {
  EXPECT_TRUE(isRefusedWith(readConfiguration("/dev/zero"), "", "is not a regular file"));
}

TEST_F(ConfigurationFile, EmptyOneIsRefused) {
  EXPECT_TRUE(isRefusedWith(readConfiguration(written("")), "", "is empty"));
}

TEST_F(ConfigurationFile, LargerThanTheLimitIsRefused) {
  fs::resize_file(written(textWithProduct("")), kLargestConfigurationFile + 1);
  EXPECT_TRUE(isRefusedWith(readConfiguration(path()), "", "is larger than 64 MiB"));
}

TEST_F(ConfigurationFile, OfTheLargestSizeIsRead) {
  auto text = textWithProduct("");
  text.resize(kLargestConfigurationFile, ' ');
  EXPECT_TRUE(readConfiguration(written(text)).configuration);
}

TEST_F(ConfigurationFile, IsLeftAsItWas) {
  const auto name = written("{ truncated");
  (void)readConfiguration(name);
  std::ifstream file(name, std::ios::binary);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "{ truncated");
}

TEST(ConfigurationProblem, DescriptionNamesFilePlaceAndMessage) {
  const ConfigurationProblem problem{ConfigurationProblem::Severity::warning, "shop.storekit",
                                     "/products/0", "left out"};
  EXPECT_EQ(problem.description(), "shop.storekit: /products/0: left out");
}

TEST(ConfigurationProblem, DescriptionOfTheWholeFileNamesNoPlace) {
  const auto reading = readConfiguration("no such file");
  EXPECT_EQ(reading.problems.at(0).description(),
            "no such file: can't be opened: No such file or directory");
}

}  // namespace
}  // namespace StoreKit::tests
