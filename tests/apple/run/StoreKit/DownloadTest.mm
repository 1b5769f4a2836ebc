#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/StoreKit/SKPaymentTransaction.hpp"
#include "platform/apple/StoreKit/DownloadBridging.hpp"
#include "platform/apple/StoreKit/TransactionBridging.hpp"
#include "tests/apple/run/StoreKit/Samples.h"
#include "tests/fakes/FakeDownload.hpp"

namespace StoreKit {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using tests::aDownload;

SKDownloadPtr viewOf(::SKDownload* native) { return downloadsFrom(@[ native ]).at(0); }

TEST(AppleDownload, HasEachOfItsStates) {
  for (int state = 0; state < 6; ++state) {
    auto* const native = aDownload();
    [native set:[NSNumber numberWithInt:state] for:@"state"];
    EXPECT_EQ(viewOf(native)->state(), static_cast<SKDownloadState>(state));
  }
}

TEST(AppleDownload, UnknownStateStaysANumber) {
  auto* const native = aDownload();
  [native set:@17 for:@"state"];
  EXPECT_EQ(viewOf(native)->state(), static_cast<SKDownloadState>(17));
}

TEST(AppleDownload, StateHasAnotherNameBefore12) {
  auto* const native = aDownload();
  [native set:[NSNumber numberWithInt:SKDownloadStatePaused] for:@"downloadState"];
  tests::playSystem(11, 4);
  EXPECT_EQ(viewOf(native)->state(), SKDownloadState::paused);
}

TEST(AppleDownload, LengthHasNoLimitOf32Bits) {
  auto* const native = aDownload();
  [native set:[NSNumber numberWithLongLong:5'000'000'000] for:@"expectedContentLength"];
  EXPECT_EQ(viewOf(native)->contentLength(), 5'000'000'000);
}

TEST(AppleDownload, LengthHasAnotherNameBefore13) {
  auto* const native = aDownload();
  [native set:[NSNumber numberWithLongLong:6'000'000'000] for:@"contentLength"];
  tests::playSystem(12, 4);
  EXPECT_EQ(viewOf(native)->contentLength(), 6'000'000'000);
}

TEST(AppleDownload, SaysWhatItsContentIs) {
  EXPECT_EQ(viewOf(aDownload())->contentIdentifier(), "level.2");
  EXPECT_EQ(viewOf(aDownload())->contentVersion(), "1.0");
}

TEST(AppleDownload, HasAnUrlOnceThereIsOne) {
  auto* const native = aDownload();
  const auto download = viewOf(native);
  EXPECT_FALSE(download->contentURL());
  [native set:[NSURL URLWithString:@"file:///caches/level%202/"] for:@"contentURL"];
  EXPECT_EQ(download->contentURL(), "file:///caches/level%202/");
}

TEST(AppleDownload, ProgressIsAFraction) {
  auto* const native = aDownload();
  [native set:[NSNumber numberWithFloat:0.25F] for:@"progress"];
  EXPECT_EQ(viewOf(native)->progress(), 0.25F);
}

TEST(AppleDownload, TimeThatThePlatformCannotTellIsAbsent) {
  EXPECT_FALSE(viewOf(aDownload())->timeRemaining());
}

TEST(AppleDownload, TimeRemainingIsInSeconds) {
  auto* const native = aDownload();
  [native set:[NSNumber numberWithDouble:1.5] for:@"timeRemaining"];
  EXPECT_EQ(viewOf(native)->timeRemaining(), std::chrono::milliseconds(1500));
}

TEST(AppleDownload, NoTimeRemainingIsNotAnAbsentOne) {
  auto* const native = aDownload();
  [native set:@0 for:@"timeRemaining"];
  EXPECT_EQ(viewOf(native)->timeRemaining(), std::chrono::seconds(0));
}

TEST(AppleDownload, FailedHasTheError) {
  auto* const native = aDownload();
  EXPECT_FALSE(viewOf(native)->error());
  [native set:[NSError errorWithDomain:NSURLErrorDomain code:-1009 userInfo:nil] for:@"error"];
  EXPECT_EQ(viewOf(native)->error()->code(), -1009);
}

TEST(AppleDownload, FindsTheVeryTransactionThatItBelongsTo) {
  auto* const native = aDownload();
  auto* const transaction = tests::aTransaction();
  [native set:[NSValue valueWithNonretainedObject:transaction] for:@"transaction"];
  EXPECT_EQ(nativeTransaction(viewOf(native)->transaction()), transaction);
}

TEST(AppleDownload, WithoutATransactionHasNull) {
  EXPECT_EQ(viewOf(aDownload())->transaction(), nullptr);
}

TEST(AppleDownload, DoesNotKeepItsTransactionAlive) {
  SKDownloadPtr download;
  std::weak_ptr<const SKPaymentTransaction> watched;
  auto* const transaction = [tests::aTransaction() retain];
  @autoreleasepool {
    auto* const native = aDownload();
    [native set:[NSValue valueWithNonretainedObject:transaction] for:@"transaction"];
    download = viewOf(native);
    (void)download->transaction();
  }
  EXPECT_EQ([transaction retainCount], 2U);  // ours, and that of the test's pool
  [transaction release];
}

TEST(AppleDownload, ViewsOfOneObjectAreEqualAndHashAlike) {
  auto* const native = aDownload();
  EXPECT_TRUE(viewOf(native)->isEqual(*viewOf(native)));
  EXPECT_EQ(viewOf(native)->hash(), viewOf(native)->hash());
  EXPECT_FALSE(viewOf(native)->isEqual(*viewOf(aDownload())));
}

TEST(AppleDownload, GivesBackTheVeryObjectsInTheirOrder) {
  NSArray* const natives = @[ aDownload(), aDownload() ];
  EXPECT_TRUE([nativeDownloads(downloadsFrom(natives)) isEqual:natives]);
}

TEST(AppleDownload, WhatIsNoViewIsLeftOut) {
  auto* const native = aDownload();
  SKDownloads downloads = downloadsFrom(@[ native ]);
  downloads.insert(downloads.begin(), {nullptr, TQStoreKitLib::tests::aDownload("fake")});
  EXPECT_TRUE([nativeDownloads(downloads) isEqual:@[ native ]]);
}

TEST(AppleDownload, NoListIsAnEmptyOne) { EXPECT_THAT(downloadsFrom(nil), IsEmpty()); }

}  // namespace
}  // namespace StoreKit
