#include "platform/Foundation/NumberFormatter.hpp"

#include <unicode/currunit.h>
#include <unicode/numberformatter.h>

#include "platform/embedded/Foundation/KnownLocale.hpp"

namespace Foundation {

namespace {

// A locale of a region brings its currency along; one that names none has the currency that stands
// for "no currency".
icu::CurrencyUnit currencyOf(const Locale& locale, UErrorCode& status) {
  auto code = icu::UnicodeString::fromUTF8(locale.currencyCode().value_or("XXX"));
  return {code.getTerminatedBuffer(), status};
}

}  // namespace

std::optional<std::string> NumberFormatter::stringFromNumber(const Decimal& number) const {
  UErrorCode status = U_ZERO_ERROR;
  auto formatter = icu::number::NumberFormatter::withLocale(knownLocale(locale_));
  if (style_ == Style::currency) formatter = formatter.unit(currencyOf(locale_, status));
  const auto formatted = formatter.formatDecimal(number.toString(), status);
  const auto text = formatted.toString(status);
  if (U_FAILURE(status)) return std::nullopt;
  std::string utf8;
  text.toUTF8String(utf8);
  return utf8;
}

}  // namespace Foundation
