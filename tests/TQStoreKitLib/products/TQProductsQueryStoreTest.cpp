#include <gtest/gtest.h>

#include "TQStoreKitLib/products/TQProductsQuery.hpp"
#include "tests/fakes/EmbeddedShop.hpp"

namespace TQStoreKitLib::tests {
namespace {

struct Subject : EmbeddedShop {
  std::vector<TQProductsResponse> answers{};
  std::shared_ptr<TQProductsRequest> query;

  explicit Subject(const TQProductIdentifiers& productIds)
      : query(TQInAppProductQueryRequestBuilder().makeProductsRequest(
            productIds, [this](const TQProductsResponse& answer) { answers.push_back(answer); })) {}
};

std::string identifiersOf(const StoreKit::SKProductSet& products) {
  std::set<std::string> sorted;
  for (const auto& product : products) sorted.insert(product->productIdentifier());
  std::string line;
  for (const auto& each : sorted) line += each + " ";
  return line;
}

TEST(TQProductsQueryStore, BuilderMakesARequestThatIsNotStarted) {
  Subject subject({"gems"});

  subject.settle();

  EXPECT_TRUE(subject.answers.empty());
}

TEST(TQProductsQueryStore, KnownIdentifiersGiveOneProductEach) {
  Subject subject({"gems", "level"});

  subject.query->start();
  EXPECT_TRUE(subject.answers.empty());
  subject.settle();

  ASSERT_EQ(subject.answers.size(), 1U);
  EXPECT_EQ(identifiersOf(subject.answers[0].valids()), "gems level ");
  EXPECT_TRUE(subject.answers[0].invalidIDs().empty());
  EXPECT_FALSE(subject.answers[0].error());
}

TEST(TQProductsQueryStore, UnknownIdentifiersAreNoError) {
  Subject subject({"no", "nothing"});

  subject.query->start();
  subject.settle();

  EXPECT_TRUE(subject.answers.at(0).valids().empty());
  EXPECT_EQ(subject.answers[0].invalidIDs(), (TQProductIdentifiers{"no", "nothing"}));
  EXPECT_FALSE(subject.answers[0].error());
}

TEST(TQProductsQueryStore, EmptySetIsAnsweredWithAnEmptyResponse) {
  Subject subject({});

  subject.query->start();
  subject.settle();

  EXPECT_TRUE(subject.answers.at(0).valids().empty());
  EXPECT_TRUE(subject.answers[0].invalidIDs().empty());
}

TEST(TQProductsQueryStore, FailureOfTheStoreArrivesAsTheResponsesError) {
  Subject subject({"gems"});
  subject.session.failProductsRequests(Foundation::NSError("NSURLErrorDomain", -1009));

  subject.query->start();
  subject.settle();

  ASSERT_EQ(subject.answers.size(), 1U);
  EXPECT_TRUE(subject.answers[0].valids().empty());
  EXPECT_EQ(subject.answers[0].error()->code(), -1009);
}

TEST(TQProductsQueryStore, CancelledQueryNeverCallsBack) {
  Subject subject({"gems"});

  subject.query->start();
  subject.query->cancel();
  subject.settle();

  EXPECT_TRUE(subject.answers.empty());
}

TEST(TQProductsQueryStore, QueryDestroyedBeforeTheStoreAnswersNeverCallsBack) {
  Subject subject({"gems"});

  subject.query->start();
  subject.query.reset();
  subject.settle();

  EXPECT_TRUE(subject.answers.empty());
}

TEST(TQProductsQueryStore, StartingTwiceAsksOnce) {
  Subject subject({"gems"});

  subject.query->start();
  subject.query->start();
  subject.settle();

  EXPECT_EQ(subject.answers.size(), 1U);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
