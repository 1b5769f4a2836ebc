#import <StoreKit/StoreKit.h>

#include <memory>
#include <utility>
#include <vector>

#include "platform/embedded/store/EmbeddedStore.hpp"
#import "tests/apple/doubles/embedded/NativeDownload.h"
#import "tests/apple/doubles/embedded/NativeTransaction.h"
#import "tests/apple/doubles/embedded/NativeValues.h"

// The platform's payment queue with the embedded store behind it: what is promised of a payment
// queue can be tried through the layer, on the very tests that the embedded realisation passes.

namespace {

using Observer = id<SKPaymentTransactionObserver>;

// Hands the embedded store's messages to an observer of the platform's kind, which is not owned.
class Messenger final : public StoreKit::SKPaymentTransactionObserver {
 public:
  explicit Messenger(Observer observer) : observer_(observer) {}

  Observer observer() const { return observer_; }

  void paymentQueueUpdatedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override {
    tell([&] { [observer_ paymentQueue:queue() updatedTransactions:natives(transactions)]; });
  }
  void paymentQueueRemovedTransactions(
      const StoreKit::SKPaymentTransactions& transactions) override {
    tell([&] { [observer_ paymentQueue:queue() removedTransactions:natives(transactions)]; });
  }
  void paymentQueueRestoreCompletedTransactionsFailedWithError(
      const Foundation::NSError& error) override {
    NSError* const native = tests::platformError(error);
    tell([&] {
      [observer_ paymentQueue:queue() restoreCompletedTransactionsFailedWithError:native];
    });
  }
  void paymentQueueRestoreCompletedTransactionsFinished() override {
    tell([&] { [observer_ paymentQueueRestoreCompletedTransactionsFinished:queue()]; });
  }
  void paymentQueueUpdatedDownloads(const StoreKit::SKDownloads& downloads) override {
    tell([&] {
      [observer_ paymentQueue:queue() updatedDownloads:tests::platformDownloads(downloads)];
    });
  }
  bool paymentQueueShouldAddStorePayment(const StoreKit::SKPaymentPtr& payment,
                                         const StoreKit::SKProductPtr& product) override {
    return [observer_ paymentQueue:queue()
             shouldAddStorePayment:tests::platformPayment(*payment)
                        forProduct:tests::platformProduct(*product)];
  }
  void paymentQueueDidChangeStorefront() override {
    tell([&] { [observer_ paymentQueueDidChangeStorefront:queue()]; });
  }
  void paymentQueueDidRevokeEntitlements(const std::vector<std::string>& identifiers) override {
    NSMutableArray* const natives = [NSMutableArray array];
    for (const auto& identifier : identifiers) {
      [natives addObject:tests::platformText(identifier)];
    }
    tell([&] {
      [observer_ paymentQueue:queue() didRevokeEntitlementsForProductIdentifiers:natives];
    });
  }

 private:
  static SKPaymentQueue* queue() { return [SKPaymentQueue defaultQueue]; }
  static NSArray* natives(const StoreKit::SKPaymentTransactions& transactions) {
    return tests::platformTransactions(transactions);
  }

  template <class Work>
  void tell(const Work& work) {
    @autoreleasepool {
      work();
    }
  }

  Observer observer_;
};

using Messengers = std::vector<std::shared_ptr<Messenger>>;

Messengers& messengers() {
  static auto& messengers = *new Messengers;
  return messengers;
}

StoreKit::PaymentQueueEngine& engine() { return StoreKit::EmbeddedStore::current().queue(); }

}  // namespace

@implementation SKPaymentQueue

+ (instancetype)defaultQueue {
  static SKPaymentQueue* const queue = [[SKPaymentQueue alloc] init];
  return queue;
}

+ (BOOL)canMakePayments {
  return StoreKit::EmbeddedStore::current().settings().canMakePayments;
}

- (NSArray<SKPaymentTransaction*>*)transactions {
  return tests::platformTransactions(engine().transactions());
}

- (void)addTransactionObserver:(id<SKPaymentTransactionObserver>)observer {
  messengers().push_back(std::make_shared<Messenger>(observer));
  engine().addObserver(*messengers().back());
}

- (void)removeTransactionObserver:(id<SKPaymentTransactionObserver>)observer {
  for (auto each = messengers().begin(); each != messengers().end(); ++each) {
    if ((*each)->observer() != observer) continue;
    const auto messenger = *each;
    messengers().erase(each);
    return engine().removeObserver(*messenger);
  }
}

- (void)addPayment:(SKPayment*)payment {
  engine().add(tests::paymentOf(payment));
}

- (void)finishTransaction:(SKPaymentTransaction*)transaction {
  if ([transaction transactionState] == SKPaymentTransactionStatePurchasing) {
    [NSException raise:NSInvalidArgumentException format:@"Cannot finish a purchasing transaction"];
  }
  engine().finish([static_cast<NativeTransaction*>(transaction) source]);
}

- (void)restoreCompletedTransactions {
  engine().restore(std::nullopt);
}

- (void)restoreCompletedTransactionsWithApplicationUsername:(NSString*)username {
  engine().restore(tests::textOf(username));
}

- (void)startDownloads:(NSArray*)downloads {
  StoreKit::EmbeddedStore::current().downloads().start(tests::downloadsOf(downloads));
}

- (void)pauseDownloads:(NSArray*)downloads {
  StoreKit::EmbeddedStore::current().downloads().pause(tests::downloadsOf(downloads));
}

- (void)resumeDownloads:(NSArray*)downloads {
  StoreKit::EmbeddedStore::current().downloads().resume(tests::downloadsOf(downloads));
}

- (void)cancelDownloads:(NSArray*)downloads {
  StoreKit::EmbeddedStore::current().downloads().cancel(tests::downloadsOf(downloads));
}

@end
