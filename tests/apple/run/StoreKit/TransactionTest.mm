#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/StoreKit/SKError.hpp"
#include "platform/apple/StoreKit/TransactionBridging.hpp"
#include "tests/apple/run/StoreKit/Samples.h"
#include "tests/fakes/CapturedError.hpp"

/// A transaction that the platform has made anew for a purchase that it has told of before.
@interface TwinTransaction : SKPaymentTransaction
@end

@implementation TwinTransaction

- (BOOL)isEqual:(id)other {
  return [[self transactionIdentifier] isEqual:[other transactionIdentifier]];
}

- (NSUInteger)hash {
  return [[self transactionIdentifier] hash];
}

@end

/// A transaction that the platform can no longer say anything about.
@interface BrokenTransaction : SKPaymentTransaction
@end

@implementation BrokenTransaction

- (NSString*)transactionIdentifier {
  [NSException raise:NSGenericException format:@"the transaction is broken"];
  return nil;
}

- (SKPayment*)payment {
  [NSException raise:NSGenericException format:@"the payment is broken"];
  return nil;
}

@end

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using tests::aTransaction;

TEST(AppleTransaction, HasEachOfItsStates) {
  for (int state = 0; state < 5; ++state) {
    EXPECT_EQ(transactionFrom(aTransaction(state))->transactionState(),
              static_cast<SKPaymentTransactionState>(state));
  }
}

TEST(AppleTransaction, UnknownStateStaysANumber) {
  EXPECT_EQ(transactionFrom(aTransaction(42))->transactionState(),
            static_cast<SKPaymentTransactionState>(42));
}

TEST(AppleTransaction, PurchasedHasIdentifierAndDate) {
  auto* const native = aTransaction();
  [native set:@"1000000123" for:@"transactionIdentifier"];
  [native set:[NSDate dateWithTimeIntervalSince1970:1700000000.25] for:@"transactionDate"];
  const auto transaction = transactionFrom(native);
  EXPECT_EQ(transaction->transactionIdentifier(), "1000000123");
  EXPECT_EQ(transaction->transactionDate(), Foundation::Date::sinceEpoch(1700000000.25));
}

TEST(AppleTransaction, PurchasingHasNothingButThePayment) {
  const auto transaction = transactionFrom(aTransaction(SKPaymentTransactionStatePurchasing));
  EXPECT_EQ(transaction->payment()->productIdentifier(), "gems");
  EXPECT_FALSE(transaction->transactionIdentifier());
  EXPECT_FALSE(transaction->transactionDate());
  EXPECT_FALSE(transaction->error());
  EXPECT_EQ(transaction->originalTransaction(), nullptr);
  EXPECT_THAT(transaction->downloads(), IsEmpty());
}

TEST(AppleTransaction, EmptyIdentifierIsNotAnAbsentOne) {
  auto* const native = aTransaction();
  [native set:@"" for:@"transactionIdentifier"];
  EXPECT_EQ(transactionFrom(native)->transactionIdentifier(), "");
}

TEST(AppleTransaction, FailedHasTheStoresError) {
  auto* const native = aTransaction(SKPaymentTransactionStateFailed);
  [native set:tests::anError(2) for:@"error"];
  const auto error = transactionFrom(native)->error();
  ASSERT_TRUE(error);
  EXPECT_EQ(SKError(*error).code(), SKError::Code::paymentCancelled);
  EXPECT_EQ(error->domain(), SKErrorDomain);
}

TEST(AppleTransaction, RestoredHasTheOriginal) {
  auto* const native = aTransaction(SKPaymentTransactionStateRestored);
  auto* const original = aTransaction();
  [native set:original for:@"originalTransaction"];
  EXPECT_EQ(nativeTransaction(transactionFrom(native)->originalTransaction()), original);
}

TEST(AppleTransaction, HasItsDownloadsInTheirOrder) {
  auto* const native = aTransaction();
  auto* const second = tests::aDownload();
  [second set:@"level.3" for:@"contentIdentifier"];
  [native set:@[ tests::aDownload(), second ] for:@"downloads"];
  const auto downloads = transactionFrom(native)->downloads();
  ASSERT_THAT(downloads, SizeIs(2));
  EXPECT_EQ(downloads[0]->contentIdentifier(), "level.2");
  EXPECT_EQ(downloads[1]->contentIdentifier(), "level.3");
}

TEST(AppleTransaction, SaysWhatThePlatformSaysNow) {
  auto* const native = aTransaction(SKPaymentTransactionStatePurchasing);
  const auto transaction = transactionFrom(native);
  [native set:[NSNumber numberWithInt:SKPaymentTransactionStateDeferred] for:@"transactionState"];
  [native set:@"7" for:@"transactionIdentifier"];
  EXPECT_EQ(transaction->transactionState(), SKPaymentTransactionState::deferred);
  EXPECT_EQ(transaction->transactionIdentifier(), "7");
}

TEST(AppleTransaction, GivesBackTheVeryObject) {
  auto* const native = aTransaction();
  EXPECT_EQ(nativeTransaction(transactionFrom(native)), native);
}

TEST(AppleTransaction, ViewsOfOneObjectAreEqualAndHashAlike) {
  auto* const native = aTransaction();
  const auto one = transactionFrom(native);
  const auto other = transactionFrom(native);
  EXPECT_TRUE(one->isEqual(*other));
  EXPECT_EQ(one->hash(), other->hash());
}

TEST(AppleTransaction, ViewsOfTwoObjectsAreNotEqual) {
  EXPECT_FALSE(transactionFrom(aTransaction())->isEqual(*transactionFrom(aTransaction())));
}

TEST(AppleTransaction, EqualityIsThePlatforms) {
  NSDictionary* const values = @{@"transactionIdentifier" : @"7"};
  const auto one = transactionFrom([TwinTransaction with:values]);
  const auto other = transactionFrom([TwinTransaction with:values]);
  EXPECT_TRUE(one->isEqual(*other));
  EXPECT_EQ(one->hash(), other->hash());
}

TEST(AppleTransaction, KeepsItsObject) {
  SKPaymentTransactionPtr transaction;
  @autoreleasepool {
    transaction = transactionFrom(aTransaction(SKPaymentTransactionStateRestored));
  }
  EXPECT_EQ(transaction->transactionState(), SKPaymentTransactionState::restored);
}

TEST(AppleTransaction, NoneIsNullAndBack) {
  EXPECT_EQ(transactionFrom(nil), nullptr);
  EXPECT_EQ(nativeTransaction(nullptr), nil);
}

TEST(AppleTransaction, ListKeepsItsOrder) {
  const auto list = transactionsFrom(@[ aTransaction(1), aTransaction(2) ]);
  ASSERT_THAT(list, SizeIs(2));
  EXPECT_EQ(list[0]->transactionState(), SKPaymentTransactionState::purchased);
  EXPECT_EQ(list[1]->transactionState(), SKPaymentTransactionState::failed);
}

TEST(AppleTransaction, NoListIsAnEmptyOne) { EXPECT_THAT(transactionsFrom(nil), IsEmpty()); }

TEST(AppleTransaction, ExceptionOfThePlatformIsSaidAndLeavesAnAbsentValue) {
  const auto transaction = transactionFrom([BrokenTransaction with:@{}]);
  tests::CapturedError error;
  EXPECT_FALSE(transaction->transactionIdentifier());
  EXPECT_THAT(error.text(), HasSubstr("the transaction is broken"));
}

TEST(AppleTransaction, HasAPaymentAlsoWhenThePlatformGivesNone) {
  const auto payment = transactionFrom([::SKPaymentTransaction with:@{}])->payment();
  ASSERT_NE(payment, nullptr);
  EXPECT_EQ(payment->productIdentifier(), "");
}

TEST(AppleTransaction, HasAPaymentAlsoWhenThePlatformRaises) {
  const auto transaction = transactionFrom([BrokenTransaction with:@{}]);
  tests::CapturedError error;
  const auto payment = transaction->payment();
  ASSERT_NE(payment, nullptr);
  EXPECT_EQ(payment->productIdentifier(), "");
}

}  // namespace
}  // namespace StoreKit
