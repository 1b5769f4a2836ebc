#pragma once

#import <StoreKit/StoreKit.h>

#include "platform/StoreKit/SKProduct.hpp"

namespace StoreKit {

/// The platform's products as ours; each keeps the object that it was made from, and with it the
/// platform's equality.
///
/// To be called as the functions of `Foundation/Bridging.hpp` are.
/// Thread: any.

/// Nil becomes null. A price that no decimal can hold becomes 0, which standard error says.
[[nodiscard]] SKProductPtr productFrom(::SKProduct* product);

/// `place` is the type of the discounts that stand where this one was found: what is said of it
/// before iOS 12.2. It must not be nil.
[[nodiscard]] SKProductDiscount discountFrom(::SKProductDiscount* discount,
                                             SKProductDiscountType place);

/// A unit that no enumerator has stays the number that it is.
[[nodiscard]] SKProductSubscriptionPeriod periodFrom(::SKProductSubscriptionPeriod* period);

}  // namespace StoreKit
