#include "platform/embedded/store/configuration/ConfigurationSettings.hpp"

#include <algorithm>
#include <limits>

#include "platform/embedded/store/Storefront.hpp"
#include "platform/embedded/store/server/TimeRate.hpp"

namespace StoreKit::detail {

namespace {

using Settings = StoreConfiguration::Settings;

std::string readLocale(const ConfigurationFields& fields) {
  std::string fallback = Settings().locale;
  auto locale = fields.text("_locale", fallback);
  if (!locale.empty()) return locale;
  fields.warn("_locale", "names no locale; read as " + inQuotes(fallback));
  return fallback;
}

bool isCountryCode(std::string_view text) {
  return text.size() == 3 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

std::string readStorefront(const ConfigurationFields& fields) {
  std::string fallback = Settings().storefront;
  auto storefront = fields.text("_storefront", fallback);
  if (isCountryCode(storefront) && storefrontCurrency(storefront)) return storefront;
  fields.warn("_storefront", inQuotes(storefront) +
                                 (isCountryCode(storefront)
                                      ? " is no country that has a currency; read as "
                                      : " is no country code of three capital letters; read as ") +
                                 inQuotes(fallback));
  return fallback;
}

int readTimeRate(const ConfigurationFields& fields) {
  const auto written = fields.wholeNumber("_timeRate", 0);
  constexpr auto kLargest = std::numeric_limits<int>::max();
  const bool fits = written >= 0 && written <= kLargest;
  if (fits && isTimeRate(static_cast<int>(written))) return static_cast<int>(written);
  fields.warn("_timeRate", std::to_string(written) + " is no time rate; read as 0, real time");
  return 0;
}

int readFailureError(const ConfigurationFields& fields) {
  const auto written = fields.wholeNumber("_storeKitError", 0);
  if (written >= 0 && written <= std::numeric_limits<int>::max()) return static_cast<int>(written);
  fields.warn("_storeKitError", std::to_string(written) + " is no error code; read as 0");
  return 0;
}

}  // namespace

Settings readSettings(const ConfigurationFields& file, ConfigurationProblems& problems) {
  const auto* value = file.find("settings");
  if (value == nullptr) return {};
  if (!std::holds_alternative<ConfigurationValue::Object>(value->content)) {
    problems.warn(*value, mismatch("an object", *value) + "; every setting has its default");
    return {};
  }
  const ConfigurationFields fields(*value, problems);
  return {.locale = readLocale(fields),
          .storefront = readStorefront(fields),
          .timeRate = readTimeRate(fields),
          .askToBuyEnabled = fields.flag("_askToBuyEnabled"),
          .interruptedPurchasesEnabled = fields.flag("_billingIssuesEnabled"),
          .billingRetryOnRenewalEnabled = fields.flag("_renewalBillingIssuesEnabled"),
          .billingGracePeriodEnabled = fields.flag("_billingGracePeriodEnabled"),
          .disableDialogs = fields.flag("_disableDialogs"),
          .failTransactionsEnabled = fields.flag("_failTransactionsEnabled"),
          .failureError = readFailureError(fields)};
}

}  // namespace StoreKit::detail
