#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Foundation/Decimal.hpp"
#include "platform/Foundation/Locale.hpp"

namespace Foundation {

/// Writes numbers as people of a locale do.
///
///     NumberFormatter formatter;
///     formatter.setNumberStyle(NumberFormatter::Style::currency);
///     formatter.setLocale(product->priceLocale());
///     const auto text = formatter.stringFromNumber(product->price());
///
/// The texts are the platform's own and change with its versions: compare them with nothing.
/// Thread: one formatter is used by one thread at a time.
class NumberFormatter {
 public:
  enum class Style : std::uint64_t {
    decimal = 1,   ///< grouping and decimal mark of the locale
    currency = 2,  ///< with the symbol, the position and the number of decimals of its currency
  };

  void setNumberStyle(Style style) { style_ = style; }

  /// The language, the region and, for a currency, what the number is an amount of. An unknown
  /// locale gives the neutral form, an unknown currency its code.
  void setLocale(Locale locale) { locale_ = std::move(locale); }

  /// Rounds to the decimals that are shown, half to even. The number goes in exactly as it is,
  /// never through binary floating point. Absent when the platform has no text for it.
  [[nodiscard]] std::optional<std::string> stringFromNumber(const Decimal& number) const;

 private:
  Style style_ = Style::decimal;
  Locale locale_ = Locale::current();
};

}  // namespace Foundation
