#pragma once

#import <StoreKit/StoreKit.h>

#include <functional>

/// The handles of a test on the payment queue, which does nothing by itself: it writes down what it
/// is asked, and says to its observers what a test wants said.
@interface SKPaymentQueue (Double)

/// What that method was called with, in order: one object for each call, NSNull for nil or for a
/// method without an argument.
- (NSArray*)argumentsOf:(NSString*)selector;

/// The method raises an exception from now on.
- (void)refuse:(NSString*)selector;

/// How many observers there are. None is owned.
- (NSUInteger)numberOfObservers;

@end

namespace tests {

/// Calls each of the queue's observers of now, also one that is removed by the call of another: the
/// platform promises nothing else.
void tellObservers(const std::function<void(id<SKPaymentTransactionObserver>)>& tell);

void allowPayments(bool allowed);

}  // namespace tests
