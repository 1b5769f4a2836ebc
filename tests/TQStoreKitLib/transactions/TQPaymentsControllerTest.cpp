#include "TQStoreKitLib/transactions/TQPaymentsController.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakePayment.hpp"
#include "tests/fakes/FakePaymentQueue.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Transactions = StoreKit::SKPaymentTransactions;

struct Subject {
  JournalPtr journal = aJournal();
  CapturedPrints prints{journal};
  FakePaymentQueue queue{journal};
  std::shared_ptr<TQPaymentsController> payments = std::make_shared<TQPaymentsController>();
  std::vector<TQTransactionResult> results{};

  // The callback says which product was resolved, and how many payments it found waiting.
  TQPayment::Callback told(const std::string& name) {
    return [this, name](const TQTransactionResult& result) {
      journal->push_back(name +
                         " resolved, waiting: " + std::to_string(payments->payments().size()));
      results.push_back(result);
    };
  }
  bool process(const StoreKit::SKPaymentTransactionPtr& transaction) {
    return payments->processTransaction(transaction, queue);
  }
};

TEST(TQPaymentsController, BeginsWithNothingWaiting) {
  EXPECT_TRUE(TQPaymentsController().payments().empty());
}

TEST(TQPaymentsController, AppendedPaymentsWaitInOrder) {
  TQPaymentsController payments;
  payments.append(aPayment("gems"));
  payments.append(aPayment("coins"));

  ASSERT_EQ(payments.payments().size(), 2U);
  EXPECT_EQ(payments.payments()[0].product->productIdentifier(), "gems");
  EXPECT_EQ(payments.payments()[1].product->productIdentifier(), "coins");
}

TEST(TQPaymentsController, FindsThePositionOfTheFirstPaymentForAProduct) {
  TQPaymentsController payments;
  payments.append(aPayment("coins"));
  payments.append(aPayment("gems"));
  payments.append(aPayment("gems"));

  EXPECT_EQ(payments.findPaymentIndex("gems"), 1U);
}

TEST(TQPaymentsController, FindsNothingForAProductThatNobodyWaitsFor) {
  TQPaymentsController payments;
  payments.append(aPayment("gems"));

  EXPECT_FALSE(payments.findPaymentIndex("gem"));
  EXPECT_FALSE(payments.findPaymentIndex(""));
}

TEST(TQPaymentsController, TransactionThatNobodyWaitsForChangesNothing) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.told("gems")));

  EXPECT_FALSE(subject.process(aTransaction("coins").purchased()));

  EXPECT_TRUE(subject.journal->empty());
  EXPECT_EQ(subject.payments->payments().size(), 1U);
}

TEST(TQPaymentsController, PurchasedCallsBackThenFinishesThenRemoves) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.told("gems")));
  subject.queue.whileFinishing = [&] {
    subject.journal->push_back("waiting: " + std::to_string(subject.payments->payments().size()));
  };

  EXPECT_TRUE(subject.process(aTransaction("gems").purchased()));

  EXPECT_EQ(*subject.journal, (Journal{"gems resolved, waiting: 1", "finish gems", "waiting: 1"}));
  EXPECT_TRUE(subject.payments->payments().empty());
}

TEST(TQPaymentsController, PurchasedDetailsComeFromTransactionAndPayment) {
  Subject subject;
  auto payment = aPayment("gems", subject.told("gems"));
  payment.quantity = 5;
  const auto product = payment.product;
  subject.payments->append(std::move(payment));
  const auto original = aTransaction("gems").purchased().identifiedBy("1").make();
  const auto transaction =
      aTransaction("gems").purchased().ofQuantity(3).identifiedBy("2").repeating(original).make();

  EXPECT_TRUE(subject.process(transaction));

  ASSERT_EQ(subject.results.size(), 1U);
  const auto* const details = subject.results[0].asPurchased();
  ASSERT_NE(details, nullptr);
  EXPECT_EQ(details->productId, "gems");
  EXPECT_EQ(details->quantity, 3);
  EXPECT_EQ(details->product, product);
  EXPECT_EQ(platformTransaction(*details->transaction), transaction);
  ASSERT_NE(details->originalTransaction, nullptr);
  EXPECT_EQ(platformTransaction(*details->originalTransaction), original);
  EXPECT_FALSE(details->needsFinishTransaction);
}

TEST(TQPaymentsController, PurchasedWithoutAnOriginalHasNone) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.told("gems")));

  EXPECT_TRUE(subject.process(aTransaction("gems").purchased()));

  EXPECT_EQ(subject.results.at(0).asPurchased()->originalTransaction, nullptr);
}

TEST(TQPaymentsController, PurchaseThatIsNotAtomicIsLeftToTheApplicationToFinish) {
  Subject subject;
  subject.payments->append(anUnatomicPayment("gems", subject.told("gems")));

  EXPECT_TRUE(subject.process(aTransaction("gems").purchased()));

  EXPECT_TRUE(subject.queue.finished.empty());
  EXPECT_TRUE(subject.results.at(0).asPurchased()->needsFinishTransaction);
  EXPECT_TRUE(subject.payments->payments().empty());
}

TEST(TQPaymentsController, FailedCallsBackThenFinishesThenRemoves) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.told("gems")));

  EXPECT_TRUE(subject.process(aTransaction("gems").failed()));

  EXPECT_EQ(*subject.journal, (Journal{"gems resolved, waiting: 1", "finish gems"}));
  EXPECT_TRUE(subject.payments->payments().empty());
}

TEST(TQPaymentsController, FailedTransactionIsFinishedEvenWhenNotAtomic) {
  Subject subject;
  subject.payments->append(anUnatomicPayment("gems", subject.told("gems")));
  const auto transaction = aTransaction("gems").failed().make();

  EXPECT_TRUE(subject.process(transaction));

  EXPECT_EQ(subject.queue.finished, Transactions{transaction});
}

TEST(TQPaymentsController, FailureCarriesThePaymentsProductAndTheTransactionsError) {
  Subject subject;
  const auto payment = aPayment("gems", subject.told("gems"));
  subject.payments->append(payment);

  EXPECT_TRUE(subject.process(
      aTransaction("gems").failedWith(Foundation::NSError("NSURLErrorDomain", -1009))));

  const auto* const failure = subject.results.at(0).asFailed();
  ASSERT_NE(failure, nullptr);
  EXPECT_EQ(failure->product, payment.product);
  EXPECT_EQ(failure->error.nsError().domain(), "NSURLErrorDomain");
  EXPECT_EQ(failure->error.nsError().code(), -1009);
}

TEST(TQPaymentsController, FailureCodesWithoutAnEnumeratorArriveUnchanged) {
  for (const std::int64_t code : {99, -1}) {
    Subject subject;
    subject.payments->append(aPayment("gems", subject.told("gems")));

    EXPECT_TRUE(subject.process(
        aTransaction("gems").failedWith(Foundation::NSError("SKErrorDomain", code))));

    EXPECT_EQ(static_cast<std::int64_t>(subject.results.at(0).asFailed()->error.code()), code);
  }
}

TEST(TQPaymentsController, FailureWithoutAnErrorIsUnknown) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.told("gems")));

  EXPECT_TRUE(subject.process(aTransaction("gems").failed()));

  const auto& error = subject.results.at(0).asFailed()->error.nsError();
  EXPECT_EQ(error.domain(), "SKErrorDomain");
  EXPECT_EQ(error.code(), 0);
  EXPECT_EQ(error.localizedDescription(), "Unknown error");
}

TEST(TQPaymentsController, RestoredIsPrintedThenResolvedLikeAPurchaseAndPassedOn) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.told("gems")));

  EXPECT_FALSE(subject.process(aTransaction("gems").restored().ofQuantity(2)));

  EXPECT_EQ(*subject.journal, (Journal{"Unexpected restored transaction for payment gems",
                                       "gems resolved, waiting: 1", "finish gems"}));
  ASSERT_NE(subject.results.at(0).asPurchased(), nullptr);
  EXPECT_EQ(subject.results[0].asPurchased()->quantity, 2);
  EXPECT_TRUE(subject.payments->payments().empty());
}

TEST(TQPaymentsController, RestoredForAPaymentThatIsNotAtomicIsNotFinished) {
  Subject subject;
  subject.payments->append(anUnatomicPayment("gems", subject.told("gems")));

  EXPECT_FALSE(subject.process(aTransaction("gems").restored()));

  EXPECT_TRUE(subject.queue.finished.empty());
  EXPECT_TRUE(subject.results.at(0).asPurchased()->needsFinishTransaction);
  EXPECT_TRUE(subject.payments->payments().empty());
}

class Undecided : public testing::TestWithParam<std::int64_t> {};

TEST_P(Undecided, StateLeavesThePaymentWaitingAndIsPassedOn) {
  Subject subject;
  subject.payments->append(aPayment("gems", subject.told("gems")));

  EXPECT_FALSE(subject.process(aTransaction("gems").inState(GetParam())));

  EXPECT_TRUE(subject.journal->empty());
  EXPECT_EQ(subject.payments->payments().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(TQPaymentsController, Undecided, testing::Values(0, 4, 5, -1));

TEST(TQPaymentsController, EmptyCallbackTellsNobodyAndTheRestHappensAllTheSame) {
  Subject subject;
  subject.payments->append(aPayment("gems"));

  EXPECT_TRUE(subject.process(aTransaction("gems").purchased()));

  EXPECT_EQ(*subject.journal, Journal{"finish gems"});
  EXPECT_TRUE(subject.payments->payments().empty());
}

}  // namespace
}  // namespace TQStoreKitLib::tests
