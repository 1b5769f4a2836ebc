#include "platform/embedded/store/configuration/ConfigurationPrice.hpp"

#include <algorithm>
#include <array>

namespace StoreKit::detail {

namespace {

constexpr std::string_view kDigits = "0123456789";

// The cent sign is not among them: what stands beside it are hundredths.
constexpr std::array<std::string_view, 21> kSymbols = {"$", "£", "¥", "€", "₩",  "₪",  "₫",
                                                       "₦", "₱", "₹", "₺", "₽",  "₸",  "₴",
                                                       "₡", "₲", "₵", "฿", "＄", "￥", "￡"};

constexpr std::array<std::string_view, 45> kCodes = {
    "AED", "AUD", "BGN", "BRL", "CAD", "CHF", "CLP", "CNY", "COP", "CZK", "DKK", "EGP",
    "EUR", "GBP", "HKD", "HUF", "IDR", "ILS", "INR", "JPY", "KRW", "KZT", "MXN", "MYR",
    "NGN", "NOK", "NZD", "PEN", "PHP", "PKR", "PLN", "QAR", "RON", "RUB", "SAR", "SEK",
    "SGD", "THB", "TRY", "TWD", "TZS", "UAH", "USD", "VND", "ZAR"};

constexpr std::array<std::string_view, 10> kDollars = {"US$", "CA$", "A$", "AU$", "NZ$",
                                                       "HK$", "NT$", "R$", "S$",  "MX$"};

constexpr std::array<std::string_view, 4> kBlanks = {" ", "\t", "\u00A0", "\u202F"};

template <std::size_t Size>
bool isOneOf(const std::array<std::string_view, Size>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

bool isCurrency(std::string_view word) {
  return isOneOf(kSymbols, word) || isOneOf(kCodes, word) || isOneOf(kDollars, word);
}

std::string_view withoutBlanks(std::string_view text) {
  for (bool again = true; again;) {
    again = false;
    for (const auto blank : kBlanks) {
      while (text.starts_with(blank)) text.remove_prefix(blank.size()), again = true;
      while (text.ends_with(blank)) text.remove_suffix(blank.size()), again = true;
    }
  }
  return text;
}

// A price in three parts: what stands before the first digit, up to the last one, and after it.
struct Parts {
  std::string_view before, number, after;
};

Parts split(std::string_view text) {
  const auto first = text.find_first_of(kDigits);
  if (first == text.npos) return {text, {}, {}};
  const auto end = text.find_last_of(kDigits) + 1;
  return {withoutBlanks(text.substr(0, first)), text.substr(first, end - first),
          withoutBlanks(text.substr(end))};
}

bool isAllDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of(kDigits) == text.npos;
}

// "2,99" is a decimal comma; "1,234" may as well be a thousand and more.
bool hasDecimalComma(std::string_view number) {
  const auto comma = number.find(',');
  if (comma == number.npos) return false;
  const auto fraction = number.substr(comma + 1);
  return isAllDigits(number.substr(0, comma)) && isAllDigits(fraction) && fraction.size() <= 2;
}

bool isPlain(std::string_view number) {
  const auto point = number.find('.');
  if (point == number.npos) return isAllDigits(number);
  return isAllDigits(number.substr(0, point)) && isAllDigits(number.substr(point + 1));
}

std::string reasonAgainst(std::string_view text, const Parts& parts) {
  if (text.empty()) return "is empty";
  if (withoutBlanks(text).empty()) return "is blank";
  if (parts.number.empty()) return "has no number";
  if (parts.before.starts_with('-') || parts.before.ends_with('-')) return "is negative";
  const bool currency = (parts.before.empty() && parts.after.empty()) ||
                        (parts.after.empty() && isCurrency(parts.before)) ||
                        (parts.before.empty() && isCurrency(parts.after));
  if (!currency) return "has more than a number and one currency";
  if (!isPlain(parts.number) && !hasDecimalComma(parts.number)) return "is not one plain number";
  return {};
}

std::string remarkOn(std::string_view text, const Parts& parts) {
  if (!parts.before.empty() || !parts.after.empty()) return "names a currency";
  if (parts.number.size() != text.size()) return "has blanks around it";
  return hasDecimalComma(text) ? "has a decimal comma" : std::string();
}

}  // namespace

PriceReading readPrice(std::string_view text) {
  const Parts parts = split(text);
  if (auto reason = reasonAgainst(text, parts); !reason.empty()) return {{}, std::move(reason)};
  std::string number(parts.number);
  std::replace(number.begin(), number.end(), ',', '.');
  const auto price = Foundation::Decimal::fromString(number);
  if (!price) return {{}, "has more digits than a price can have"};
  return {price, remarkOn(text, parts)};
}

}  // namespace StoreKit::detail
