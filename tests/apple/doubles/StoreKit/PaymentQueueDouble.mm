#import "StoreKit/PaymentQueueDouble.h"

#include <vector>

#include "tests/apple/doubles/EachTest.hpp"

namespace {

bool isPaymentAllowed = true;

// Not owned, as the platform does not.
std::vector<id<SKPaymentTransactionObserver>>& observers() {
  static auto& observers = *new std::vector<id<SKPaymentTransactionObserver>>;
  return observers;
}

}  // namespace

@implementation SKPaymentQueue

+ (instancetype)defaultQueue {
  static SKPaymentQueue* const queue = [[SKPaymentQueue alloc] init];
  static const bool isKnown = [] {
    tests::beforeEachTest([] { [queue forget]; });
    return true;
  }();
  (void)isKnown;
  return queue;
}

+ (BOOL)canMakePayments {
  return isPaymentAllowed;
}

- (NSMutableArray*)calls {
  if ([self value:@"calls"] == nil) [self set:[NSMutableArray array] for:@"calls"];
  return [self value:@"calls"];
}

- (NSMutableSet*)refusals {
  if ([self value:@"refusals"] == nil) [self set:[NSMutableSet set] for:@"refusals"];
  return [self value:@"refusals"];
}

- (void)forget {
  for (NSString* property in @[ @"calls", @"refusals", @"transactions" ]) {
    [self set:nil for:property];
  }
  observers().clear();
  isPaymentAllowed = true;
}

- (void)note:(SEL)selector with:(id)argument {
  NSString* const name = NSStringFromSelector(selector);
  if ([[self refusals] containsObject:name]) {
    [NSException raise:NSInvalidArgumentException format:@"%@ is refused", name];
  }
  [[self calls] addObject:@[ name, argument == nil ? [NSNull null] : argument ]];
}

- (NSArray*)argumentsOf:(NSString*)selector {
  NSMutableArray* const arguments = [NSMutableArray array];
  for (NSArray* call in [self calls]) {
    if ([[call objectAtIndex:0] isEqual:selector]) [arguments addObject:[call objectAtIndex:1]];
  }
  return arguments;
}

- (void)refuse:(NSString*)selector {
  [[self refusals] addObject:selector];
}

- (NSUInteger)numberOfObservers {
  return observers().size();
}

STORE_OBJECT(NSArray<SKPaymentTransaction*>*, transactions)

- (void)addTransactionObserver:(id<SKPaymentTransactionObserver>)observer {
  observers().push_back(observer);
}

- (void)removeTransactionObserver:(id<SKPaymentTransactionObserver>)observer {
  std::erase(observers(), observer);
}

// As the platform does: what changes afterwards in a mutable payment has no effect.
- (void)addPayment:(SKPayment*)payment {
  [self note:_cmd
        with:[payment isKindOfClass:[SKMutablePayment class]] ? [[payment copy] autorelease]
                                                              : payment];
}

- (void)finishTransaction:(SKPaymentTransaction*)transaction {
  [self note:_cmd with:transaction];
}

- (void)restoreCompletedTransactions {
  [self note:_cmd with:nil];
}

- (void)restoreCompletedTransactionsWithApplicationUsername:(NSString*)username {
  [self note:_cmd with:username];
}

- (void)startDownloads:(NSArray*)downloads {
  [self note:_cmd with:downloads];
}

- (void)pauseDownloads:(NSArray*)downloads {
  [self note:_cmd with:downloads];
}

- (void)resumeDownloads:(NSArray*)downloads {
  [self note:_cmd with:downloads];
}

- (void)cancelDownloads:(NSArray*)downloads {
  [self note:_cmd with:downloads];
}

@end

namespace tests {

void tellObservers(const std::function<void(id<SKPaymentTransactionObserver>)>& tell) {
  const auto snapshot = observers();
  @autoreleasepool {
    for (const auto observer : snapshot) tell(observer);
  }
}

void allowPayments(bool allowed) { isPaymentAllowed = allowed; }

}  // namespace tests
