#pragma once

#include <optional>
#include <string_view>

#include "platform/StoreKit/SKProductSubscriptionPeriod.hpp"

namespace StoreKit::detail {

/// Reads "P3D", "P1W", "P6M" or "P1Y": one count, from 1 to 999999, of one unit. Absent for every
/// other text.
[[nodiscard]] std::optional<SKProductSubscriptionPeriod> readDuration(std::string_view text);

}  // namespace StoreKit::detail
