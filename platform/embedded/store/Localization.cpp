#include "platform/embedded/store/Localization.hpp"

#include <unicode/uloc.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string>

namespace StoreKit {

namespace {

using Localization = StoreConfiguration::Localization;
using Part = int32_t (*)(const char*, char*, int32_t, UErrorCode*);

std::string underscored(std::string_view locale) {
  std::string text(locale);
  std::replace(text.begin(), text.end(), '-', '_');
  return text;
}

std::string part(Part read, const std::string& locale) {
  std::array<char, ULOC_FULLNAME_CAPACITY> text{};
  UErrorCode status = U_ZERO_ERROR;
  read(locale.c_str(), text.data(), static_cast<int32_t>(text.size()), &status);
  return U_FAILURE(status) ? "" : text.data();
}

std::string language(const std::string& locale) { return part(uloc_getLanguage, locale); }

// The script that is written, or that follows from the language and region: zh_TW is zh_Hant.
std::string script(const std::string& locale) {
  return part(uloc_getScript, part(uloc_addLikelySubtags, locale));
}

}  // namespace

const Localization* chooseLocalization(const std::vector<Localization>& localizations,
                                       std::string_view locale) {
  const auto wanted = underscored(locale);
  const auto first = [&](const std::function<bool(const std::string&)>& fits) {
    const auto found = std::find_if(
        localizations.begin(), localizations.end(),
        [&](const Localization& candidate) { return fits(underscored(candidate.locale)); });
    return found == localizations.end() ? nullptr : &*found;
  };
  const auto sameLanguage = [&](const std::string& other) {
    return !language(other).empty() && language(other) == language(wanted);
  };
  if (const auto* exact = first([&](const auto& other) { return other == wanted; })) return exact;
  if (const auto* close = first([&](const auto& other) {
        return sameLanguage(other) && script(other) == script(wanted);
      })) {
    return close;
  }
  if (const auto* related = first(sameLanguage)) return related;
  if (const auto* english = first([](const auto& other) { return other == "en_US"; })) {
    return english;
  }
  return localizations.empty() ? nullptr : &localizations.front();
}

}  // namespace StoreKit
