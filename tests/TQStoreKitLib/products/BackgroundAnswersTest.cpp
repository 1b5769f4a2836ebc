#include <gtest/gtest.h>

#include <thread>

#include "TQStoreKitLib/products/TQInAppProducts.hpp"
#include "TQStoreKitLib/products/TQProductsQuery.hpp"
#include "tests/fakes/EmbeddedShop.hpp"
#include "tests/fakes/FakeProduct.hpp"
#include "tests/fakes/OnDestruction.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Dispatch::MainLoop;

struct Subject : EmbeddedShop {
  std::thread::id mainThread = std::this_thread::get_id();
  std::vector<TQProductsResponse> answers{};
  std::vector<std::thread::id> threads{};

  Subject() { session.setAnswersProductsInBackground(true); }

  // Ends the loop that the test then runs.
  TQProductsCallback record() {
    return [this](const TQProductsResponse& response) {
      answers.push_back(response);
      threads.push_back(std::this_thread::get_id());
      MainLoop::stop();
    };
  }
};

TEST(BackgroundAnswers, AnswerFromAnotherThreadIsDeliveredOnTheMainOne) {
  Subject subject;
  const auto query = TQProductsQuery::make({"gems", "no"}, subject.record());

  query->start();
  MainLoop::run();

  ASSERT_EQ(subject.answers.size(), 1U);
  EXPECT_EQ(subject.answers[0].valids().size(), 1U);
  EXPECT_EQ(subject.answers[0].invalidIDs(), TQProductIdentifiers{"no"});
  EXPECT_EQ(subject.threads[0], subject.mainThread);
}

TEST(BackgroundAnswers, FailureFromAnotherThreadIsDeliveredOnTheMainOne) {
  Subject subject;
  subject.session.failProductsRequests(Foundation::NSError("NSURLErrorDomain", -1009));
  const auto query = TQProductsQuery::make({"gems"}, subject.record());

  query->start();
  MainLoop::run();

  EXPECT_EQ(subject.answers.at(0).error()->code(), -1009);
  EXPECT_EQ(subject.threads[0], subject.mainThread);
}

TEST(BackgroundAnswers, MessageFromAnotherThreadIsNotDeliveredThere) {
  Subject subject;
  MainLoop::drain();
  const auto query = TQProductsQuery::make({"gems"}, subject.record());

  std::thread([&] {
    query->productsRequestDidReceiveResponse({.products = {aProduct("gems")}});
  }).join();
  EXPECT_TRUE(subject.answers.empty());
  MainLoop::run();

  EXPECT_EQ(subject.threads.at(0), subject.mainThread);
}

TEST(BackgroundAnswers, SharedRequestAnswersEverybodyOnTheMainThread) {
  Subject subject;
  const auto products =
      TQInAppProducts::make(std::make_shared<TQInAppProductQueryRequestBuilder>());

  products->retrieveProductsInfo({"gems"}, subject.record());
  products->retrieveProductsInfo({"gems"}, subject.record());
  MainLoop::run();

  EXPECT_EQ(subject.threads,
            (std::vector<std::thread::id>{subject.mainThread, subject.mainThread}));
  EXPECT_EQ(products->inflightRequestCount(), 0U);
}

TEST(BackgroundAnswers, QueryDroppedWhileTheAnswerIsOnItsWayIsDestroyedOnTheMainThread) {
  for (int i = 0; i < 50; ++i) {
    Subject subject;
    std::thread::id released;
    auto query = TQProductsQuery::make(
        {"gems"}, [witness = onDestruction([&] { released = std::this_thread::get_id(); }),
                   record = subject.record()](const TQProductsResponse&) {});
    query->start();
    MainLoop::drain();

    query.reset();
    while (released == std::thread::id()) MainLoop::drain();

    EXPECT_EQ(released, subject.mainThread);
  }
}

}  // namespace
}  // namespace TQStoreKitLib::tests
