#include <gtest/gtest.h>

#include "tests/fakes/FakeStore.hpp"
#include "tests/fakes/RecordedEvents.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using StoreKit::SKError;

// A store whose journal also holds events and completions.
struct Subject : FakeStore {
  RecordedEvents events{journal};

  Subject() { journal->clear(); }

  TQStoreKit::PurchaseCompletion says(const std::string& name) {
    return [this, name](const TQPurchaseResult& result) {
      const auto* const error = result.asError();
      journal->push_back(name + (error ? " error: " + error->msg() : " success"));
    };
  }
  void buy(const std::string& productId, TQIdentifierPurchaseOptions options = {}) {
    instance->purchaseProduct(productId, std::move(options), says("completion"));
  }
};

TEST(PurchaseByIdentifier, AsksForTheOneProductAndDoesNothingElseYet) {
  Subject subject;

  subject.buy("gems");

  EXPECT_EQ(*subject.journal, Journal{"start gems"});
  EXPECT_EQ(subject.builder->at(0)->productIds(), TQProductIdentifiers{"gems"});
}

TEST(PurchaseByIdentifier, BeginIsAnnouncedWhenTheProductArrives) {
  Subject subject;
  subject.buy("gems");

  subject.builder->at(0)->answerWithProducts();

  EXPECT_EQ(*subject.journal, (Journal{"start gems", "event purchase.begin gems", "add gems"}));
}

TEST(PurchaseByIdentifier, BuysTheVeryProductThatWasFetched) {
  Subject subject;
  const auto product = aProduct("gems");
  subject.buy("gems");

  subject.builder->at(0)->answer(aResponse({product}));

  EXPECT_EQ(subject.queue.payments.at(0).product(), product);
  EXPECT_EQ(subject.events.purchase(0)->asBegin()->product, product);
}

TEST(PurchaseByIdentifier, DefaultsAreThoseOfAPurchaseByProduct) {
  Subject subject;
  subject.buy("gems");

  subject.builder->at(0)->answerWithProducts();

  const auto& platform = subject.queue.payments.at(0);
  EXPECT_EQ(platform.quantity(), 1);
  EXPECT_EQ(platform.applicationUsername(), std::optional<std::string>(""));
  EXPECT_FALSE(platform.simulatesAskToBuyInSandbox());
  EXPECT_FALSE(platform.paymentDiscount());
  EXPECT_TRUE(subject.payments->payments().at(0).atomically);
}

TEST(PurchaseByIdentifier, OptionsReachThePayment) {
  Subject subject;
  subject.buy("gems", {.quantity = 3,
                       .atomically = false,
                       .applicationUsername = "anna",
                       .simulatesAskToBuyInSandbox = true});

  subject.builder->at(0)->answerWithProducts();

  const auto& platform = subject.queue.payments.at(0);
  EXPECT_EQ(platform.quantity(), 3);
  EXPECT_EQ(platform.applicationUsername(), "anna");
  EXPECT_TRUE(platform.simulatesAskToBuyInSandbox());
  EXPECT_FALSE(subject.payments->payments().at(0).atomically);
  EXPECT_FALSE(subject.payments->payments().at(0).paymentDiscount);
}

TEST(PurchaseByIdentifier, SuccessIsAnnouncedThenCompletedThenFinished) {
  Subject subject;
  subject.buy("gems");
  subject.builder->at(0)->answerWithProducts();
  subject.journal->clear();

  EXPECT_TRUE(
      subject.payments->processTransaction(aTransaction("gems").purchased(), subject.queue));

  EXPECT_EQ(*subject.journal,
            (Journal{"event purchase.success gems", "completion success", "finish gems"}));
}

TEST(PurchaseByIdentifier, UnknownIdentifierIsCompletedThenAnnouncedAndNeverTouchesTheQueue) {
  Subject subject;
  subject.buy("gems");

  subject.builder->at(0)->answer(aResponse({}, {"gems"}));

  EXPECT_EQ(*subject.journal,
            (Journal{"start gems", "completion error: The purchase identifier was invalid",
                     "event purchase.failed gems"}));
  const auto* const failed = subject.events.purchase(0)->asFailed();
  EXPECT_EQ(failed->productIdentifier, "gems");
  EXPECT_EQ(failed->error->msg(), "The purchase identifier was invalid");
}

TEST(PurchaseByIdentifier, FailedRequestIsCompletedWithItsErrorAndThenAnnounced) {
  Subject subject;
  subject.buy("gems");

  subject.builder->at(0)->answer(aFailedResponse(
      Foundation::NSError::withDescription("NSURLErrorDomain", -1009, "You are offline")));

  EXPECT_EQ(*subject.journal, (Journal{"start gems", "completion error: You are offline",
                                       "event purchase.failed gems"}));
  EXPECT_EQ(subject.events.purchase(0)->asFailed()->error->msg(), "You are offline");
}

TEST(PurchaseByIdentifier, ErrorCountsBeforeAnInvalidIdentifier) {
  Subject subject;
  subject.buy("gems");

  subject.builder->at(0)->answer(
      {detail::LibraryOnly{}, {}, {"gems"}, SKError(SKError::Code::clientInvalid).nsError()});

  EXPECT_EQ((*subject.journal)[1], "completion error: Not allowed to make the payment");
}

TEST(PurchaseByIdentifier, ValidProductCountsBeforeAnErrorAndAnInvalidIdentifier) {
  Subject subject;
  subject.buy("gems");

  subject.builder->at(0)->answer({detail::LibraryOnly{},
                                  {aProduct("gems")},
                                  {"coins"},
                                  SKError(SKError::Code::clientInvalid).nsError()});

  EXPECT_EQ(*subject.journal, (Journal{"start gems", "event purchase.begin gems", "add gems"}));
}

TEST(PurchaseByIdentifier, AnswerWithNothingAtAllIsAnUnknownError) {
  Subject subject;
  subject.buy("gems");

  subject.builder->at(0)->answer(aResponse({}));

  EXPECT_EQ(*subject.journal,
            (Journal{"start gems", "completion error: Unknown error. Please contact support",
                     "event purchase.failed gems"}));
}

TEST(PurchaseByIdentifier, CancelledRequestIsAFailureAndNoCancelEvent) {
  Subject subject;
  subject.buy("gems");

  subject.builder->at(0)->answer(
      aFailedResponse(SKError(SKError::Code::paymentCancelled).nsError()));

  EXPECT_EQ(subject.journal->back(), "event purchase.failed gems");
}

TEST(PurchaseByIdentifier, EmptyCompletionOfARefusedPurchaseStillAnnouncesIt) {
  Subject subject;
  subject.instance->purchaseProduct("gems", {}, nullptr);

  subject.builder->at(0)->answer(aResponse({}, {"gems"}));

  EXPECT_EQ(*subject.journal, (Journal{"start gems", "event purchase.failed gems"}));
}

TEST(PurchaseByIdentifier, SharesARequestForExactlyThatProduct) {
  Subject subject;
  std::string fetched;
  subject.instance->productsInfoController().retrieveProductsInfo(
      {"gems"}, [&](const TQProductsResponse& response) {
        fetched = (*response.valids().begin())->productIdentifier();
      });

  subject.buy("gems");
  EXPECT_EQ(subject.builder->count(), 1U);
  subject.builder->at(0)->answerWithProducts();

  EXPECT_EQ(fetched, "gems");
  EXPECT_EQ(subject.queue.payments.size(), 1U);
}

TEST(PurchaseByIdentifier, TwoPurchasesShareTheRequestAndMakeTwoPayments) {
  Subject subject;
  subject.buy("gems", {.quantity = 1});
  subject.buy("gems", {.quantity = 2});

  subject.builder->at(0)->answerWithProducts();

  ASSERT_EQ(subject.queue.payments.size(), 2U);
  EXPECT_EQ(subject.queue.payments[0].quantity(), 1);
  EXPECT_EQ(subject.queue.payments[1].quantity(), 2);
}

TEST(PurchaseByIdentifier, CompletionOfARefusedPurchaseMayBuyAnotherProduct) {
  Subject subject;
  subject.instance->purchaseProduct("gems", {},
                                    [&](const TQPurchaseResult&) { subject.buy("coins"); });

  subject.builder->at(0)->answer(aResponse({}, {"gems"}));
  subject.builder->at(1)->answerWithProducts();

  EXPECT_EQ(*subject.journal, (Journal{"start gems", "start coins", "event purchase.failed gems",
                                       "event purchase.begin coins", "add coins"}));
}

TEST(PurchaseByIdentifier, CompletionOfARefusedPurchaseMayDestroyTheLibrary) {
  Subject subject;
  subject.instance->purchaseProduct("gems", {},
                                    [&](const TQPurchaseResult&) { subject.dropControllers(); });

  subject.builder->at(0)->answer(aResponse({}, {"gems"}));

  EXPECT_EQ(*subject.journal,
            (Journal{"start gems", "event purchase.failed gems", "remove observer"}));
}

TEST(PurchaseByIdentifier, AnswerAfterTheLibraryWasDroppedStillBuys) {
  Subject subject;
  subject.buy("gems");
  const auto request = subject.builder->at(0);

  subject.dropControllers();
  request->answerWithProducts();

  EXPECT_EQ((*subject.journal)[2], "add gems");
}

}  // namespace
}  // namespace TQStoreKitLib::tests
