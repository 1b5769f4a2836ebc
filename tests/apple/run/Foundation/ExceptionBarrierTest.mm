#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Retained.hpp"
#include "tests/fakes/CapturedError.hpp"

namespace Foundation {
namespace {

using testing::AllOf;
using testing::HasSubstr;

void raise() { [NSException raise:NSRangeException format:@"out of gems"]; }

TEST(ExceptionBarrier, CallOfThePlatformSaysThatItWentWell) {
  bool done = false;
  EXPECT_TRUE(callPlatform("here", [&] { done = true; }));
  EXPECT_TRUE(done);
}

TEST(ExceptionBarrier, KeepsAnExceptionOfThePlatformOut) {
  tests::CapturedError error;
  EXPECT_FALSE(callPlatform("here", raise));
  EXPECT_THAT(error.text(),
              AllOf(HasSubstr("here: "), HasSubstr("NSRangeException"), HasSubstr("out of gems")));
}

TEST(ExceptionBarrier, QuestionThatThePlatformRefusesHasTheOtherAnswer) {
  const tests::CapturedError error;
  const auto answer = askPlatform("here", 7, [] {
    raise();
    return 8;
  });
  EXPECT_EQ(answer, 7);
}

TEST(ExceptionBarrier, ReleasesWhatTheCallOwned) {
  const tests::CapturedError error;
  auto* const object = [[NSObject alloc] init];
  (void)callPlatform("here", [&] {
    const auto owner = Retained<NSObject*>::retain(object);
    raise();
  });
  EXPECT_EQ([object retainCount], 1U);
  [object release];
}

TEST(ExceptionBarrier, EmptiesAPoolOfItsOwn) {
  auto* const object = [[NSObject alloc] init];
  (void)callPlatform("here", [&] { [[object retain] autorelease]; });
  EXPECT_EQ([object retainCount], 1U);
  [object release];
}

TEST(ExceptionBarrier, KeepsAnExceptionOfOursOut) {
  tests::CapturedError error;
  callBack("there", [] { throw std::runtime_error("no more gems"); });
  EXPECT_THAT(error.text(), AllOf(HasSubstr("there: "), HasSubstr("no more gems")));
}

TEST(ExceptionBarrier, KeepsOutWhatIsNoException) {
  tests::CapturedError error;
  callBack("there", [] { throw 42; });
  EXPECT_THAT(error.text(), HasSubstr("there: "));
}

TEST(ExceptionBarrier, QuestionToOursThatThrowsHasTheOtherAnswer) {
  const tests::CapturedError error;
  EXPECT_EQ(askBack("there", 7, []() -> int { throw 1; }), 7);
  EXPECT_EQ(askBack("there", 7, [] { return 8; }), 8);
}

TEST(ExceptionBarrier, OfOursStandsInsideOneOfThePlatform) {
  tests::CapturedError error;
  const bool wentWell =
      callPlatform("outside", [] { callBack("inside", [] { throw std::runtime_error("deep"); }); });
  EXPECT_TRUE(wentWell);
  EXPECT_THAT(error.text(), HasSubstr("inside: "));
}

}  // namespace
}  // namespace Foundation
