#include "platform/embedded/Foundation/DefaultsFolder.hpp"

#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Foundation/UserDefaults.hpp"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

namespace Foundation {
namespace {

class DefaultsFolder : public testing::Test {
 protected:
  DefaultsFolder() {
    set("TQSTORE_DEFAULTS", "/named");
    set("XDG_CONFIG_HOME", "/config");
    set("HOME", "/home/someone");
  }
  static void set(const char* name, const char* value) { ::setenv(name, value, 1); }
};

TEST_F(DefaultsFolder, IsTheOneThatTheProgramNames) {
  setDefaultsFolder("/chosen");
  EXPECT_EQ(defaultsFolder(), "/chosen");
  setDefaultsFolder(std::nullopt);
  EXPECT_EQ(defaultsFolder(), "/named");
}

TEST_F(DefaultsFolder, IsElseTheOneThatTheVariableNames) { EXPECT_EQ(defaultsFolder(), "/named"); }

TEST_F(DefaultsFolder, IsElseInTheConfigurationFolder) {
  set("TQSTORE_DEFAULTS", "");
  EXPECT_EQ(defaultsFolder(), "/config/TQStoreKitLib");
}

TEST_F(DefaultsFolder, IsElseInTheHomeFolder) {
  ::unsetenv("TQSTORE_DEFAULTS");
  set("XDG_CONFIG_HOME", "relative/does/not/count");
  EXPECT_EQ(defaultsFolder(), "/home/someone/.config/TQStoreKitLib");
}

TEST_F(DefaultsFolder, IsAbsentWhenNothingNamesOne) {
  set("TQSTORE_DEFAULTS", "");
  ::unsetenv("XDG_CONFIG_HOME");
  ::unsetenv("HOME");
  EXPECT_EQ(defaultsFolder(), std::nullopt);
}

TEST_F(DefaultsFolder, HoldsTheStandardStoreUnderTheProgramsName) {
  const tests::TemporaryFolder folder;
  set("TQSTORE_DEFAULTS", folder.path().c_str());
  UserDefaults::standardUserDefaults().set(DefaultsObject::integer(1), "key");
  EXPECT_TRUE(UserDefaults::standardUserDefaults().synchronize());
  EXPECT_TRUE(std::filesystem::exists(folder.file("defaults_tests.defaults")));
}

}  // namespace
}  // namespace Foundation
