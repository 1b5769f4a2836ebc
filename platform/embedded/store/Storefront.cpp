#include "platform/embedded/store/Storefront.hpp"

#include <unicode/uloc.h>

namespace StoreKit {

namespace {

// "und_BR" for "BRA".
std::optional<std::string> regionLocale(std::string_view country) {
  for (const char* const* region = uloc_getISOCountries(); *region != nullptr; ++region) {
    std::string candidate = std::string("und_") + *region;
    if (country == uloc_getISO3Country(candidate.c_str())) return candidate;
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> storefrontCurrency(std::string_view country) {
  if (country.empty()) return std::nullopt;
  const auto locale = regionLocale(country);
  return locale ? Foundation::Locale(*locale).currencyCode() : std::nullopt;
}

Foundation::Locale priceLocale(const std::string& locale, std::string_view storefront) {
  const auto currency = storefrontCurrency(storefront);
  return Foundation::Locale(currency ? locale + "@currency=" + *currency : locale);
}

}  // namespace StoreKit
