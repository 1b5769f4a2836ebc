#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#import "StoreKit/ProductsRequestDouble.h"
#include "platform/StoreKit/SKError.hpp"
#include "platform/StoreKit/SKProductsRequest.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "tests/apple/run/OtherThread.h"
#include "tests/apple/run/StoreKit/Samples.h"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/MainQueueTurns.hpp"
#include "tests/fakes/RecordingDelegate.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using tests::lastRequest;
using tests::RecordingDelegate;

::SKProductsResponse* aResponse() {
  return [::SKProductsResponse with:@{
    @"products" : @[ tests::aProduct(@"gems"), tests::aProduct(@"crown") ],
    @"invalidProductIdentifiers" : @[ @"no such" ],
  }];
}

class AppleProductsRequest : public testing::Test {
 protected:
  std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
  std::unique_ptr<SKProductsRequest> request =
      std::make_unique<SKProductsRequest>(std::set<std::string>{"gems", "crown", "Ž"});

  AppleProductsRequest() { request->setDelegate(delegate); }
  ~AppleProductsRequest() override {
    request.reset();
    (void)tests::turnUntilIdle();
    EXPECT_EQ(lastRequest(), nil) << "the platform's request is kept";
  }
};

TEST_F(AppleProductsRequest, AsksForTheIdentifiers) {
  NSSet* const expected = [NSSet setWithObjects:@"gems", @"crown", @"Ž", nil];
  EXPECT_TRUE([[lastRequest() identifiers] isEqual:expected]);
}

TEST_F(AppleProductsRequest, StartsThePlatformsOnce) {
  EXPECT_EQ([lastRequest() starts], 0);
  request->start();
  request->start();
  EXPECT_EQ([lastRequest() starts], 1);
}

TEST_F(AppleProductsRequest, HandsTheProductsOn) {
  [lastRequest() answer:aResponse()];
  ASSERT_THAT(delegate->responses, SizeIs(1));
  EXPECT_THAT(tests::identifiersOf(delegate->responses[0]), ElementsAre("crown", "gems"));
  EXPECT_THAT(delegate->responses[0].invalidProductIdentifiers, ElementsAre("no such"));
}

TEST_F(AppleProductsRequest, ProductsKeepThePlatformsObjects) {
  ::SKProductsResponse* const response = aResponse();
  [lastRequest() answer:response];
  EXPECT_EQ(Foundation::nativeObject(delegate->responses.at(0).products.at(0)->native()),
            [[response products] objectAtIndex:0]);
}

TEST_F(AppleProductsRequest, EmptyAnswerIsEmpty) {
  [lastRequest() answer:[::SKProductsResponse with:@{}]];
  ASSERT_THAT(delegate->responses, SizeIs(1));
  EXPECT_THAT(delegate->responses[0].products, IsEmpty());
  EXPECT_THAT(delegate->responses[0].invalidProductIdentifiers, IsEmpty());
}

TEST_F(AppleProductsRequest, HandsTheErrorOn) {
  NSError* const native = tests::anError(0);
  [lastRequest() fail:native];
  ASSERT_THAT(delegate->errors, SizeIs(1));
  EXPECT_EQ(delegate->errors[0].domain(), SKErrorDomain);
  EXPECT_EQ(Foundation::nativeError(delegate->errors[0]), native);
}

TEST_F(AppleProductsRequest, AnswerThatCannotBeReadIsAFailure) {
  [lastRequest() answer:[::SKProductsResponse with:@{@"products" : @[ @"not a product" ]}]];
  EXPECT_THAT(delegate->responses, IsEmpty());
  ASSERT_THAT(delegate->errors, SizeIs(1));
  EXPECT_EQ(delegate->errors[0].localizedDescription(), "The store's answer cannot be read.");
}

TEST_F(AppleProductsRequest, RefusedStartIsAFailureInALaterTurn) {
  [lastRequest() refuseStart];
  request->start();
  EXPECT_EQ(delegate->answers(), 0U);
  (void)tests::turnUntilIdle();
  ASSERT_THAT(delegate->errors, SizeIs(1));
  EXPECT_EQ(SKError(delegate->errors[0]).code(), SKError::Code::unknown);
}

TEST_F(AppleProductsRequest, CancelsThePlatforms) {
  request->start();
  request->cancel();
  EXPECT_EQ([lastRequest() cancels], 1);
}

TEST_F(AppleProductsRequest, CancelledHandsNothingOn) {
  request->start();
  request->cancel();
  [lastRequest() answer:aResponse()];
  [lastRequest() fail:tests::anError()];
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(AppleProductsRequest, CancelledStaysSilentForANewDelegateAndAnotherStart) {
  request->cancel();
  request->setDelegate(delegate);
  request->start();
  [lastRequest() answer:aResponse()];
  EXPECT_EQ([lastRequest() starts], 0);
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(AppleProductsRequest, DoesNotOwnItsDelegate) {
  const std::weak_ptr<RecordingDelegate> watched = delegate;
  delegate.reset();
  EXPECT_TRUE(watched.expired());
  [lastRequest() answer:aResponse()];
}

TEST_F(AppleProductsRequest, WithoutADelegateDropsItsAnswer) {
  request->setDelegate({});
  [lastRequest() answer:aResponse()];
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(AppleProductsRequest, AnswersTheDelegateThatWasSetLast) {
  const auto other = std::make_shared<RecordingDelegate>();
  request->setDelegate(other);
  [lastRequest() answer:aResponse()];
  EXPECT_EQ(delegate->answers(), 0U);
  EXPECT_EQ(other->answers(), 1U);
}

TEST_F(AppleProductsRequest, DelegateIsLetGoOfOnTheMainQueue) {
  const std::weak_ptr<RecordingDelegate> watched = delegate;
  delegate->onAnswer = [&] { delegate.reset(); };
  [lastRequest() answer:aResponse()];
  EXPECT_FALSE(watched.expired());
  (void)tests::turnUntilIdle();
  EXPECT_TRUE(watched.expired());
}

TEST_F(AppleProductsRequest, MayBeDestroyedInsideItsAnswer) {
  delegate->onAnswer = [&] { request.reset(); };
  [lastRequest() answer:aResponse()];
  EXPECT_EQ(delegate->answers(), 1U);
}

TEST_F(AppleProductsRequest, MayBeDestroyedInsideItsFailure) {
  delegate->onAnswer = [&] { request.reset(); };
  [lastRequest() fail:tests::anError()];
  EXPECT_EQ(delegate->answers(), 1U);
}

TEST_F(AppleProductsRequest, DestroyedTakesItsDelegateFromThePlatforms) {
  ::SKProductsRequest* const native = [lastRequest() retain];
  request->start();
  request.reset();
  (void)tests::turnUntilIdle();
  EXPECT_EQ([native delegate], nil);
  EXPECT_EQ([native cancels], 1);
  [native answer:aResponse()];
  EXPECT_EQ(delegate->answers(), 0U);
  [native release];
}

TEST_F(AppleProductsRequest, DestroyedUnstartedIsNotCancelled) {
  ::SKProductsRequest* const native = [lastRequest() retain];
  request.reset();
  EXPECT_EQ([native cancels], 0);
  [native release];
}

TEST_F(AppleProductsRequest, DelegateThatThrowsIsSaid) {
  delegate->onAnswer = [] { throw std::runtime_error("nothing to sell"); };
  tests::CapturedError error;
  [lastRequest() answer:aResponse()];
  EXPECT_THAT(error.text(), HasSubstr("nothing to sell"));
}

TEST_F(AppleProductsRequest, AnswersOnWhateverThreadThePlatformChooses) {
  ::SKProductsRequest* const native = lastRequest();
  const auto thread = tests::onAnotherThread([=] { [native answer:aResponse()]; });
  EXPECT_EQ(delegate->answers(), 1U);
  EXPECT_EQ(delegate->thread, thread);
}

TEST_F(AppleProductsRequest, LastReferenceToTheDelegateOnAnotherThreadEndsOnTheMainOne) {
  std::weak_ptr<RecordingDelegate> watched = delegate;
  delegate->onAnswer = [&] { delegate.reset(); };
  ::SKProductsRequest* const native = lastRequest();
  tests::onAnotherThread([=] { [native fail:tests::anError()]; });
  EXPECT_FALSE(watched.expired());
  (void)tests::turnUntilIdle();
  EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace StoreKit
