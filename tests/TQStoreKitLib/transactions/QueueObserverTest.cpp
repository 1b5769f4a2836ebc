#include <gtest/gtest.h>

#include "tests/fakes/CapturedPrints.hpp"
#include "tests/fakes/FakeDownload.hpp"
#include "tests/fakes/FakePayment.hpp"
#include "tests/fakes/FakeStore.hpp"
#include "tests/fakes/TransactionBuilder.hpp"

namespace TQStoreKitLib::tests {
namespace {

StoreKit::SKPaymentPtr aStorePayment() {
  return std::make_shared<const StoreKit::SKPayment>(
      StoreKit::SKPayment::Values{.productIdentifier = "gems"});
}

TEST(QueueObserver, RemovedTransactionsAreOfNoInterest) {
  FakeStore store;
  const CapturedPrints prints(store.journal);
  store.payments->append(aPayment("gems"));

  store.controller->paymentQueueRemovedTransactions({aTransaction("gems").purchased()});

  EXPECT_EQ(*store.journal, Journal{"add observer"});
  EXPECT_EQ(store.payments->payments().size(), 1U);
}

TEST(QueueObserver, UpdatedDownloadsReachTheHandler) {
  FakeStore store;
  const StoreKit::SKDownloads downloads = {aDownload("a"), aDownload("b")};
  StoreKit::SKDownloads seen;
  store.controller->updatedDownloadsHandler = [&](const StoreKit::SKDownloads& all) { seen = all; };

  store.controller->paymentQueueUpdatedDownloads(downloads);

  EXPECT_EQ(seen, downloads);
}

TEST(QueueObserver, UpdatedDownloadsWithoutAHandlerAreOfNoInterest) {
  FakeStore store;
  EXPECT_NO_THROW(store.controller->paymentQueueUpdatedDownloads({aDownload("a")}));
}

TEST(QueueObserver, DownloadsHandlerMayReplaceItself) {
  FakeStore store;
  const std::string captured(100, 'x');
  std::string log;
  store.controller->updatedDownloadsHandler = [&, captured](const StoreKit::SKDownloads&) {
    store.controller->updatedDownloadsHandler = [&](const StoreKit::SKDownloads&) {
      log += "second";
    };
    log += captured;
  };

  store.controller->paymentQueueUpdatedDownloads({});
  store.controller->paymentQueueUpdatedDownloads({});

  EXPECT_EQ(log, captured + "second");
}

TEST(QueueObserver, StorePaymentIsNotAddedWithoutAHandler) {
  FakeStore store;
  EXPECT_FALSE(
      store.controller->paymentQueueShouldAddStorePayment(aStorePayment(), aProduct("gems")));
}

TEST(QueueObserver, StorePaymentIsAddedWhenTheHandlerSaysSo) {
  for (const bool answer : {true, false}) {
    FakeStore store;
    store.controller->shouldAddStorePaymentHandler =
        [answer](const StoreKit::SKPaymentPtr&, const StoreKit::SKProductPtr&) { return answer; };

    EXPECT_EQ(
        store.controller->paymentQueueShouldAddStorePayment(aStorePayment(), aProduct("gems")),
        answer);
  }
}

TEST(QueueObserver, StorePaymentHandlerIsGivenPaymentAndProduct) {
  FakeStore store;
  const auto payment = aStorePayment();
  const auto product = aProduct("gems");
  bool same = false;
  store.controller->shouldAddStorePaymentHandler = [&](const StoreKit::SKPaymentPtr& asked,
                                                       const StoreKit::SKProductPtr& sold) {
    same = asked == payment && sold == product;
    return true;
  };

  EXPECT_TRUE(store.controller->paymentQueueShouldAddStorePayment(payment, product));

  EXPECT_TRUE(same);
}

TEST(QueueObserver, StorePaymentHandlerMayTakeItselfAwayAndDestroyTheController) {
  FakeStore store;
  bool answer = false;
  store.controller->shouldAddStorePaymentHandler = [&store, captured = std::string(100, 'x')](
                                                       const auto&, const auto&) {
    store.controller->shouldAddStorePaymentHandler = nullptr;
    store.dropControllers();
    return captured.size() == 100;
  };

  answer = store.controller->paymentQueueShouldAddStorePayment(aStorePayment(), aProduct("gems"));

  EXPECT_TRUE(answer);
}

}  // namespace
}  // namespace TQStoreKitLib::tests
