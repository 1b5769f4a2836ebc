#pragma once

#import <StoreKit/StoreKit.h>

#include "platform/StoreKit/SKPaymentTransaction.hpp"

/// A transaction of the embedded store, as the platform would have it: an object that changes in
/// place, and one for each transaction as long as somebody has it.
@interface NativeTransaction : SKPaymentTransaction {
 @private
  StoreKit::SKPaymentTransactionPtr* _source;
}

+ (NativeTransaction*)of:(const StoreKit::SKPaymentTransactionPtr&)source;
- (const StoreKit::SKPaymentTransactionPtr&)source;

@end

namespace tests {

[[nodiscard]] NSArray* platformTransactions(const StoreKit::SKPaymentTransactions& transactions);

}  // namespace tests
