#pragma once

#include <optional>
#include <string>

#include "platform/Foundation/Date.hpp"
#include "platform/StoreKit/SKError.hpp"
#include "platform/StoreKit/SKPaymentDiscount.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace StoreKit {

/// Whether a subscriber may have what a signed promotional offer promises.
///
/// Absent when he may. Else, in the order in which it is looked for: something is missing in
/// `discount` (13), the product has no such offer (11), the nonce, the signature or the time cannot
/// be what a server signed (12), the offer costs no less than the product (14), he never subscribed
/// to the group (18). The signature itself is not verified: only that it is one, of a UUID in lower
/// case, at most 24 hours old.
[[nodiscard]] std::optional<SKError::Code> refusal(const SKPaymentDiscount& discount,
                                                   const SKProduct& product, bool hasSubscribed,
                                                   Foundation::Date now);

/// The offer of `product` that `discount` names; null when there is none.
[[nodiscard]] const SKProductDiscount* findOffer(const SKProduct& product,
                                                 const std::string& identifier);

}  // namespace StoreKit
