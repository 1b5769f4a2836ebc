#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Foundation/Decimal.hpp"
#include "platform/Foundation/Locale.hpp"
#include "platform/StoreKit/SKProductSubscriptionPeriod.hpp"

namespace StoreKit {

/// How a discount is paid for.
enum class SKProductDiscountPaymentMode : std::uint64_t {
  payAsYouGo = 0,
  payUpFront = 1,
  freeTrial = 2,
};

/// Whom a discount is for: newcomers, or subscribers with a promotional offer.
enum class SKProductDiscountType : std::uint64_t { introductory = 0, subscription = 1 };

/// A lower price of a subscription for a while: its introductory price, or a promotional offer.
///
/// A record: what the store said, at the time when it said it.
struct SKProductDiscount {
  /// Per period when paid as you go, once when paid up front, 0 when free; major currency units.
  Foundation::Decimal price{};
  /// How `price` is to be shown.
  Foundation::Locale priceLocale{};
  /// The length of one period; the whole length when there is only one.
  SKProductSubscriptionPeriod subscriptionPeriod;
  std::uint64_t numberOfPeriods = 1;
  SKProductDiscountPaymentMode paymentMode = SKProductDiscountPaymentMode::payAsYouGo;
  /// Before iOS 12.2 the platform has no such member: then this is what the place says where the
  /// discount was found.
  SKProductDiscountType type = SKProductDiscountType::introductory;
  /// The offer's identifier, which a payment's discount names; absent for an introductory price
  /// and before iOS 12.2.
  std::optional<std::string> identifier{};
};

}  // namespace StoreKit
