#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/apple/doubles/EachTest.hpp"
#include "tests/fakes/TemporaryFolder.hpp"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define TQSTOREKIT_LEAKS_ARE_LOOKED_FOR
#endif
#endif

namespace {

// What this Foundation keeps for good from its first use, and no leak checker can know.
__attribute__((noinline)) void warmUp() {
  @autoreleasepool {
    (void)[NSDecimalNumber decimalNumberWithString:@"1.5"];
  }
}

void warmUpUnseen() {
#ifdef TQSTOREKIT_LEAKS_ARE_LOOKED_FOR
  __lsan_disable();
  warmUp();
  __lsan_enable();
#else
  warmUp();
#endif
}

// The defaults of this process are its own, and nothing of the user's is touched: this Foundation
// reads where they are from a file that the environment names.
void keepDefaultsIn(const tests::TemporaryFolder& folder) {
  tests::write(
      folder.file("GNUstep.conf"),
      "GNUSTEP_USER_DIR=" + folder.path() + "\nGNUSTEP_USER_DEFAULTS_DIR=" + folder.path() + "\n");
  setenv("GNUSTEP_CONFIG_FILE", folder.file("GNUstep.conf").c_str(), 1);
}

// Each test finds the doubles as new, and has a pool of its own, as an application's turn of the
// main loop has.
class FreshStart final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override {
    pool_ = [[NSAutoreleasePool alloc] init];
    tests::forgetLastTest();
  }
  void OnTestEnd(const testing::TestInfo&) override { [pool_ drain]; }

  NSAutoreleasePool* pool_ = nil;
};

}  // namespace

int main(int argc, char** argv) {
  const tests::TemporaryFolder folder;
  keepDefaultsIn(folder);
  warmUpUnseen();
  testing::InitGoogleMock(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new FreshStart);
  return RUN_ALL_TESTS();
}
