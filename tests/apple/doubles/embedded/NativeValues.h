#pragma once

#import <StoreKit/StoreKit.h>

#include "platform/StoreKit/SKPaymentTransaction.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace tests {

/// The embedded store's values as a platform would have them. Written without the layer's own
/// conversions, which are what is tested.

[[nodiscard]] NSString* platformText(const std::string& text);
[[nodiscard]] std::string textOf(NSString* text);
[[nodiscard]] NSError* platformError(const Foundation::NSError& error);
[[nodiscard]] SKProduct* platformProduct(const StoreKit::SKProduct& product);
[[nodiscard]] SKPayment* platformPayment(const StoreKit::SKPayment& payment);
[[nodiscard]] StoreKit::SKPayment paymentOf(SKPayment* payment);

}  // namespace tests
