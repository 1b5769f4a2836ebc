#include "platform/Foundation/JSONNumber.hpp"

#include <cmath>

namespace Foundation {

namespace {

// Whether the number is an integer from `lowest` up to but not including `beyond`, between which
// a double converts exactly.
bool isWhole(double number, double lowest, double beyond) {
  return number >= lowest && number < beyond && std::trunc(number) == number;
}

}  // namespace

double doubleOf(const JSONNumber& number) {
  if (const auto* const value = std::get_if<std::int64_t>(&number)) {
    return static_cast<double>(*value);
  }
  if (const auto* const value = std::get_if<std::uint64_t>(&number)) {
    return static_cast<double>(*value);
  }
  return *std::get_if<double>(&number);
}

bool fits(const JSONNumber& number, std::int64_t& value) {
  if (const auto* const integer = std::get_if<std::int64_t>(&number)) {
    value = *integer;
    return true;
  }
  const auto* const other = std::get_if<double>(&number);
  if (other == nullptr || !isWhole(*other, -0x1p63, 0x1p63)) return false;
  value = static_cast<std::int64_t>(*other);
  return true;
}

bool fits(const JSONNumber& number, std::uint64_t& value) {
  if (const auto* const integer = std::get_if<std::int64_t>(&number)) {
    value = static_cast<std::uint64_t>(*integer);
    return *integer >= 0;
  }
  if (const auto* const integer = std::get_if<std::uint64_t>(&number)) {
    value = *integer;
    return true;
  }
  if (!isWhole(doubleOf(number), 0, 0x1p64)) return false;
  value = static_cast<std::uint64_t>(doubleOf(number));
  return true;
}

}  // namespace Foundation
