#include "TQStoreKitLib/TQNetworking/TQNWError.hpp"

#include <gtest/gtest.h>

namespace TQStoreKitLib {
namespace {

using Foundation::NSError;

NSError anError() { return NSError::withDescription("domain", 7, "it is broken"); }

TEST(TQNWError, HasItsCasesInOrder) {
  using Case = TQNWError::Case;
  EXPECT_EQ(TQNWError::stringEncodingFailed(Foundation::NSUTF8StringEncoding).tag(),
            Case::stringEncodingFailed);
  EXPECT_EQ(TQNWError::jsonDecodeFailed(anError()).tag(), Case::jsonDecodeFailed);
  EXPECT_EQ(TQNWError::objectDecodeFailed(anError()).tag(), Case::objectDecodeFailed);
  EXPECT_EQ(TQNWError::common(anError()).tag(), Case::common);
  EXPECT_EQ(TQNWError::noData().tag(), Case::noData);
  EXPECT_EQ(TQNWError::unknow().tag(), Case::unknow);
}

TEST(TQNWError, NamesTheEncodingThatFailed) {
  const auto error = TQNWError::stringEncodingFailed(Foundation::NSShiftJISStringEncoding);
  EXPECT_EQ(error.message(), "String encoding failed: Japanese (Windows, DOS)");
  EXPECT_EQ(error.asStringEncodingFailed()->encoding, Foundation::NSShiftJISStringEncoding);
}

TEST(TQNWError, SaysWhatTheErrorWithinSays) {
  EXPECT_EQ(TQNWError::jsonDecodeFailed(anError()).message(), "it is broken");
  EXPECT_EQ(TQNWError::objectDecodeFailed(anError()).message(), "it is broken");
  EXPECT_EQ(TQNWError::common(anError()).message(), "it is broken");
}

TEST(TQNWError, SaysThatThereIsNoData) { EXPECT_EQ(TQNWError::noData().message(), "No Data"); }

TEST(TQNWError, SaysUnknow) { EXPECT_EQ(TQNWError::unknow().message(), "Unknow"); }

TEST(TQNWError, GivesThePayloadOfItsCaseAlone) {
  const auto error = TQNWError::jsonDecodeFailed(anError());
  EXPECT_EQ(error.asJsonDecodeFailed()->error.code(), 7);
  EXPECT_EQ(error.asStringEncodingFailed(), nullptr);
  EXPECT_EQ(error.asObjectDecodeFailed(), nullptr);
  EXPECT_EQ(error.asCommon(), nullptr);
  EXPECT_EQ(TQNWError::objectDecodeFailed(anError()).asObjectDecodeFailed()->error.code(), 7);
}

TEST(TqnwError, OfNoErrorIsAbsent) { EXPECT_FALSE(tqnwError(std::nullopt)); }

TEST(TqnwError, OfAnyErrorIsCommonWithThatVeryError) {
  NSError::UserInfo userInfo;
  userInfo.emplace("key", std::int64_t{5});
  for (const auto& domain : {"NSURLErrorDomain", "NSCocoaErrorDomain", "SKErrorDomain", ""}) {
    const NSError error(domain, -1001, userInfo);
    const auto converted = tqnwError(error);
    ASSERT_TRUE(converted && converted->asCommon()) << domain;
    EXPECT_EQ(&converted->asCommon()->error.userInfo(), &error.userInfo());
  }
}

}  // namespace
}  // namespace TQStoreKitLib
