#include "TQStoreKitLib/products/TQInAppProducts.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/FakeProductsRequestBuilder.hpp"
#include "tests/fakes/OnDestruction.hpp"

namespace TQStoreKitLib::tests {
namespace {

struct Subject {
  std::shared_ptr<FakeProductsRequestBuilder> builder =
      std::make_shared<FakeProductsRequestBuilder>();
  JournalPtr journal = builder->journal;
  std::shared_ptr<TQInAppProducts> products = TQInAppProducts::make(builder);

  ~Subject() { builder->abandonAll(); }

  TQProductsCallback says(const std::string& line) {
    return [this, line](const TQProductsResponse&) { journal->push_back(line); };
  }
  void fetch(const TQProductIdentifiers& ids, TQProductsCallback callback) const {
    products->retrieveProductsInfo(ids, std::move(callback));
  }
  void answer(std::size_t index) const { builder->at(index)->answerWithProducts(); }
};

TEST(TQInAppProducts, FirstCallMakesAndStartsARequest) {
  Subject subject;

  subject.fetch({"a", "b"}, subject.says("first"));

  EXPECT_EQ(*subject.journal, (Journal{"start a", "start b"}));
  EXPECT_EQ(subject.builder->at(0)->productIds(), (TQProductIdentifiers{"a", "b"}));
  EXPECT_EQ(subject.products->inflightRequestCount(), 1U);
}

TEST(TQInAppProducts, CallsForTheSameSetShareTheRequestAndAreAnsweredInOrder) {
  Subject subject;
  subject.fetch({"a", "b"}, subject.says("first"));
  subject.fetch({"b", "a"}, subject.says("second"));
  subject.fetch({"a", "b", "a"}, subject.says("third"));
  subject.journal->clear();

  subject.answer(0);

  EXPECT_EQ(subject.builder->count(), 1U);
  EXPECT_EQ(*subject.journal, (Journal{"first", "second", "third"}));
}

TEST(TQInAppProducts, AllWhoWaitGetTheSameResponse) {
  Subject subject;
  std::vector<const TQProductsResponse*> seen;
  for (int i = 0; i < 2; ++i) {
    subject.fetch({"a"}, [&](const TQProductsResponse& response) { seen.push_back(&response); });
  }
  const auto response = aResponse({}, {"a"});

  subject.builder->at(0)->answer(response);

  EXPECT_EQ(seen, (std::vector<const TQProductsResponse*>{&response, &response}));
}

TEST(TQInAppProducts, OverlappingSetsMakeRequestsOfTheirOwn) {
  Subject subject;

  subject.fetch({"a", "b"}, subject.says("both"));
  subject.fetch({"a"}, subject.says("one"));
  subject.fetch({"a", "c"}, subject.says("other"));

  EXPECT_EQ(subject.builder->count(), 3U);
  EXPECT_EQ(subject.products->inflightRequestCount(), 3U);
}

TEST(TQInAppProducts, AnswersMayComeInAnyOrderAndReachThoseWhoAsked) {
  Subject subject;
  subject.fetch({"a"}, subject.says("a"));
  subject.fetch({"b"}, subject.says("b"));
  subject.journal->clear();

  subject.answer(1);
  EXPECT_EQ(*subject.journal, Journal{"b"});
  EXPECT_EQ(subject.products->inflightRequestCount(), 1U);

  subject.answer(0);
  EXPECT_EQ(*subject.journal, (Journal{"b", "a"}));
}

TEST(TQInAppProducts, NothingIsCachedAfterTheAnswer) {
  Subject subject;
  subject.fetch({"a"}, subject.says("first"));
  subject.answer(0);

  subject.fetch({"a"}, subject.says("second"));
  EXPECT_EQ(subject.builder->count(), 2U);
  subject.answer(1);

  EXPECT_EQ(*subject.journal, (Journal{"start a", "first", "start a", "second"}));
}

TEST(TQInAppProducts, FailureReachesEveryoneAndIsNotRetried) {
  Subject subject;
  std::vector<std::int64_t> codes;
  const auto record = [&](const TQProductsResponse& response) {
    codes.push_back(response.error()->code());
  };
  subject.fetch({"a"}, record);
  subject.fetch({"a"}, record);

  subject.builder->at(0)->answer(aFailedResponse(Foundation::NSError("NSURLErrorDomain", -1009)));

  EXPECT_EQ(codes, (std::vector<std::int64_t>{-1009, -1009}));
  EXPECT_EQ(subject.builder->count(), 1U);
  EXPECT_EQ(subject.products->inflightRequestCount(), 0U);
}

TEST(TQInAppProducts, EmptySetIsASetLikeAnyOther) {
  Subject subject;
  subject.fetch({}, subject.says("first"));
  subject.fetch({}, subject.says("second"));

  subject.builder->at(0)->answer(aResponse({}));

  EXPECT_EQ(*subject.journal, (Journal{"start nothing", "first", "second"}));
}

TEST(TQInAppProducts, EmptyCallbackMakesTheRequestAllTheSame) {
  Subject subject;
  subject.fetch({"a"}, nullptr);
  subject.fetch({"a"}, subject.says("second"));
  subject.fetch({"a"}, nullptr);

  subject.answer(0);

  EXPECT_EQ(*subject.journal, (Journal{"start a", "second"}));
}

TEST(TQInAppProducts, RequestIsReleasedOnceItIsAnswered) {
  Subject subject;
  subject.fetch({"a"}, subject.says("first"));

  subject.answer(0);

  EXPECT_EQ(subject.builder->at(0), nullptr);
}

TEST(TQInAppProducts, RequestUnderWayKeepsTheControllerAlive) {
  Subject subject;
  subject.fetch({"a"}, subject.says("first"));
  const std::weak_ptr<TQInAppProducts> witness = subject.products;

  subject.products.reset();
  EXPECT_FALSE(witness.expired());
  subject.answer(0);

  EXPECT_EQ(subject.journal->back(), "first");
  EXPECT_TRUE(witness.expired());
}

TEST(TQInAppProducts, SecondAnswerOfOneRequestReachesTheFirstCallerOnly) {
  Subject subject;
  subject.fetch({"a"}, subject.says("first"));
  subject.fetch({"a"}, subject.says("second"));
  const auto request = subject.builder->at(0);
  request->answerWithProducts();
  subject.journal->clear();

  request->answerWithProducts();

  EXPECT_EQ(*subject.journal, Journal{"first"});
}

TEST(TQInAppProducts, SecondAnswerOfARequestWithoutACallbackReachesNobody) {
  Subject subject;
  subject.fetch({"a"}, nullptr);
  const auto request = subject.builder->at(0);
  request->answerWithProducts();

  request->answerWithProducts();

  EXPECT_EQ(*subject.journal, Journal{"start a"});
}

TEST(TQInAppProducts, SecondAnswerServesThoseWhoWaitForTheSetByThen) {
  Subject subject;
  subject.fetch({"a"}, subject.says("first"));
  const auto request = subject.builder->at(0);
  request->answerWithProducts();
  subject.fetch({"a"}, subject.says("second"));
  subject.journal->clear();

  request->answerWithProducts();

  EXPECT_EQ(*subject.journal, Journal{"second"});
  EXPECT_EQ(subject.products->inflightRequestCount(), 0U);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
