#pragma once

#import <StoreKit/StoreKit.h>

#include "platform/StoreKit/SKPaymentTransactionObserver.hpp"

/// The platform's observer of the payment queue that hands everything on to one of ours.
///
/// Callbacks come on: the thread that the platform chooses; nothing changes it here, since one of
/// the questions has to be answered at once. A debug build says when it is not the main one.
@interface TQStoreKitLibObserverBridge : NSObject <SKPaymentTransactionObserver> {
 @private
  StoreKit::SKPaymentTransactionObserver* _observer;
}

/// `observer` is not owned: `disconnect` comes before it goes away.
- (instancetype)initWithObserver:(StoreKit::SKPaymentTransactionObserver*)observer;

/// The observer; null once it is disconnected.
- (StoreKit::SKPaymentTransactionObserver*)observer;

/// Whatever the platform still says is dropped from now on.
- (void)disconnect;

@end
