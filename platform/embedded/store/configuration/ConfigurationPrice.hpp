#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/Decimal.hpp"

namespace StoreKit::detail {

struct PriceReading {
  /// Absent for every text that could mean more than one price, or none.
  std::optional<Foundation::Decimal> price;
  std::string remark;  ///< why there is no price, or what is odd about the text; may be empty
};

/// Reads a price as the file writes it. Plain decimal numbers are read silently; a decimal comma, a
/// currency beside the number and blanks around it with a remark. Nothing else is a price.
[[nodiscard]] PriceReading readPrice(std::string_view text);

}  // namespace StoreKit::detail
