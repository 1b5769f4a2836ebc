#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Foundation {

/// An exact decimal number: money never passes through binary floating point.
///
/// Up to 38 significant digits, as the platform's decimal has. Trailing zeros carry no meaning:
/// "1.50" and "1.5" are one value.
/// Thread: a plain value.
class Decimal {
 public:
  /// Significant digits that a decimal can hold; the platform's own limit.
  static constexpr std::size_t kMostDigits = 38;
  /// The powers of ten that the last digit of a decimal can stand for; the platform's own limits.
  static constexpr int kLeastExponent = -128;
  static constexpr int kGreatestExponent = 127;

  /// Zero.
  Decimal() = default;
  Decimal(int value);  // NOLINT(google-explicit-constructor): every int is exactly a decimal

  /// Reads "12", "-0.99", "+1.", ".5" or "1.25e3"; the mark is a point whatever the process's
  /// locale. Absent for anything else, blanks included, and for what does not fit exactly.
  [[nodiscard]] static std::optional<Decimal> fromString(std::string_view text);

  /// Plain notation without an exponent and without trailing zeros: "0.99", "-12", "1234567.89".
  [[nodiscard]] std::string toString() const;

  [[nodiscard]] bool isZero() const { return digits_.empty(); }
  [[nodiscard]] bool isNegative() const { return negative_; }

  [[nodiscard]] std::size_t hash() const;
  friend bool operator==(const Decimal&, const Decimal&) = default;
  friend bool operator<(const Decimal& a, const Decimal& b);

 private:
  // The value is 0.DIGITS * 10^exponent_: no leading and no trailing zeros; zero has no digits.
  static std::optional<Decimal> normalised(bool negative, std::string digits, long exponent);
  static int compareMagnitude(const Decimal& a, const Decimal& b);

  std::string digits_;
  int exponent_ = 0;
  bool negative_ = false;
};

}  // namespace Foundation
