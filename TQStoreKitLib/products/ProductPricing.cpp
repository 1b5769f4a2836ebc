#include "TQStoreKitLib/products/ProductPricing.hpp"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/Foundation/DateComponentsFormatter.hpp"
#include "platform/Foundation/NumberFormatter.hpp"
#include "platform/Foundation/Print.hpp"

namespace StoreKit {

namespace {

using Foundation::DateComponents;

std::optional<std::string> currencyText(const Foundation::Decimal& amount,
                                        const Foundation::Locale& locale) {
  Foundation::NumberFormatter formatter;
  formatter.setNumberStyle(Foundation::NumberFormatter::Style::currency);
  formatter.setLocale(locale);
  return formatter.stringFromNumber(amount);
}

DateComponents componentsOf(const SKProductSubscriptionPeriod& period) {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  const auto count = static_cast<std::int64_t>(std::min(period.numberOfUnits, kMost));
  switch (period.unit) {
    case SKProductPeriodUnit::day:
      return {.day = count};
    case SKProductPeriodUnit::week:
      return {.weekOfMonth = count};
    case SKProductPeriodUnit::month:
      return {.month = count};
    case SKProductPeriodUnit::year:
      return {.year = count};
  }
  Foundation::print(
      "WARNING: Bramble localizedSubscriptionPeriod does not handle all SKProduct.PeriodUnit "
      "cases.");
  return {.month = count};
}

}  // namespace

std::optional<std::string> regularPrice(const SKProduct& product) {
  if (product.price().isZero()) return "Free";
  return currencyText(product.price(), product.priceLocale());
}

std::optional<std::string> localizedPrice(const SKProductDiscount& discount) {
  return currencyText(discount.price, discount.priceLocale);
}

std::string localizedSubscriptionPeriod(const SKProductDiscount& discount) {
  return localizedSubscriptionPeriod(discount.subscriptionPeriod);
}

std::string localizedSubscriptionPeriod(const SKProductSubscriptionPeriod& period) {
  Foundation::DateComponentsFormatter formatter;
  formatter.setUnitsStyle(Foundation::DateComponentsFormatter::UnitsStyle::full);
  return formatter.stringFromDateComponents(componentsOf(period)).value_or("");
}

}  // namespace StoreKit
