#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"
#include "platform/embedded/store/StoreSession.hpp"
#include "tests/fakes/ShopConfigurations.hpp"

namespace StoreKit {
namespace {

namespace fs = std::filesystem;

// Each expectation runs in a process of its own, in which no store was opened: the exit code is the
// number of products, standard error what was said.
class EnvironmentStoreDeathTest : public testing::Test {
 protected:
  EnvironmentStoreDeathTest() { testing::GTEST_FLAG(death_test_style) = "threadsafe"; }
  ~EnvironmentStoreDeathTest() override { fs::remove(file); }

  [[noreturn]] static void useQueue(const char* path) {
    path ? ::setenv("TQSTORE_CONFIG", path, 1) : ::unsetenv("TQSTORE_CONFIG");
    (void)SKPaymentQueue::defaultQueue().transactions();
    (void)SKPaymentQueue::canMakePayments();
    std::exit(static_cast<int>(EmbeddedStore::current().catalogue().entries().size()));
  }
  const char* written(std::string_view text) const {
    std::ofstream(file) << text;
    return file.c_str();
  }

  static testing::Matcher<const std::string&> says(const std::string& lines) { return {lines}; }

  // The process that is started for an expectation has to come to the same name.
  fs::path file =
      fs::temp_directory_path() /
      (std::string(testing::UnitTest::GetInstance()->current_test_info()->name()) + ".storekit");
};

constexpr auto kPearls =
    R"({"products":[{"productID":"pearls","type":"Consumable","displayPrice":"1.99"}]})";

TEST_F(EnvironmentStoreDeathTest, IsEmptyWhenTheVariableIsNotSet) {
  EXPECT_EXIT(useQueue(nullptr), testing::ExitedWithCode(0),
              says("No store was opened and TQSTORE_CONFIG is not set: the store is empty.\n"));
}

TEST_F(EnvironmentStoreDeathTest, IsEmptyWhenTheVariableIsEmpty) {
  EXPECT_EXIT(useQueue(""), testing::ExitedWithCode(0),
              says("No store was opened and TQSTORE_CONFIG is not set: the store is empty.\n"));
}

TEST_F(EnvironmentStoreDeathTest, SellsWhatTheVariableNames) {
  EXPECT_EXIT(useQueue(written(kPearls)), testing::ExitedWithCode(1),
              says("No store was opened: using TQSTORE_CONFIG, " + file.string() + ".\n"));
}

TEST_F(EnvironmentStoreDeathTest, SaysWhyABrokenFileCannotBeUsed) {
  EXPECT_EXIT(useQueue(written("")), testing::ExitedWithCode(0),
              says(file.string() + ": is empty\n" +
                   "No store was opened and TQSTORE_CONFIG cannot be used: the store is empty.\n"));
}

TEST_F(EnvironmentStoreDeathTest, SaysThatAFileIsMissing) {
  EXPECT_EXIT(useQueue("no such file"), testing::ExitedWithCode(0),
              says("no such file: can't be opened: No such file or directory\n"
                   "No store was opened and TQSTORE_CONFIG cannot be used: the store is empty.\n"));
}

TEST_F(EnvironmentStoreDeathTest, IsNotAskedForWhenAStoreWasOpened) {
  EXPECT_EXIT(
      {
        const StoreSession session(tests::shop());
        useQueue("no such file");
      },
      testing::ExitedWithCode(6), says(""));
}

}  // namespace
}  // namespace StoreKit
