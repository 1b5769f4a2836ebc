#pragma once

#include <cstdint>

namespace StoreKit {

/// The unit that a subscription's length is counted in. The platform may send values that no
/// enumerator has; they arrive unchanged.
enum class SKProductPeriodUnit : std::uint64_t { day = 0, week = 1, month = 2, year = 3 };

/// How long one period of a subscription lasts: `numberOfUnits` times `unit`.
struct SKProductSubscriptionPeriod {
  std::uint64_t numberOfUnits = 0;
  SKProductPeriodUnit unit = SKProductPeriodUnit::day;

  friend bool operator==(const SKProductSubscriptionPeriod&,
                         const SKProductSubscriptionPeriod&) = default;
};

}  // namespace StoreKit
