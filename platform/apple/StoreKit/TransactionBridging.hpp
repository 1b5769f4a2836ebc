#pragma once

#import <StoreKit/StoreKit.h>

#include "platform/StoreKit/SKPaymentTransaction.hpp"

namespace StoreKit {

/// Views of the platform's transactions. A view keeps its object, reads it anew at each call, and
/// is equal to every view of an object that the platform calls equal.
///
/// To be called as the functions of `Foundation/Bridging.hpp` are; a view guards its own calls.
/// Thread: main.

/// Nil becomes null, a nil list an empty one.
[[nodiscard]] SKPaymentTransactionPtr transactionFrom(::SKPaymentTransaction* transaction);
[[nodiscard]] SKPaymentTransactions transactionsFrom(NSArray<::SKPaymentTransaction*>* list);

/// The very object that is viewed; nil for null and for whatever is no view.
[[nodiscard]] ::SKPaymentTransaction* nativeTransaction(const SKPaymentTransactionPtr& transaction);

}  // namespace StoreKit
