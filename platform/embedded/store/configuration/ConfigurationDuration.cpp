#include "platform/embedded/store/configuration/ConfigurationDuration.hpp"

#include <charconv>

namespace StoreKit::detail {

namespace {

// Thousands of years: more than any calendar arithmetic has to cope with.
constexpr std::uint64_t kMostUnits = 999'999;

std::optional<SKProductPeriodUnit> unitOf(char letter) {
  switch (letter) {
    case 'D':
      return SKProductPeriodUnit::day;
    case 'W':
      return SKProductPeriodUnit::week;
    case 'M':
      return SKProductPeriodUnit::month;
    case 'Y':
      return SKProductPeriodUnit::year;
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<SKProductSubscriptionPeriod> readDuration(std::string_view text) {
  if (text.size() < 3 || text.front() != 'P') return std::nullopt;
  const auto unit = unitOf(text.back());
  const auto digits = text.substr(1, text.size() - 2);
  std::uint64_t count = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, count);
  const bool complete = error == std::errc() && stop == end;
  if (!unit || !complete || count < 1 || count > kMostUnits) return std::nullopt;
  return SKProductSubscriptionPeriod{count, *unit};
}

}  // namespace StoreKit::detail
