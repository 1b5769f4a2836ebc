#include "TQStoreKitLib/transactions/PaymentQueueController.hpp"

#include <gtest/gtest.h>

#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakeDownload.hpp"
#include "tests/fakes/FakePayment.hpp"
#include "tests/fakes/FakeStore.hpp"
#include "tests/fakes/ForeignTransaction.hpp"
#include "tests/fakes/OnDestruction.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

using Results = std::vector<TQTransactionResult>;

TEST(PaymentQueueController, ObservesTheQueueFromItsConstructionOn) {
  FakeStore store;

  ASSERT_EQ(store.queue.observers.size(), 1U);
  EXPECT_EQ(store.queue.observers[0], store.controller.get());
  EXPECT_EQ(&store.controller->paymentQueue(), &store.queue);
}

TEST(PaymentQueueController, StopsObservingBeforeItReleasesWhatItHolds) {
  FakePaymentQueue queue;
  auto payments = std::make_shared<TQPaymentsController>();
  payments->append(aPayment("gems", [witness = onDestruction([&] {
                                       queue.journal->emplace_back("released");
                                     })](const TQTransactionResult&) {}));
  auto controller = std::make_unique<PaymentQueueController>(
      queue, std::move(payments), std::make_shared<TQRestorePurchasesController>(),
      std::make_shared<TQCompleteTransactionsController>());

  controller.reset();

  EXPECT_EQ(*queue.journal, (Journal{"add observer", "remove observer", "released"}));
  EXPECT_TRUE(queue.observers.empty());
}

TEST(PaymentQueueControllerDeathTest, ItCannotBeMadeWithoutAQueue) {
  EXPECT_DEATH(PaymentQueueController(),
               "init\\(\\) is not implemented for \"TQStoreKitLib.PaymentQueueController\"");
}

TEST(PaymentQueueController, RestoreAsksTheQueueBeforeItIsRecorded) {
  FakeStore store;
  bool recorded = true;
  store.queue.whileRestoring = [&] { recorded = store.restore->restorePurchases().has_value(); };

  store.controller->restorePurchases({.applicationUsername = "anna"});

  EXPECT_FALSE(recorded);
  EXPECT_TRUE(store.restore->restorePurchases());
  EXPECT_EQ(store.queue.restoreUsernames, std::vector<std::optional<std::string>>{"anna"});
}

TEST(PaymentQueueController, RestoreTellsAnEmptyNameFromAnAbsentOne) {
  FakeStore empty;
  empty.controller->restorePurchases({.applicationUsername = ""});
  FakeStore absent;
  absent.controller->restorePurchases({});

  EXPECT_EQ(empty.queue.restoreUsernames.at(0), std::optional<std::string>(""));
  EXPECT_EQ(absent.queue.restoreUsernames.at(0), std::nullopt);
}

TEST(PaymentQueueController, RestoreWhileOneIsPendingIsDroppedWithoutAWord) {
  FakeStore store;
  const CapturedPrints prints(store.journal);
  std::string called;
  store.controller->restorePurchases({.callback = [&](const Results&) { called += "first"; }});
  store.controller->restorePurchases({.callback = [&](const Results&) { called += "second"; }});

  store.controller->paymentQueueRestoreCompletedTransactionsFinished();

  EXPECT_EQ(called, "first");
  EXPECT_EQ(*store.journal, (Journal{"add observer", "restore"}));
}

TEST(PaymentQueueController, RestoreRequestedFromTheCallbackOfAnotherIsDropped) {
  FakeStore store;
  std::string called;
  store.controller->restorePurchases({.callback = [&](const Results&) {
    called += "first";
    store.controller->restorePurchases({.callback = [&](const Results&) { called += "second"; }});
  }});

  store.controller->paymentQueueRestoreCompletedTransactionsFinished();

  EXPECT_EQ(called, "first");
  EXPECT_EQ(store.queue.restoreUsernames.size(), 1U);
  EXPECT_FALSE(store.restore->restorePurchases());
}

TEST(PaymentQueueController, RestoreAfterTheEndOfAnotherBegins) {
  FakeStore store;
  store.controller->restorePurchases({});
  store.controller->paymentQueueRestoreCompletedTransactionsFinished();

  store.controller->restorePurchases({});

  EXPECT_EQ(store.queue.restoreUsernames.size(), 2U);
}

TEST(PaymentQueueController, FailureOfTheRestoreReachesItsCallback) {
  FakeStore store;
  std::int64_t code = 0;
  store.controller->restorePurchases({.callback = [&](const Results& results) {
    code = results.at(0).asFailed()->error.nsError().code();
  }});

  store.controller->paymentQueueRestoreCompletedTransactionsFailedWithError(
      Foundation::NSError("SKErrorDomain", 99));

  EXPECT_EQ(code, 99);
}

TEST(PaymentQueueController, SecondCompletionIsPrintedAndTheFirstStays) {
  FakeStore store;
  const CapturedPrints prints;
  std::string called;
  store.controller->completeTransactions(
      {.callback = [&](const std::vector<TQPurchase>&) { called += "first"; }});
  EXPECT_TRUE(prints.lines().empty());

  store.controller->completeTransactions(
      {.callback = [&](const std::vector<TQPurchase>&) { called += "second"; }});

  EXPECT_EQ(prints.lines(),
            Journal{"TQStoreKit.completeTransactions() should only be called once when the app "
                    "launches. Ignoring this call"});
  store.report({aTransaction("gems").purchased()});
  EXPECT_EQ(called, "first");
}

TEST(PaymentQueueController, FinishPassesThePlatformsOwnTransactionOn) {
  FakeStore store;
  const auto transaction = aTransaction("gems").purchased().make();

  store.controller->finishTransaction(*paymentTransaction(transaction));

  EXPECT_EQ(store.queue.finished, StoreKit::SKPaymentTransactions{transaction});
}

TEST(PaymentQueueController, FinishOfAForeignTransactionIsPrintedAndLeavesTheQueueAlone) {
  FakeStore store;
  const CapturedPrints prints;
  const ForeignTransaction foreign;

  store.controller->finishTransaction(foreign);

  EXPECT_TRUE(store.queue.finished.empty());
  EXPECT_EQ(prints.lines(),
            Journal{"Object is not a SKPaymentTransaction: " + foreign.description()});
}

TEST(PaymentQueueController, DownloadsAreControlledByTheQueueUnchanged) {
  FakeStore store;
  const StoreKit::SKDownloads downloads = {aDownload("a"), aDownload("b")};

  store.controller->start(downloads);
  EXPECT_EQ(store.queue.downloads, downloads);
  store.controller->pause(downloads);
  store.controller->resume({downloads[1]});
  EXPECT_EQ(store.queue.downloads, StoreKit::SKDownloads{downloads[1]});
  store.controller->cancel({});

  EXPECT_EQ(*store.journal, (Journal{"add observer", "start downloads", "pause downloads",
                                     "resume downloads", "cancel downloads"}));
}

}  // namespace
}  // namespace TQStoreKitLib::tests
