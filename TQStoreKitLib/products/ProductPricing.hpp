#pragma once

#include <optional>
#include <string>

#include "platform/StoreKit/SKProduct.hpp"
#include "platform/StoreKit/SKProductDiscount.hpp"
#include "platform/StoreKit/SKProductSubscriptionPeriod.hpp"

namespace StoreKit {

/// The product's price in words and digits of its price locale: "$0.99", "0,99 €". "Free" when it
/// costs nothing, whatever the locale. Absent when the platform has no text for it.
[[nodiscard]] std::optional<std::string> regularPrice(const SKProduct& product);

/// The discount's price in its price locale. There is no "Free" here: a discount that costs nothing
/// is shown as an amount of zero. Absent when the platform has no text for it.
[[nodiscard]] std::optional<std::string> localizedPrice(const SKProductDiscount& discount);

/// How long one period of the discount lasts, spelled out in the user's current locale, whatever
/// the price locale is: "3 weeks", "1 Monat". A unit that nobody knows is printed as a warning and
/// taken for months. Empty when the platform has no text for it.
[[nodiscard]] std::string localizedSubscriptionPeriod(const SKProductDiscount& discount);

/// The same for any period: a subscription's own, for example.
[[nodiscard]] std::string localizedSubscriptionPeriod(const SKProductSubscriptionPeriod& period);

}  // namespace StoreKit
