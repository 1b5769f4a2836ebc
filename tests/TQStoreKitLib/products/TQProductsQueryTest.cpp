#include "TQStoreKitLib/products/TQProductsQuery.hpp"

#include <gtest/gtest.h>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/embedded/Dispatch/MainLoop.hpp"
#include "tests/fakes/FakeProduct.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Dispatch::MainLoop;

struct Answers {
  std::vector<TQProductsResponse> all{};

  TQProductsCallback record() {
    return [this](const TQProductsResponse& response) { all.push_back(response); };
  }
};

TEST(TQProductsQuery, AnswerOnTheMainThreadCallsBackInALaterTurn) {
  Answers answers;
  const auto query = TQProductsQuery::make({"gems"}, answers.record());
  std::size_t inside = 99;

  Dispatch::mainQueue().async([&] {
    query->productsRequestDidReceiveResponse({});
    inside = answers.all.size();
  });
  MainLoop::drain();

  EXPECT_EQ(inside, 0U);
  EXPECT_TRUE(answers.all.empty());
  MainLoop::drain();
  EXPECT_EQ(answers.all.size(), 1U);
}

TEST(TQProductsQuery, FailureOnTheMainThreadCallsBackInALaterTurn) {
  Answers answers;
  const auto query = TQProductsQuery::make({"gems"}, answers.record());

  query->requestDidFailWithError(Foundation::NSError("SKErrorDomain", 0));
  EXPECT_TRUE(answers.all.empty());
  MainLoop::drain();

  EXPECT_EQ(answers.all.size(), 1U);
}

TEST(TQProductsQuery, ResponseHoldsProductsAndUnknownIdentifiers) {
  Answers answers;
  const auto query = TQProductsQuery::make({"gems", "coins", "no"}, answers.record());
  const auto gems = aProduct("gems");
  const auto coins = aProduct("coins");

  query->productsRequestDidReceiveResponse(
      {.products = {gems, coins}, .invalidProductIdentifiers = {"no"}});
  MainLoop::drain();

  EXPECT_EQ(answers.all.at(0).valids(), (StoreKit::SKProductSet{coins, gems}));
  EXPECT_EQ(answers.all[0].invalidIDs(), TQProductIdentifiers{"no"});
  EXPECT_FALSE(answers.all[0].error());
}

TEST(TQProductsQuery, FailureHasEmptySetsAndThePlatformsError) {
  Answers answers;
  const auto query = TQProductsQuery::make({"gems"}, answers.record());

  query->requestDidFailWithError(Foundation::NSError("NSURLErrorDomain", -1));
  MainLoop::drain();

  EXPECT_TRUE(answers.all.at(0).valids().empty());
  EXPECT_TRUE(answers.all[0].invalidIDs().empty());
  ASSERT_TRUE(answers.all[0].error());
  EXPECT_EQ(answers.all[0].error()->domain(), "NSURLErrorDomain");
  EXPECT_EQ(answers.all[0].error()->code(), -1);
}

TEST(TQProductsQuery, ProductsThatThePlatformCountsAsEqualCollapse) {
  Answers answers;
  const auto query = TQProductsQuery::make({"gems"}, answers.record());
  const auto gems = aProduct("gems");

  query->productsRequestDidReceiveResponse(
      {.products = {aNativeProduct("gems", "key"), aNativeProduct("gems", "key"), gems, gems,
                    aProduct("gems")}});
  MainLoop::drain();

  EXPECT_EQ(answers.all.at(0).valids().size(), 3U);
}

TEST(TQProductsQuery, RepeatedUnknownIdentifiersCollapse) {
  Answers answers;
  const auto query = TQProductsQuery::make({"a"}, answers.record());

  query->productsRequestDidReceiveResponse({.invalidProductIdentifiers = {"b", "a", "b"}});
  MainLoop::drain();

  EXPECT_EQ(answers.all.at(0).invalidIDs(), (TQProductIdentifiers{"a", "b"}));
}

TEST(TQProductsQuery, EachMessageOfThePlatformMakesOneCall) {
  Answers answers;
  const auto query = TQProductsQuery::make({"gems"}, answers.record());

  query->productsRequestDidReceiveResponse({});
  query->requestDidFailWithError(Foundation::NSError("SKErrorDomain", 0));
  query->productsRequestDidReceiveResponse({});
  MainLoop::drain();

  ASSERT_EQ(answers.all.size(), 3U);
  EXPECT_FALSE(answers.all[0].error());
  EXPECT_TRUE(answers.all[1].error());
  EXPECT_FALSE(answers.all[2].error());
}

TEST(TQProductsQuery, ItLivesUntilItsAnswerWasDelivered) {
  Answers answers;
  auto query = TQProductsQuery::make({"gems"}, answers.record());
  const std::weak_ptr<TQProductsQuery> witness = query;

  query->productsRequestDidReceiveResponse({});
  query.reset();
  EXPECT_FALSE(witness.expired());
  MainLoop::drain();

  EXPECT_EQ(answers.all.size(), 1U);
  EXPECT_TRUE(witness.expired());
}

TEST(TQProductsQuery, ItLivesUntilItsFailureWasDelivered) {
  Answers answers;
  auto query = TQProductsQuery::make({"gems"}, answers.record());
  const std::weak_ptr<TQProductsQuery> witness = query;

  query->requestDidFailWithError(Foundation::NSError("SKErrorDomain", 0));
  query.reset();
  EXPECT_FALSE(witness.expired());
  MainLoop::drain();

  EXPECT_EQ(answers.all.size(), 1U);
  EXPECT_TRUE(witness.expired());
}

TEST(TQProductsQuery, CallbackMayDropTheLastReferenceToTheQuery) {
  std::shared_ptr<TQProductsQuery> query;
  std::string read;
  query = TQProductsQuery::make(
      {"gems"}, [&, captured = std::string(100, 'x')](const TQProductsResponse& response) {
        query.reset();
        read = captured + (*response.valids().begin())->productIdentifier();
      });

  query->productsRequestDidReceiveResponse({.products = {aProduct("gems")}});
  MainLoop::drain();

  EXPECT_EQ(read, std::string(100, 'x') + "gems");
}

TEST(TQProductsQuery, EmptyCallbackIsNotCalled) {
  const auto query = TQProductsQuery::make({"gems"}, nullptr);

  query->productsRequestDidReceiveResponse({});
  query->requestDidFailWithError(Foundation::NSError("SKErrorDomain", 0));

  EXPECT_NO_THROW(MainLoop::drain());
}

}  // namespace
}  // namespace TQStoreKitLib::tests
