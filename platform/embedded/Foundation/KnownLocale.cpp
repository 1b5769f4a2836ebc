#include "platform/embedded/Foundation/KnownLocale.hpp"

#include <unicode/resbund.h>

namespace Foundation {

icu::Locale knownLocale(const Locale& locale) {
  const auto wanted = icu::Locale::createCanonical(locale.identifier().c_str());
  UErrorCode status = U_ZERO_ERROR;
  const icu::ResourceBundle bundle(nullptr, wanted, status);
  const bool isKnown = U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING;
  return isKnown ? wanted : icu::Locale::getRoot();
}

}  // namespace Foundation
