#include "platform/Foundation/OperatingSystem.hpp"

#include <gtest/gtest.h>

#include "platform/embedded/Foundation/EmulatedSystem.hpp"

namespace Foundation {
namespace {

class OperatingSystem : public testing::Test {
 protected:
  ~OperatingSystem() override { setOperatingSystemVersion(17, 0); }
};

TEST_F(OperatingSystem, IsNewerThanTheLibraryAsksFor) {
  EXPECT_TRUE(isOperatingSystemAtLeast(11, 2));
  EXPECT_TRUE(isOperatingSystemAtLeast(14, 0));
}

TEST_F(OperatingSystem, IsAtLeastItself) {
  setOperatingSystemVersion(12, 2);
  EXPECT_TRUE(isOperatingSystemAtLeast(12, 2));
}

TEST_F(OperatingSystem, MinorVersionCounts) {
  setOperatingSystemVersion(12, 1);
  EXPECT_FALSE(isOperatingSystemAtLeast(12, 2));
  EXPECT_TRUE(isOperatingSystemAtLeast(12, 0));
}

TEST_F(OperatingSystem, MajorVersionWinsOverTheMinorOne) {
  setOperatingSystemVersion(12, 4);
  EXPECT_TRUE(isOperatingSystemAtLeast(11, 99));
  EXPECT_FALSE(isOperatingSystemAtLeast(13, 0));
}

}  // namespace
}  // namespace Foundation
