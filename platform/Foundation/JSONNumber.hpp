#pragma once

#include <cstdint>
#include <variant>

namespace Foundation {

/// A number as JSON text says it: an integer when it has neither point nor exponent and fits, as
/// `std::uint64_t` only beyond `std::int64_t`; else the nearest double.
using JSONNumber = std::variant<std::int64_t, std::uint64_t, double>;

/// The number, rounded if it must be.
[[nodiscard]] double doubleOf(const JSONNumber& number);

/// Puts the number into `value` if it is an integer, in whatever notation ("3.0" and "3e2" too),
/// and fits. `value` means nothing if not.
[[nodiscard]] bool fits(const JSONNumber& number, std::int64_t& value);
[[nodiscard]] bool fits(const JSONNumber& number, std::uint64_t& value);

}  // namespace Foundation
