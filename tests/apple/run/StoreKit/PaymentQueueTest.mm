#include <gmock/gmock.h>
#include <gtest/gtest.h>

#import "StoreKit/PaymentQueueDouble.h"
#include "platform/StoreKit/SKError.hpp"
#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/apple/StoreKit/DownloadBridging.hpp"
#include "platform/apple/StoreKit/PaymentBridging.hpp"
#include "platform/apple/StoreKit/ProductBridging.hpp"
#include "platform/apple/StoreKit/TransactionBridging.hpp"
#include "tests/apple/run/OtherThread.h"
#include "tests/apple/run/StoreKit/Samples.h"
#include "tests/fakes/CapturedError.hpp"
#include "tests/fakes/FakeDownload.hpp"
#include "tests/fakes/FakeTransaction.hpp"
#include "tests/fakes/JournalingObserver.hpp"
#include "tests/fakes/MainQueueTurns.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using tests::aTransaction;
using tests::JournalingObserver;
using tests::turnUntilIdle;

SKPaymentQueue& queue() { return SKPaymentQueue::defaultQueue(); }
::SKPaymentQueue* platform() { return [::SKPaymentQueue defaultQueue]; }

const SKPayment& aPaymentOf(std::int64_t quantity) {
  static auto& payment = *new SKMutablePayment(productFrom(tests::aProduct()));
  payment.setQuantity(quantity);
  return payment;
}

TEST(ApplePaymentQueue, AsksThePlatformWhetherPaymentsCanBeMade) {
  EXPECT_TRUE(SKPaymentQueue::canMakePayments());
  tests::allowPayments(false);
  EXPECT_FALSE(SKPaymentQueue::canMakePayments());
}

TEST(ApplePaymentQueue, AddsThePaymentToThePlatforms) {
  queue().addPayment(aPaymentOf(2));
  NSArray* const added = [platform() argumentsOf:@"addPayment:"];
  ASSERT_EQ([added count], 1U);
  EXPECT_EQ([[added objectAtIndex:0] quantity], 2);
}

TEST(ApplePaymentQueue, AddsAPaymentOfThePlatformAsItIs) {
  ::SKPayment* const native = tests::aPayment();
  queue().addPayment(*paymentFrom(native));
  EXPECT_EQ([[platform() argumentsOf:@"addPayment:"] objectAtIndex:0], native);
}

TEST(ApplePaymentQueue, FinishesTheVeryTransaction) {
  ::SKPaymentTransaction* const native = aTransaction();
  queue().finishTransaction(transactionFrom(native));
  NSArray* const finished = [platform() argumentsOf:@"finishTransaction:"];
  ASSERT_EQ([finished count], 1U);
  EXPECT_EQ([finished objectAtIndex:0], native);
}

TEST(ApplePaymentQueue, IgnoresTransactionsThatAreNotThePlatforms) {
  queue().finishTransaction(nullptr);
  queue().finishTransaction(std::make_shared<const TQStoreKitLib::tests::FakeTransaction>(
      TQStoreKitLib::tests::FakeTransaction::Values()));
  EXPECT_EQ([[platform() argumentsOf:@"finishTransaction:"] count], 0U);
}

TEST(ApplePaymentQueue, RefusedFinishIsSaidAndDoesNoHarm) {
  [platform() refuse:@"finishTransaction:"];
  tests::CapturedError error;
  queue().finishTransaction(transactionFrom(aTransaction(0)));
  EXPECT_THAT(error.text(), HasSubstr("SKPaymentQueue::finishTransaction"));
}

TEST(ApplePaymentQueue, RestoresForEverybody) {
  queue().restoreCompletedTransactions(std::nullopt);
  EXPECT_EQ([[platform() argumentsOf:@"restoreCompletedTransactions"] count], 1U);
}

TEST(ApplePaymentQueue, RestoresForOneUser) {
  queue().restoreCompletedTransactions("Ada");
  NSArray* const names =
      [platform() argumentsOf:@"restoreCompletedTransactionsWithApplicationUsername:"];
  EXPECT_TRUE([names isEqual:@[ @"Ada" ]]);
  EXPECT_EQ([[platform() argumentsOf:@"restoreCompletedTransactions"] count], 0U);
}

TEST(ApplePaymentQueue, RestoresForAUserWithoutAName) {
  queue().restoreCompletedTransactions("");
  NSArray* const names =
      [platform() argumentsOf:@"restoreCompletedTransactionsWithApplicationUsername:"];
  EXPECT_TRUE([names isEqual:@[ @"" ]]);
}

TEST(ApplePaymentQueue, ListsThePlatformsTransactionsInTheirOrder) {
  NSArray* const natives = @[ aTransaction(1), aTransaction(2) ];
  [platform() set:natives for:@"transactions"];
  const auto transactions = queue().transactions();
  ASSERT_THAT(transactions, SizeIs(2));
  EXPECT_EQ(nativeTransaction(transactions[0]), [natives objectAtIndex:0]);
  EXPECT_EQ(nativeTransaction(transactions[1]), [natives objectAtIndex:1]);
}

using Command = void (SKPaymentQueue::*)(const SKDownloads&);
struct DownloadCommand {
  Command command;
  const char* selector;
  const char* name;
};

class ApplePaymentQueueDownloads : public testing::TestWithParam<DownloadCommand> {
 protected:
  void order(const SKDownloads& downloads) { (queue().*GetParam().command)(downloads); }
  static NSArray* orders() {
    return [platform() argumentsOf:[NSString stringWithUTF8String:GetParam().selector]];
  }
};

TEST_P(ApplePaymentQueueDownloads, AreCommandedAsTheVeryObjects) {
  NSArray* const natives = @[ tests::aDownload(), tests::aDownload() ];
  order(downloadsFrom(natives));
  ASSERT_EQ([orders() count], 1U);
  EXPECT_TRUE([[orders() objectAtIndex:0] isEqual:natives]);
}

TEST_P(ApplePaymentQueueDownloads, ThatAreNotThePlatformsAreIgnored) {
  order({TQStoreKitLib::tests::aDownload("fake")});
  order({});
  EXPECT_EQ([orders() count], 0U);
}

INSTANTIATE_TEST_SUITE_P(
    All, ApplePaymentQueueDownloads,
    testing::Values(DownloadCommand{&SKPaymentQueue::startDownloads, "startDownloads:", "Start"},
                    DownloadCommand{&SKPaymentQueue::pauseDownloads, "pauseDownloads:", "Pause"},
                    DownloadCommand{&SKPaymentQueue::resumeDownloads, "resumeDownloads:", "Resume"},
                    DownloadCommand{&SKPaymentQueue::cancelDownloads,
                                    "cancelDownloads:", "Cancel"}),
    [](const auto& info) { return info.param.name; });

TEST(ApplePaymentQueue, UseOnAnotherThreadIsSaidInADebugBuild) {
  tests::CapturedError error;
  tests::onAnotherThread([] { (void)queue().transactions(); });
#ifdef NDEBUG
  EXPECT_EQ(error.text(), "");
#else
  EXPECT_EQ(error.text(), "The payment queue was used on a thread that is not the main one.\n");
#endif
}

class ApplePaymentQueueRefusal : public testing::Test {
 protected:
  JournalingObserver observer;

  ApplePaymentQueueRefusal() {
    observer.observe();
    [platform() refuse:@"addPayment:"];
    [platform() refuse:@"restoreCompletedTransactions"];
  }
  ~ApplePaymentQueueRefusal() override {
    observer.stop();
    for (const auto& transaction : queue().transactions()) queue().finishTransaction(transaction);
    (void)turnUntilIdle();
  }
};

TEST_F(ApplePaymentQueueRefusal, OfAPaymentBecomesAFailedTransactionInALaterTurn) {
  tests::CapturedError error;
  queue().addPayment(aPaymentOf(0));
  EXPECT_THAT(error.text(), HasSubstr("SKPaymentQueue::addPayment: the platform raised "));
  EXPECT_THAT(observer.journal(), IsEmpty());
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems failed"));
}

TEST_F(ApplePaymentQueueRefusal, HasTheErrorOfAnInvalidPayment) {
  queue().addPayment(aPaymentOf(0));
  (void)turnUntilIdle();
  const auto& transaction = *observer.seen.at(0);
  EXPECT_EQ(SKError(transaction.error().value()).code(), SKError::Code::paymentInvalid);
  EXPECT_EQ(transaction.payment()->quantity(), 0);
  EXPECT_FALSE(transaction.transactionIdentifier());
  EXPECT_FALSE(transaction.transactionDate());
}

TEST_F(ApplePaymentQueueRefusal, StaysInTheQueueUntilItIsFinished) {
  queue().addPayment(aPaymentOf(0));
  ASSERT_THAT(queue().transactions(), SizeIs(1));
  queue().finishTransaction(queue().transactions()[0]);
  EXPECT_THAT(queue().transactions(), IsEmpty());
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems failed", "removed: gems failed"));
  EXPECT_EQ([[platform() argumentsOf:@"finishTransaction:"] count], 0U);
}

TEST_F(ApplePaymentQueueRefusal, FinishedTwiceIsRemovedOnce) {
  queue().addPayment(aPaymentOf(0));
  const auto transaction = queue().transactions().at(0);
  queue().finishTransaction(transaction);
  queue().finishTransaction(transaction);
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("updated: gems failed", "removed: gems failed"));
}

TEST_F(ApplePaymentQueueRefusal, IsNotToldToAnObserverThatIsGone) {
  JournalingObserver second;
  second.observe();
  observer.onUpdated = [&](const auto&) { second.stop(); };
  queue().addPayment(aPaymentOf(0));
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), SizeIs(1));
  EXPECT_THAT(second.journal(), IsEmpty());
}

TEST_F(ApplePaymentQueueRefusal, IsToldToEverybodyAlsoWhenOneLeavesMeanwhile) {
  JournalingObserver second;
  second.observe();
  observer.onUpdated = [&](const auto&) { observer.stop(); };
  queue().addPayment(aPaymentOf(0));
  (void)turnUntilIdle();
  EXPECT_THAT(second.journal(), SizeIs(1));
}

TEST_F(ApplePaymentQueueRefusal, IsNotToldToAnObserverThatComesMeanwhile) {
  JournalingObserver second;
  observer.onUpdated = [&](const auto&) { second.observe(); };
  queue().addPayment(aPaymentOf(0));
  (void)turnUntilIdle();
  EXPECT_THAT(second.journal(), IsEmpty());
}

TEST_F(ApplePaymentQueueRefusal, OfARestoreEndsItAsFailed) {
  queue().restoreCompletedTransactions(std::nullopt);
  EXPECT_THAT(observer.journal(), IsEmpty());
  (void)turnUntilIdle();
  EXPECT_THAT(observer.journal(), ElementsAre("restore failed: The platform refused to restore."));
}

}  // namespace
}  // namespace StoreKit
