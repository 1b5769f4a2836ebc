#include "platform/StoreKit/SKProductsRequest.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "tests/fakes/OpenShop.hpp"
#include "tests/fakes/RecordingDelegate.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using tests::OpenShop;
using tests::RecordingDelegate;
using tests::turnUntilIdle;

class ProductsRequest : public testing::Test {
 protected:
  OpenShop shop;
  std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();

  [[nodiscard]] std::unique_ptr<SKProductsRequest> started(
      std::set<std::string> identifiers) const {
    auto request = std::make_unique<SKProductsRequest>(std::move(identifiers));
    request->setDelegate(delegate);
    request->start();
    return request;
  }
  void ask(std::set<std::string> identifiers) const {
    const auto request = started(std::move(identifiers));
    (void)turnUntilIdle();
  }
};

TEST_F(ProductsRequest, IsNotAnsweredInsideStart) {
  const auto request = started({"gems"});
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(ProductsRequest, TellsKnownFromUnknown) {
  ask({"gems", "crown", "no such", "GEMS"});
  ASSERT_EQ(delegate->responses.size(), 1U);
  EXPECT_THAT(tests::identifiersOf(delegate->responses[0]), ElementsAre("crown", "gems"));
  EXPECT_THAT(delegate->responses[0].invalidProductIdentifiers,
              UnorderedElementsAre("no such", "GEMS"));
}

TEST_F(ProductsRequest, AnswersWithTheProductsOfTheCatalogue) {
  ask({"gems"});
  const auto& product = *delegate->responses.at(0).products.at(0);
  EXPECT_TRUE(product == *shop.session.catalogue().find("gems")->product);
  EXPECT_EQ(product.price().toString(), "0.99");
}

TEST_F(ProductsRequest, EmptySetIsAnsweredWithAnEmptyResponse) {
  ask({});
  ASSERT_EQ(delegate->responses.size(), 1U);
  EXPECT_THAT(delegate->responses[0].products, IsEmpty());
  EXPECT_THAT(delegate->responses[0].invalidProductIdentifiers, IsEmpty());
}

TEST_F(ProductsRequest, ComparesIdentifiersExactly) {
  ask({"gems ", std::string("gems\0x", 6), ""});
  EXPECT_EQ(delegate->responses.at(0).invalidProductIdentifiers.size(), 3U);
}

TEST_F(ProductsRequest, IsSilentUntilItIsStarted) {
  SKProductsRequest request({"gems"});
  request.setDelegate(delegate);
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(ProductsRequest, StartedTwiceAnswersOnce) {
  const auto request = started({"gems"});
  request->start();
  (void)turnUntilIdle();
  request->start();
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 1U);
}

TEST_F(ProductsRequest, CancelledOneNeverAnswers) {
  const auto request = started({"gems"});
  request->cancel();
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(ProductsRequest, CancelledOneStaysSilentForANewDelegateToo) {
  const auto request = started({"gems"});
  request->cancel();
  request->setDelegate(delegate);
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(ProductsRequest, CancelledOneCannotBeStartedAgain) {
  const auto request = started({"gems"});
  request->cancel();
  request->setDelegate(delegate);
  request->start();
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(ProductsRequest, DestroyedOneNeverAnswers) {
  started({"gems"}).reset();
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(ProductsRequest, DoesNotOwnItsDelegate) {
  const auto request = started({"gems"});
  const std::weak_ptr<RecordingDelegate> watched = delegate;
  delegate.reset();
  EXPECT_TRUE(watched.expired());
  (void)turnUntilIdle();
}

TEST_F(ProductsRequest, WithoutDelegateDropsItsAnswer) {
  SKProductsRequest request({"gems"});
  request.start();
  (void)turnUntilIdle();
  request.setDelegate(delegate);
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 0U);
}

TEST_F(ProductsRequest, AnswersTheDelegateThatWasSetLast) {
  const auto request = started({"gems"});
  const auto other = std::make_shared<RecordingDelegate>();
  request->setDelegate(other);
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 0U);
  EXPECT_EQ(other->answers(), 1U);
}

TEST_F(ProductsRequest, FailsAsOftenAsItWasSetUp) {
  shop.session.failProductsRequests(Foundation::NSError("network", -1009), 2);
  for (int i = 0; i < 3; ++i) ask({"gems"});
  ASSERT_EQ(delegate->errors.size(), 2U);
  EXPECT_EQ(delegate->errors[0].domain(), "network");
  EXPECT_EQ(delegate->errors[1].code(), -1009);
  EXPECT_EQ(delegate->responses.size(), 1U);
}

TEST_F(ProductsRequest, EachAnswersForItself) {
  const auto first = started({"gems"});
  const auto second = started({"crown"});
  (void)turnUntilIdle();
  ASSERT_EQ(delegate->responses.size(), 2U);
  EXPECT_THAT(tests::identifiersOf(delegate->responses[0]), ElementsAre("gems"));
  EXPECT_THAT(tests::identifiersOf(delegate->responses[1]), ElementsAre("crown"));
}

TEST_F(ProductsRequest, MayBeDestroyedInsideItsAnswer) {
  auto request = started({"gems"});
  delegate->onAnswer = [&] { request.reset(); };
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->answers(), 1U);
}

TEST_F(ProductsRequest, DelegateMayLetGoOfItselfInsideTheAnswer) {
  const auto request = started({"gems"});
  const std::weak_ptr<RecordingDelegate> watched = delegate;
  bool answered = false;
  delegate->onAnswer = [&] {
    answered = true;
    delegate.reset();
  };
  (void)turnUntilIdle();
  EXPECT_TRUE(answered);
  EXPECT_TRUE(watched.expired());
}

TEST_F(ProductsRequest, AnotherStoreMayBeOpenedInsideTheAnswer) {
  const auto request = started({"gems"});
  delegate->onAnswer = [] { (void)StoreSession(tests::shop()); };
  (void)turnUntilIdle();
  EXPECT_EQ(delegate->responses.at(0).products.at(0)->productIdentifier(), "gems");
}

}  // namespace
}  // namespace StoreKit
