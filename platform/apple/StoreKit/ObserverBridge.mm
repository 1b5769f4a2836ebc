#include "platform/apple/StoreKit/ObserverBridge.hpp"

#include <optional>
#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"
#include "platform/apple/ExceptionBarrier.hpp"
#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/DownloadBridging.hpp"
#include "platform/apple/StoreKit/PaymentBridging.hpp"
#include "platform/apple/StoreKit/ProductBridging.hpp"
#include "platform/apple/StoreKit/TransactionBridging.hpp"

namespace StoreKit {

namespace {

// One call of the platform's. It may remove the observer, and with it the bridge that is being
// called: the bridge stays for the length of the call.
class Call {
 public:
  Call(const char* place, TQStoreKitLibObserverBridge* bridge)
      : place_(place), bridge_(Foundation::Retained<TQStoreKitLibObserverBridge*>::retain(bridge)) {
#ifndef NDEBUG
    if (!Dispatch::mainQueue().isCurrentThread()) {
      Foundation::warn("The payment queue reported on a thread that is not the main one.");
    }
#endif
  }

  // Converts with `convert`, and calls the observer, if there is one, with what comes out of it.
  template <class Convert, class Tell>
  void tell(Convert convert, Tell tell) const {
    auto* const observer = [bridge_.get() observer];
    if (observer == nullptr) return;
    using Content = decltype(convert());
    const auto content = Foundation::askPlatform(place_, std::optional<Content>(),
                                                 [&] { return std::optional(convert()); });
    if (content) Foundation::callBack(place_, [&] { tell(*observer, *content); });
  }

 private:
  const char* place_;
  Foundation::Retained<TQStoreKitLibObserverBridge*> bridge_;
};

}  // namespace

}  // namespace StoreKit

@implementation TQStoreKitLibObserverBridge

- (instancetype)initWithObserver:(StoreKit::SKPaymentTransactionObserver*)observer {
  self = [super init];
  if (self != nil) _observer = observer;
  return self;
}

- (StoreKit::SKPaymentTransactionObserver*)observer {
  return _observer;
}

- (void)disconnect {
  _observer = nullptr;
}

- (void)paymentQueue:(SKPaymentQueue*)queue
    updatedTransactions:(NSArray<SKPaymentTransaction*>*)transactions {
  StoreKit::Call("paymentQueueUpdatedTransactions", self)
      .tell([&] { return StoreKit::transactionsFrom(transactions); },
            [](auto& observer, const auto& batch) {
              observer.paymentQueueUpdatedTransactions(batch);
            });
}

- (void)paymentQueue:(SKPaymentQueue*)queue
    removedTransactions:(NSArray<SKPaymentTransaction*>*)transactions {
  StoreKit::Call("paymentQueueRemovedTransactions", self)
      .tell([&] { return StoreKit::transactionsFrom(transactions); },
            [](auto& observer, const auto& batch) {
              observer.paymentQueueRemovedTransactions(batch);
            });
}

- (void)paymentQueue:(SKPaymentQueue*)queue
    restoreCompletedTransactionsFailedWithError:(NSError*)error {
  StoreKit::Call("paymentQueueRestoreCompletedTransactionsFailedWithError", self)
      .tell([&] { return Foundation::errorFrom(error); },
            [](auto& observer, const auto& failure) {
              observer.paymentQueueRestoreCompletedTransactionsFailedWithError(failure);
            });
}

- (void)paymentQueueRestoreCompletedTransactionsFinished:(SKPaymentQueue*)queue {
  StoreKit::Call("paymentQueueRestoreCompletedTransactionsFinished", self)
      .tell([] { return true; },
            [](auto& observer, bool) {
              observer.paymentQueueRestoreCompletedTransactionsFinished();
            });
}

- (void)paymentQueue:(SKPaymentQueue*)queue updatedDownloads:(NSArray<SKDownload*>*)downloads {
  StoreKit::Call("paymentQueueUpdatedDownloads", self)
      .tell(
          [&] { return StoreKit::downloadsFrom(downloads); },
          [](auto& observer, const auto& batch) { observer.paymentQueueUpdatedDownloads(batch); });
}

- (BOOL)paymentQueue:(SKPaymentQueue*)queue
    shouldAddStorePayment:(SKPayment*)payment
               forProduct:(SKProduct*)product {
  bool goesOn = false;
  StoreKit::Call("paymentQueueShouldAddStorePayment", self)
      .tell(
          [&] {
            return std::make_pair(StoreKit::paymentFrom(payment), StoreKit::productFrom(product));
          },
          [&](auto& observer, const auto& sale) {
            goesOn = observer.paymentQueueShouldAddStorePayment(sale.first, sale.second);
          });
  return goesOn;
}

- (void)paymentQueueDidChangeStorefront:(SKPaymentQueue*)queue {
  StoreKit::Call("paymentQueueDidChangeStorefront", self)
      .tell([] { return true; },
            [](auto& observer, bool) { observer.paymentQueueDidChangeStorefront(); });
}

- (void)paymentQueue:(SKPaymentQueue*)queue
    didRevokeEntitlementsForProductIdentifiers:(NSArray<NSString*>*)productIdentifiers {
  StoreKit::Call("paymentQueueDidRevokeEntitlements", self)
      .tell([&] { return Foundation::listFrom(productIdentifiers, Foundation::textFrom); },
            [](auto& observer, const auto& identifiers) {
              observer.paymentQueueDidRevokeEntitlements(identifiers);
            });
}

@end
