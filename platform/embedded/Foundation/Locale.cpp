#include "platform/Foundation/Locale.hpp"

#include <unicode/locid.h>
#include <unicode/ucurr.h>

#include <array>
#include <mutex>
#include <utility>

#include "platform/embedded/Foundation/EmulatedSystem.hpp"

namespace Foundation {

namespace {

struct CurrentLocale {
  std::mutex mutex;
  std::optional<Locale> chosen;
};

CurrentLocale& currentLocale() {
  static auto& instance = *new CurrentLocale;
  return instance;
}

// What ICU makes of the environment; "en_US_POSIX" is its word for none.
Locale environmentLocale() {
  const std::string name = icu::Locale::getDefault().getName();
  return Locale(name == "en_US_POSIX" ? "en_US" : name);
}

}  // namespace

void setCurrentLocale(std::optional<Locale> locale) {
  const std::lock_guard lock(currentLocale().mutex);
  currentLocale().chosen = std::move(locale);
}

Locale Locale::current() {
  const std::lock_guard lock(currentLocale().mutex);
  const auto& chosen = currentLocale().chosen;
  return chosen ? *chosen : environmentLocale();
}

std::optional<std::string> Locale::currencyCode() const {
  std::array<UChar, 4> code{};
  UErrorCode status = U_ZERO_ERROR;
  const auto length =
      ucurr_forLocale(identifier_.c_str(), code.data(), static_cast<int32_t>(code.size()), &status);
  if (U_FAILURE(status) || length != 3) return std::nullopt;
  return std::string(code.begin(), code.begin() + length);
}

}  // namespace Foundation
