#include <gtest/gtest.h>

#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakePayment.hpp"
#include "tests/fakes/FakeStore.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Results = std::vector<TQTransactionResult>;

constexpr auto* kNotRegistered =
    "TQStoreKit.completeTransactions() should be called once when the app launches.";

std::string joined(const std::vector<TQPurchase>& purchases) {
  std::string products;
  for (const auto& purchase : purchases) products += " " + purchase.productId;
  return products;
}

// A store whose journal also holds what is printed and which callbacks ran.
struct Subject : FakeStore {
  CapturedPrints prints{journal};

  Subject() { journal->clear(); }

  void wait(const std::string& productId) {
    payments->append(aPayment(productId, [this, productId](const TQTransactionResult&) {
      journal->push_back("payment " + productId);
    }));
  }
  void beginRestore() {
    restore->begin({.callback = [this](const Results& results) {
      journal->push_back("restored " + std::to_string(results.size()));
    }});
  }
  void registerCompletion() {
    complete->registerCompletion(
        {.atomically = false, .callback = [this](const std::vector<TQPurchase>& purchases) {
           journal->push_back("completed" + joined(purchases));
         }});
  }
};

TEST(Dispatch, BatchOfPurchasingTransactionsReachesNoController) {
  Subject subject;
  subject.wait("gems");

  subject.report({aTransaction("gems").purchasing(), aTransaction("coins").purchasing()});

  EXPECT_TRUE(subject.journal->empty());
}

TEST(Dispatch, EmptyBatchReachesNoController) {
  Subject subject;

  subject.report({});

  EXPECT_TRUE(subject.journal->empty());
}

TEST(Dispatch, PurchasingTransactionInAMixedBatchIsPassedDownTheWholeChain) {
  Subject subject;
  subject.wait("gems");
  subject.registerCompletion();

  subject.report({aTransaction("coins").purchasing(), aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal,
            (Journal{"payment gems", "finish gems",
                     "unhandledTransactions:\nproductId: coins, transactionId: null, state: "
                     "purchasing, date: nil"}));
}

TEST(Dispatch, PurchasedTransactionThatNobodyWaitsForIsPrintedAndNotFinished) {
  Subject subject;

  subject.report({aTransaction("gems").purchased().identifiedBy("7")});

  EXPECT_EQ(*subject.journal,
            (Journal{kNotRegistered,
                     "unhandledTransactions:\nproductId: gems, transactionId: 7, state: purchased, "
                     "date: nil"}));
  EXPECT_TRUE(subject.queue.finished.empty());
}

TEST(Dispatch, UnhandledTransactionsArePrintedInOneMessageInOrder) {
  Subject subject;

  subject.report({aTransaction("b").deferred(), aTransaction("a").inState(5).datedAt(0)});

  EXPECT_EQ(*subject.journal,
            (Journal{kNotRegistered,
                     "unhandledTransactions:\n"
                     "productId: b, transactionId: null, state: deferred, date: nil\n"
                     "productId: a, transactionId: null, state: default, date: Optional(" +
                         Foundation::Date::sinceEpoch(0).description() + ")"}));
}

TEST(Dispatch, MissingRegistrationIsPrintedAlsoWhenNothingIsLeft) {
  Subject subject;
  subject.wait("gems");

  subject.report({aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal, (Journal{"payment gems", "finish gems", kNotRegistered}));
}

TEST(Dispatch, PaymentsComeBeforeRestoreAndRestoreBeforeCompletion) {
  Subject subject;
  subject.wait("gems");
  subject.beginRestore();
  subject.registerCompletion();

  subject.report({aTransaction("coins").purchased(), aTransaction("club").restored(),
                  aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal,
            (Journal{"payment gems", "finish gems", "finish club", "completed coins"}));
}

TEST(Dispatch, EachControllerTakesWhatBelongsToItFromOneBatch) {
  Subject subject;
  subject.wait("gems");
  subject.wait("gems");
  subject.wait("coins");
  subject.beginRestore();
  subject.registerCompletion();

  subject.report({aTransaction("club").restored(), aTransaction("gems").purchased(),
                  aTransaction("late").purchased(), aTransaction("gems").failed(),
                  aTransaction("next").purchasing(), aTransaction("coins").deferred(),
                  aTransaction("odd").inState(5), aTransaction("gems").purchased()});
  subject.controller->paymentQueueRestoreCompletedTransactionsFinished();

  EXPECT_EQ(*subject.journal,
            (Journal{"payment gems", "finish gems", "payment gems", "finish gems", "finish club",
                     "completed late coins odd gems",
                     "unhandledTransactions:\nproductId: next, transactionId: null, state: "
                     "purchasing, date: nil",
                     "restored 1"}));
  EXPECT_EQ(subject.payments->payments().size(), 1U);
}

TEST(Dispatch, RestoredTransactionThatResolvesAPaymentIsSeenByTheRestoreToo) {
  Subject subject;
  subject.wait("club");
  subject.beginRestore();

  subject.report({aTransaction("club").restored()});
  subject.controller->paymentQueueRestoreCompletedTransactionsFinished();

  EXPECT_EQ(*subject.journal,
            (Journal{"Unexpected restored transaction for payment club", "payment club",
                     "finish club", "finish club", kNotRegistered, "restored 1"}));
}

TEST(Dispatch, RestoredTransactionThatResolvesAPaymentIsSeenByTheCompletionToo) {
  Subject subject;
  subject.wait("club");
  subject.registerCompletion();

  subject.report({aTransaction("club").restored()});

  EXPECT_EQ(*subject.journal, (Journal{"Unexpected restored transaction for payment club",
                                       "payment club", "finish club", "completed club"}));
}

TEST(Dispatch, RestoredTransactionWithoutARestoreGoesToTheCompletion) {
  Subject subject;
  subject.registerCompletion();

  subject.report({aTransaction("club").restored()});

  EXPECT_EQ(*subject.journal, Journal{"completed club"});
}

TEST(Dispatch, DeferredPaymentGoesToTheCompletionAndKeepsWaiting) {
  Subject subject;
  subject.wait("gems");
  subject.registerCompletion();

  subject.report({aTransaction("gems").deferred()});
  subject.report({aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal, (Journal{"completed gems", "payment gems", "finish gems"}));
}

TEST(Dispatch, RegistrationMadeByAPaymentsCallbackServesTheRestOfTheBatch) {
  Subject subject;
  subject.payments->append(
      aPayment("gems", [&](const TQTransactionResult&) { subject.registerCompletion(); }));

  subject.report({aTransaction("gems").purchased(), aTransaction("late").purchased()});

  EXPECT_EQ(*subject.journal, (Journal{"finish gems", "completed late"}));
}

TEST(Dispatch, RestoreBegunByAPaymentsCallbackServesTheRestOfTheBatch) {
  Subject subject;
  subject.registerCompletion();
  subject.payments->append(
      aPayment("gems", [&](const TQTransactionResult&) { subject.beginRestore(); }));

  subject.report({aTransaction("club").restored(), aTransaction("gems").purchased()});

  EXPECT_EQ(*subject.journal, (Journal{"finish gems", "finish club"}));
}

TEST(Dispatch, PaymentsCallbackMayDestroyEverythingAndTheBatchEndsAllTheSame) {
  Subject subject;
  subject.registerCompletion();
  subject.wait("coins");
  subject.payments->append(
      aPayment("gems", [&](const TQTransactionResult&) { subject.dropControllers(); }));

  subject.report({aTransaction("gems").purchased(), aTransaction("coins").purchased(),
                  aTransaction("late").purchased(), aTransaction("next").purchasing()});

  EXPECT_EQ(
      *subject.journal,
      (Journal{"remove observer", "finish gems", "payment coins", "finish coins", "completed late",
               "unhandledTransactions:\nproductId: next, transactionId: null, state: "
               "purchasing, date: nil"}));
}

TEST(Dispatch, CallbackMayClearTheVeryListThatWasReported) {
  Subject subject;
  StoreKit::SKPaymentTransactions batch = {aTransaction("gems").purchased(),
                                           aTransaction("coins").purchased()};
  subject.payments->append(aPayment("gems", [&](const TQTransactionResult&) {
    batch.clear();
    batch.shrink_to_fit();
  }));
  subject.wait("coins");
  subject.registerCompletion();

  subject.report(batch);

  EXPECT_EQ(*subject.journal, (Journal{"finish gems", "payment coins", "finish coins"}));
}

TEST(Dispatch, CompletionsCallbackMayDestroyEverything) {
  Subject subject;
  subject.complete->registerCompletion(
      {.callback = [&](const std::vector<TQPurchase>&) { subject.dropControllers(); }});

  subject.report({aTransaction("late").purchased(), aTransaction("next").purchasing()});

  EXPECT_EQ(subject.journal->back(),
            "unhandledTransactions:\nproductId: next, transactionId: null, state: purchasing, "
            "date: nil");
}

TEST(Dispatch, RestoresCallbackMayDestroyEverything) {
  Subject subject;
  subject.restore->begin({.callback = [&](const Results&) { subject.dropControllers(); }});

  subject.controller->paymentQueueRestoreCompletedTransactionsFailedWithError(
      Foundation::NSError("SKErrorDomain", 0));

  EXPECT_EQ(*subject.journal, Journal{"remove observer"});
}

}  // namespace
}  // namespace TQStoreKitLib::tests
