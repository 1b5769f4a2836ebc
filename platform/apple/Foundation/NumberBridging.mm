#include "platform/apple/Foundation/Bridging.hpp"

#include <charconv>
#include <limits>

#include "platform/Foundation/NumberText.hpp"

namespace Foundation {

namespace {

// The platform has one object for each of the two truths, and no other numbers are they.
bool isBoolean(NSNumber* number) {
  return number == [NSNumber numberWithBool:YES] || number == [NSNumber numberWithBool:NO];
}

// The integer that the whole of `text` is, if it fits.
template <class Integer>
std::optional<Number> integerIn(const std::string& text) {
  Integer value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return Number(value);
}

// A decimal says of itself that it is a double, which few are.
std::optional<Number> exactNumber(NSDecimalNumber* number) {
  const auto decimal = decimalFrom(number);
  if (!decimal) return std::nullopt;
  const auto text = decimal->toString();
  if (auto integer = integerIn<std::int64_t>(text)) return integer;
  if (auto integer = integerIn<std::uint64_t>(text)) return integer;
  const auto floating = doubleFromText(text);
  if (!floating || Decimal::fromString(textFromDouble(*floating)) != decimal) return std::nullopt;
  return Number(*floating);
}

Number integerFrom(unsigned long long value) {
  constexpr auto kGreatest = std::numeric_limits<std::int64_t>::max();
  if (value > static_cast<std::uint64_t>(kGreatest)) return std::uint64_t{value};
  return static_cast<std::int64_t>(value);
}

// The type is written as the compiler encodes it: one letter.
Number numberOfType(char type, NSNumber* number) {
  switch (type) {
    case 'f':
    case 'd':
      return [number doubleValue];
    case 'Q':
    case 'L':
      return integerFrom([number unsignedLongLongValue]);
    default:
      return std::int64_t{[number longLongValue]};
  }
}

}  // namespace

std::optional<Number> numberFrom(NSNumber* number) {
  if (number == nil) return std::nullopt;
  if (isBoolean(number)) return Number([number boolValue] != NO);
  if (auto* const decimal = as<NSDecimalNumber>(number)) return exactNumber(decimal);
  return numberOfType(*[number objCType], number);
}

NSNumber* nativeNumber(const Number& number) {
  if (const auto* const value = std::get_if<bool>(&number)) {
    return [NSNumber numberWithBool:*value ? YES : NO];
  }
  if (const auto* const value = std::get_if<std::int64_t>(&number)) {
    return [NSNumber numberWithLongLong:*value];
  }
  if (const auto* const value = std::get_if<std::uint64_t>(&number)) {
    return [NSNumber numberWithUnsignedLongLong:*value];
  }
  return [NSNumber numberWithDouble:*std::get_if<double>(&number)];
}

}  // namespace Foundation
