#pragma once

#import <StoreKit/StoreKit.h>

#include "platform/StoreKit/SKPayment.hpp"

namespace StoreKit {

/// Payments and their discounts, as ours and back.
///
/// To be called as the functions of `Foundation/Bridging.hpp` are.
/// Thread: any.

/// Keeps the platform's payment. Never null: nil becomes a payment for nothing.
[[nodiscard]] SKPaymentPtr paymentFrom(::SKPayment* payment);

/// The very payment that `payment` came from; else a new one, for the platform's product if it was
/// made for one, else for whatever has its product identifier. Its discount goes along from iOS
/// 12.2 on.
[[nodiscard]] ::SKPayment* nativePayment(const SKPayment& payment);

}  // namespace StoreKit
