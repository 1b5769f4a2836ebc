#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/apple/Foundation/Bridging.hpp"

// Says what it is only when it is asked, as many of the platform's errors do.
@interface SpeakingError : NSError
@end

@implementation SpeakingError

- (NSString*)localizedDescription {
  return @"The shop is closed";
}

@end

namespace Foundation {
namespace {

template <class T>
std::optional<T> valueIn(const NSError& error, std::string_view key) {
  const auto entry = error.userInfo().find(key);
  if (entry == error.userInfo().end()) return std::nullopt;
  const auto* const value = std::any_cast<T>(&entry->second);
  return value ? std::optional<T>(*value) : std::nullopt;
}

::NSError* platformError(NSDictionary* userInfo) {
  return [::NSError errorWithDomain:@"shop" code:-7 userInfo:userInfo];
}

TEST(ErrorBridging, KeepsDomainAndCode) {
  const auto error = errorFrom(platformError(nil));
  EXPECT_EQ(error.domain(), "shop");
  EXPECT_EQ(error.code(), -7);
}

TEST(ErrorBridging, KeepsADescription) {
  const auto error = errorFrom(platformError(@{@"NSLocalizedDescription" : @"Sold out"}));
  EXPECT_EQ(error.localizedDescription(), "Sold out");
}

TEST(ErrorBridging, EmptyDescriptionIsADescription) {
  const auto error = errorFrom(platformError(@{@"NSLocalizedDescription" : @""}));
  EXPECT_EQ(valueIn<std::string>(error, NSLocalizedDescriptionKey), "");
}

TEST(ErrorBridging, KeepsADescriptionThatIsMadeWhenItIsAskedFor) {
  const auto error = errorFrom([SpeakingError errorWithDomain:@"shop" code:1 userInfo:nil]);
  EXPECT_EQ(error.localizedDescription(), "The shop is closed");
}

TEST(ErrorBridging, GeneralDescriptionIsNoneOfItsOwn) {
  const auto error = errorFrom(platformError(nil));
  EXPECT_EQ(valueIn<std::string>(error, NSLocalizedDescriptionKey), std::nullopt);
}

TEST(ErrorBridging, LeavesOutWhatStandsUnderAKeyThatIsNoText) {
  const auto error = errorFrom(platformError(@{@7 : @"seven", @"text" : @"gems"}));
  EXPECT_EQ(error.userInfo().size(), 1U);
}

TEST(ErrorBridging, KeepsValuesOfEachKind) {
  const auto error = errorFrom(platformError(@{
    @"text" : @"gems",
    @"whole" : [NSNumber numberWithLongLong:9'007'199'254'740'993],
    @"part" : [NSNumber numberWithDouble:0.5],
    @"truth" : [NSNumber numberWithBool:YES],
  }));
  EXPECT_EQ(valueIn<std::string>(error, "text"), "gems");
  EXPECT_EQ(valueIn<std::int64_t>(error, "whole"), 9'007'199'254'740'993);
  EXPECT_EQ(valueIn<double>(error, "part"), 0.5);
  EXPECT_EQ(valueIn<bool>(error, "truth"), true);
}

TEST(ErrorBridging, KeepsTheErrorBeneath) {
  ::NSError* const beneath = [::NSError errorWithDomain:@"wire" code:3 userInfo:nil];
  const auto error = errorFrom(platformError(@{@"NSUnderlyingError" : beneath}));
  ASSERT_TRUE(error.underlyingError());
  EXPECT_EQ(error.underlyingError()->domain(), "wire");
  EXPECT_EQ(nativeError(*error.underlyingError()), beneath);
}

TEST(ErrorBridging, WhatOursCannotHoldStaysInThePlatformsObject) {
  NSDictionary* const userInfo = @{@"url" : [NSURL URLWithString:@"https://example.com/"]};
  const auto error = errorFrom(platformError(userInfo));
  EXPECT_FALSE(error.userInfo().contains("url"));
  EXPECT_TRUE([[nativeError(error) userInfo] isEqual:userInfo]);
}

TEST(ErrorBridging, GivesBackTheVeryObject) {
  ::NSError* const native = platformError(nil);
  EXPECT_EQ(nativeError(errorFrom(native)), native);
}

TEST(ErrorBridging, OfOursBecomesOneOfThePlatformsWithAllThatItSays) {
  const NSError beneath("wire", 3);
  const NSError error("shop", 5,
                      {{std::string(NSLocalizedDescriptionKey), std::string("Sold out")},
                       {"truth", true},
                       {"part", 0.25},
                       {"whole", std::int64_t{-1}},
                       {std::string(NSUnderlyingErrorKey), beneath}});
  ::NSError* const native = nativeError(error);
  EXPECT_TRUE([[native domain] isEqual:@"shop"]);
  EXPECT_EQ([native code], 5);
  EXPECT_TRUE([[native localizedDescription] isEqual:@"Sold out"]);
  EXPECT_EQ(valueIn<bool>(errorFrom(native), "truth"), true);
  EXPECT_EQ(valueIn<double>(errorFrom(native), "part"), 0.25);
  EXPECT_EQ(valueIn<std::int64_t>(errorFrom(native), "whole"), -1);
  EXPECT_EQ(errorFrom(native).underlyingError()->code(), 3);
}

TEST(ErrorBridging, CodesOfOursAreNotCut) {
  EXPECT_EQ([nativeError(NSError("shop", 5'000'000'000)) code], 5'000'000'000);
}

TEST(ErrorBridging, NoneIsAbsent) {
  EXPECT_FALSE(optionalErrorFrom(nil));
  EXPECT_TRUE(optionalErrorFrom(platformError(nil)));
}

}  // namespace
}  // namespace Foundation
