#include "platform/Foundation/Decimal.hpp"

#include <charconv>
#include <functional>
#include <limits>

namespace Foundation {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Takes the digits at the front of `rest` away and returns them.
std::string_view takeDigits(std::string_view& rest) {
  std::size_t count = 0;
  while (count < rest.size() && isDigit(rest[count])) ++count;
  const auto digits = rest.substr(0, count);
  rest.remove_prefix(count);
  return digits;
}

bool takeSign(std::string_view& rest) {
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) rest.remove_prefix(1);
  return negative;
}

// Reads what follows the number: nothing, or an exponent.
std::optional<long> readExponent(std::string_view rest) {
  if (rest.empty()) return 0;
  if (rest[0] != 'e' && rest[0] != 'E') return std::nullopt;
  rest.remove_prefix(1);
  const bool negative = takeSign(rest);
  if (rest.empty() || !isDigit(rest[0])) return std::nullopt;
  int value = 0;
  const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), value);
  if (end != rest.data() + rest.size()) return std::nullopt;
  // Beyond every limit, which only zero survives.
  if (error == std::errc::result_out_of_range) value = std::numeric_limits<int>::max();
  return negative ? -long{value} : long{value};
}

}  // namespace

Decimal::Decimal(int value) : Decimal(fromString(std::to_string(value)).value_or(Decimal())) {}

std::optional<Decimal> Decimal::normalised(bool negative, std::string digits, long exponent) {
  const auto first = digits.find_first_not_of('0');
  if (first == std::string::npos) return Decimal();
  exponent -= static_cast<long>(first);
  digits.erase(0, first);
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.size() > kMostDigits) return std::nullopt;
  const long lastDigit = exponent - static_cast<long>(digits.size());
  if (lastDigit < kLeastExponent || exponent > kGreatestExponent + long{kMostDigits}) {
    return std::nullopt;
  }
  Decimal result;
  result.digits_ = std::move(digits);
  result.exponent_ = static_cast<int>(exponent);
  result.negative_ = negative;
  return result;
}

std::optional<Decimal> Decimal::fromString(std::string_view text) {
  const bool negative = takeSign(text);
  const auto whole = takeDigits(text);
  std::string_view fraction;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    fraction = takeDigits(text);
  }
  if (whole.empty() && fraction.empty()) return std::nullopt;
  const auto exponent = readExponent(text);
  if (!exponent) return std::nullopt;
  std::string digits(whole);
  digits += fraction;
  return normalised(negative, std::move(digits), *exponent + static_cast<long>(whole.size()));
}

std::string Decimal::toString() const {
  if (isZero()) return "0";
  std::string text = negative_ ? "-" : "";
  const auto count = static_cast<int>(digits_.size());
  if (exponent_ <= 0) {
    text += "0.";
    text.append(static_cast<std::size_t>(-exponent_), '0');
    return text += digits_;
  }
  if (exponent_ >= count) {
    text += digits_;
    return text.append(static_cast<std::size_t>(exponent_ - count), '0');
  }
  const auto whole = static_cast<std::size_t>(exponent_);
  text.append(digits_, 0, whole).append(1, '.');
  return text.append(digits_, whole);
}

std::size_t Decimal::hash() const { return std::hash<std::string>{}(toString()); }

int Decimal::compareMagnitude(const Decimal& a, const Decimal& b) {
  if (a.isZero() || b.isZero()) return int(b.isZero()) - int(a.isZero());
  if (a.exponent_ != b.exponent_) return a.exponent_ < b.exponent_ ? -1 : 1;
  return a.digits_.compare(b.digits_);
}

bool operator<(const Decimal& a, const Decimal& b) {
  if (a.negative_ != b.negative_) return a.negative_;
  const int order = Decimal::compareMagnitude(a, b);
  return a.negative_ ? order > 0 : order < 0;
}

}  // namespace Foundation
