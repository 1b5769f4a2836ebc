#include <gtest/gtest.h>

#include "TQStoreKitLib/products/TQInAppProducts.hpp"
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

TEST(TQInAppProductsReentry, CallForTheSameSetFromInsideACallbackIsNeverAnswered) {
  Subject subject;
  subject.fetch({"a"}, [&](const TQProductsResponse&) {
    subject.journal->emplace_back("first");
    subject.fetch({"a"}, subject.says("joined"));
  });
  subject.fetch({"a"}, subject.says("second"));

  subject.answer(0);

  EXPECT_EQ(*subject.journal, (Journal{"start a", "first", "second"}));
  EXPECT_EQ(subject.products->inflightRequestCount(), 0U);
}

TEST(TQInAppProductsReentry, RequestIsStillInFlightInsideItsCallbacks) {
  Subject subject;
  std::size_t inflight = 0;
  subject.fetch({"a"}, [&](const TQProductsResponse&) {
    inflight = subject.products->inflightRequestCount();
  });

  subject.answer(0);

  EXPECT_EQ(inflight, 1U);
}

TEST(TQInAppProductsReentry, CallForAnotherSetFromInsideACallbackMakesARequest) {
  Subject subject;
  subject.fetch({"a"}, [&](const TQProductsResponse&) { subject.fetch({"b"}, subject.says("b")); });

  subject.answer(0);
  subject.answer(1);

  EXPECT_EQ(*subject.journal, (Journal{"start a", "start b", "b"}));
}

TEST(TQInAppProductsReentry, CallbackMayMakeAHundredRequests) {
  Subject subject;
  std::string read;
  const std::string captured(100, 'x');
  subject.fetch({"a"}, [&, captured](const TQProductsResponse& response) {
    for (int i = 0; i < 100; ++i) {
      subject.fetch({"a"}, nullptr);
      subject.fetch({"b" + std::to_string(i)}, nullptr);
    }
    read = captured + (*response.valids().begin())->productIdentifier();
  });

  subject.answer(0);

  EXPECT_EQ(read, captured + "a");
  EXPECT_EQ(subject.products->inflightRequestCount(), 100U);
}

TEST(TQInAppProductsReentry, CallbackMayDropTheLastReferenceToTheController) {
  Subject subject;
  const std::weak_ptr<TQInAppProducts> witness = subject.products;
  subject.fetch({"a"}, [&](const TQProductsResponse&) { subject.products.reset(); });
  subject.fetch({"a"}, subject.says("second"));

  subject.answer(0);

  EXPECT_EQ(subject.journal->back(), "second");
  EXPECT_TRUE(witness.expired());
  EXPECT_EQ(subject.builder->at(0), nullptr);
}

TEST(TQInAppProductsReentry, CallbackThatGotAnAnswerForAnotherSetLeavesTheOwnEntryAlone) {
  Subject subject;
  subject.fetch({"b"}, subject.says("b"));
  subject.fetch({"a"}, [&](const TQProductsResponse&) { subject.answer(0); });
  subject.fetch({"c"}, subject.says("c"));

  subject.answer(1);

  EXPECT_EQ(subject.journal->back(), "b");
  EXPECT_EQ(subject.products->inflightRequestCount(), 1U);
}

TEST(TQInAppProductsReentry, ReleasingACallbackFindsTheEntryGoneAndMayAskAgain) {
  Subject subject;
  subject.fetch({"a"}, [witness = onDestruction([&] {
                          subject.fetch({"a"}, subject.says("again"));
                        })](const TQProductsResponse&) {});

  subject.answer(0);
  ASSERT_EQ(subject.builder->count(), 2U);
  subject.answer(1);

  EXPECT_EQ(*subject.journal, (Journal{"start a", "start a", "again"}));
}

}  // namespace
}  // namespace TQStoreKitLib::tests
