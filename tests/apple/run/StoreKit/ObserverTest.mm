#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

#import "StoreKit/PaymentQueueDouble.h"
#include "platform/StoreKit/SKError.hpp"
#include "platform/StoreKit/SKPaymentQueue.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/PaymentBridging.hpp"
#include "platform/apple/StoreKit/TransactionBridging.hpp"
#include "tests/apple/run/OtherThread.h"
#include "tests/apple/run/StoreKit/Samples.h"
#include "tests/fakes/CapturedError.hpp"
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
using tests::tellObservers;

using PlatformObserver = id<SKPaymentTransactionObserver>;

::SKPaymentQueue* platform() { return [::SKPaymentQueue defaultQueue]; }

void update(NSArray* transactions) {
  tellObservers([&](PlatformObserver observer) {
    [observer paymentQueue:platform() updatedTransactions:transactions];
  });
}

// Hears of downloads and of purchases that begin in the store.
class ShopObserver final : public SKPaymentTransactionObserver {
 public:
  ShopObserver() { SKPaymentQueue::defaultQueue().addTransactionObserver(*this); }
  ~ShopObserver() override { SKPaymentQueue::defaultQueue().removeTransactionObserver(*this); }

  SKDownloads downloads;
  SKPaymentPtr payment;
  SKProductPtr product;
  bool answer = true;
  int storefrontChanges = 0;
  std::vector<std::string> revoked;

  void paymentQueueDidChangeStorefront() override { ++storefrontChanges; }
  void paymentQueueDidRevokeEntitlements(const std::vector<std::string>& identifiers) override {
    revoked = identifiers;
  }
  void paymentQueueUpdatedTransactions(const SKPaymentTransactions&) override {}
  void paymentQueueUpdatedDownloads(const SKDownloads& updated) override { downloads = updated; }
  bool paymentQueueShouldAddStorePayment(const SKPaymentPtr& itsPayment,
                                         const SKProductPtr& itsProduct) override {
    payment = itsPayment;
    product = itsProduct;
    return answer;
  }
};

// The answer of the one observer that there is.
bool askToAdd(::SKPayment* payment, ::SKProduct* product) {
  bool answer = false;
  tellObservers([&](PlatformObserver observer) {
    answer = [observer paymentQueue:platform() shouldAddStorePayment:payment forProduct:product];
  });
  return answer;
}

class AppleObserver : public testing::Test {
 protected:
  JournalingObserver observer;

  AppleObserver() { observer.observe(); }
  ~AppleObserver() override {
    observer.stop();
    (void)tests::turnUntilIdle();
  }
};

TEST_F(AppleObserver, HearsOfUpdatedTransactionsInTheirOrder) {
  update(@[
    aTransaction(SKPaymentTransactionStatePurchased), aTransaction(SKPaymentTransactionStateFailed),
    aTransaction(SKPaymentTransactionStateDeferred)
  ]);
  EXPECT_THAT(observer.journal(),
              ElementsAre("updated: gems purchased, gems failed, gems deferred"));
}

TEST_F(AppleObserver, GetsTheVeryTransactions) {
  ::SKPaymentTransaction* const native = aTransaction();
  update(@[ native ]);
  EXPECT_EQ(nativeTransaction(observer.seen.at(0)), native);
}

TEST_F(AppleObserver, HearsOfAnEmptyBatch) {
  update(@[]);
  EXPECT_THAT(observer.journal(), ElementsAre("updated: "));
}

TEST_F(AppleObserver, HearsOfRemovedTransactions) {
  tellObservers([&](PlatformObserver bridge) {
    [bridge paymentQueue:platform() removedTransactions:@[ aTransaction() ]];
  });
  EXPECT_THAT(observer.journal(), ElementsAre("removed: gems purchased"));
}

TEST_F(AppleObserver, HearsThatARestoreFinished) {
  tellObservers([&](PlatformObserver bridge) {
    [bridge paymentQueueRestoreCompletedTransactionsFinished:platform()];
  });
  EXPECT_THAT(observer.journal(), ElementsAre("restore finished"));
}

TEST_F(AppleObserver, HearsWhyARestoreFailed) {
  NSError* const native = tests::anError(2);
  tellObservers([&](PlatformObserver bridge) {
    [bridge paymentQueue:platform() restoreCompletedTransactionsFailedWithError:native];
  });
  ASSERT_THAT(observer.restoreErrors, SizeIs(1));
  EXPECT_EQ(SKError(observer.restoreErrors[0]).code(), SKError::Code::paymentCancelled);
  EXPECT_EQ(Foundation::nativeError(observer.restoreErrors[0]), native);
}

TEST(AppleShopObserver, HearsOfDownloads) {
  const ShopObserver observer;
  tellObservers([&](PlatformObserver bridge) {
    [bridge paymentQueue:platform() updatedDownloads:@[ tests::aDownload() ]];
  });
  ASSERT_THAT(observer.downloads, SizeIs(1));
  EXPECT_EQ(observer.downloads[0]->state(), SKDownloadState::active);
}

TEST(AppleShopObserver, HearsOfAnotherStorefront) {
  const ShopObserver observer;
  tellObservers(
      [&](PlatformObserver bridge) { [bridge paymentQueueDidChangeStorefront:platform()]; });
  EXPECT_EQ(observer.storefrontChanges, 1);
}

TEST(AppleShopObserver, HearsWhatWasRevoked) {
  const ShopObserver observer;
  tellObservers([&](PlatformObserver bridge) {
    [bridge paymentQueue:platform()
        didRevokeEntitlementsForProductIdentifiers:@[ @"crown", @"cape" ]];
  });
  EXPECT_THAT(observer.revoked, ElementsAre("crown", "cape"));
}

TEST(AppleShopObserver, DecidesWhetherAPurchaseInTheStoreGoesOn) {
  ShopObserver observer;
  EXPECT_TRUE(askToAdd(tests::aPayment(), tests::aProduct()));
  observer.answer = false;
  EXPECT_FALSE(askToAdd(tests::aPayment(), tests::aProduct()));
}

TEST(AppleShopObserver, GetsTheVeryPaymentAndProductOfAPurchaseInTheStore) {
  const ShopObserver observer;
  ::SKPayment* const payment = tests::aPayment(@"crown");
  ::SKProduct* const product = tests::aProduct(@"crown");
  (void)askToAdd(payment, product);
  EXPECT_EQ(nativePayment(*observer.payment), payment);
  EXPECT_EQ(Foundation::nativeObject(observer.product->native()), product);
}

TEST_F(AppleObserver, ThatDoesNotCareLetsNoPurchaseInTheStoreGoOn) {
  EXPECT_FALSE(askToAdd(tests::aPayment(), tests::aProduct()));
}

TEST_F(AppleObserver, AddedTwiceHearsOnce) {
  observer.observe();
  update(@[ aTransaction() ]);
  EXPECT_THAT(observer.journal(), SizeIs(1));
}

TEST_F(AppleObserver, RemovedHearsNothingMore) {
  observer.stop();
  update(@[ aTransaction() ]);
  EXPECT_THAT(observer.journal(), IsEmpty());
  EXPECT_EQ([platform() numberOfObservers], 0U);
}

TEST_F(AppleObserver, RemovedTwiceIsRemovedOnce) {
  JournalingObserver other;
  other.observe();
  observer.stop();
  observer.stop();
  EXPECT_EQ([platform() numberOfObservers], 1U);
}

TEST_F(AppleObserver, RemovedKeepsItsBridgeForATurnInWhichThePlatformMayBeCallingIt) {
  PlatformObserver bridge = nil;
  tellObservers([&](PlatformObserver each) { bridge = [each retain]; });
  observer.stop();
  EXPECT_EQ([bridge retainCount], 2U);
  (void)tests::turnUntilIdle();
  EXPECT_EQ([bridge retainCount], 1U);
  [bridge release];
}

TEST_F(AppleObserver, MayBeAddedAgain) {
  observer.stop();
  observer.observe();
  update(@[ aTransaction() ]);
  EXPECT_THAT(observer.journal(), SizeIs(1));
}

TEST_F(AppleObserver, EachHearsOfEverything) {
  JournalingObserver second;
  second.observe();
  update(@[ aTransaction() ]);
  EXPECT_THAT(observer.journal(), SizeIs(1));
  EXPECT_THAT(second.journal(), SizeIs(1));
}

TEST_F(AppleObserver, RemovedByAnotherMeanwhileHearsNothingMore) {
  JournalingObserver second;
  second.observe();
  observer.onUpdated = [&](const auto&) { second.stop(); };
  update(@[ aTransaction() ]);
  EXPECT_THAT(second.journal(), IsEmpty());
}

TEST_F(AppleObserver, DestroyedByAnotherMeanwhileIsNotTouched) {
  auto second = std::make_unique<JournalingObserver>();
  second->observe();
  observer.onUpdated = [&](const auto&) { second.reset(); };
  update(@[ aTransaction() ]);
  EXPECT_THAT(observer.journal(), SizeIs(1));
}

TEST_F(AppleObserver, ReplacedByAnotherMeanwhileIsNotConfusedWithIt) {
  JournalingObserver second;
  second.observe();
  observer.onUpdated = [&](const auto&) {
    second.stop();
    second.observe();
  };
  update(@[ aTransaction() ]);
  EXPECT_THAT(second.journal(), IsEmpty());
}

TEST(AppleObserverAlone, MayDestroyItselfInsideItsCall) {
  auto observer = std::make_unique<JournalingObserver>();
  observer->observe();
  bool called = false;
  observer->onUpdated = [&](const auto&) {
    called = true;
    observer.reset();
    (void)tests::turnUntilIdle();
  };
  update(@[ aTransaction() ]);
  EXPECT_TRUE(called);
  EXPECT_EQ([platform() numberOfObservers], 0U);
}

TEST_F(AppleObserver, ThatThrowsIsSaidAndKeepsNobodyFromHearing) {
  JournalingObserver second;
  second.observe();
  observer.onUpdated = [](const auto&) { throw std::runtime_error("no room for gems"); };
  tests::CapturedError error;
  update(@[ aTransaction() ]);
  EXPECT_THAT(error.text(), HasSubstr("no room for gems"));
  EXPECT_THAT(second.journal(), SizeIs(1));
}

TEST(AppleShopObserver, ThatThrowsLetsNoPurchaseInTheStoreGoOn) {
  class Throwing final : public SKPaymentTransactionObserver {
   public:
    Throwing() { SKPaymentQueue::defaultQueue().addTransactionObserver(*this); }
    ~Throwing() override { SKPaymentQueue::defaultQueue().removeTransactionObserver(*this); }
    void paymentQueueUpdatedTransactions(const SKPaymentTransactions&) override {}
    bool paymentQueueShouldAddStorePayment(const SKPaymentPtr&, const SKProductPtr&) override {
      throw 1;
    }
  } const observer;
  tests::CapturedError error;
  EXPECT_FALSE(askToAdd(tests::aPayment(), tests::aProduct()));
  EXPECT_THAT(error.text(), HasSubstr("paymentQueueShouldAddStorePayment"));
}

TEST_F(AppleObserver, CalledOnAnotherThreadIsSaidInADebugBuild) {
  tests::CapturedError error;
  tests::onAnotherThread([] { update(@[ aTransaction() ]); });
#ifdef NDEBUG
  EXPECT_EQ(error.text(), "");
#else
  EXPECT_THAT(error.text(),
              HasSubstr("The payment queue reported on a thread that is not the main one.\n"));
#endif
  EXPECT_THAT(observer.journal(), SizeIs(1));
}

}  // namespace
}  // namespace StoreKit
