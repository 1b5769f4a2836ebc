#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/Locale.hpp"

namespace StoreKit {

/// The currency (ISO 4217, "BRL") that the store of a country charges in; `country` is its
/// three-letter code (ISO 3166-1, "BRA"). Absent for a country that does not exist.
///
/// Source: ICU's currency and region data.
[[nodiscard]] std::optional<std::string> storefrontCurrency(std::string_view country);

/// The locale that prices are shown in: the language and region of `locale`, the currency of the
/// storefront: "en_US@currency=BRL". Without a currency it is `locale`.
[[nodiscard]] Foundation::Locale priceLocale(const std::string& locale,
                                             std::string_view storefront);

}  // namespace StoreKit
