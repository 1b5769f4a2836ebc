#pragma once

#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKPaymentDiscount.hpp"
#include "platform/embedded/store/SubscriptionPeriod.hpp"

namespace StoreKit::detail {

/// Parts of an entry that the ledger keeps as JSON text. Reading throws what the JSON library
/// throws when the text is damaged.

[[nodiscard]] std::string errorText(const Foundation::NSError& error);
[[nodiscard]] Foundation::NSError errorFrom(const std::string& text);

[[nodiscard]] std::string discountText(const SKPaymentDiscount& discount);
[[nodiscard]] SKPaymentDiscount discountFrom(const std::string& text);

/// Without what has a column of its own: `group` and `running`.
[[nodiscard]] std::string periodText(const SubscriptionPeriod& period);
[[nodiscard]] SubscriptionPeriod periodFrom(const std::string& text);

}  // namespace StoreKit::detail
