#include "platform/embedded/store/StoreSettings.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <sstream>

#include "platform/embedded/store/Storefront.hpp"
#include "platform/embedded/store/server/TimeRate.hpp"

namespace StoreKit {

namespace {

using Settings = StoreConfiguration::Settings;
using Problem = std::optional<std::string>;

struct Setting {
  std::string_view name;
  std::string (*text)(const Settings&);
  Problem (*set)(Settings&, const std::string&);
};

template <bool Settings::* Flag>
std::string flagText(const Settings& settings) {
  return settings.*Flag ? "true" : "false";
}

template <bool Settings::* Flag>
Problem setFlag(Settings& settings, const std::string& text) {
  if (text != "true" && text != "false") return "is \"true\" or \"false\"";
  settings.*Flag = text == "true";
  return std::nullopt;
}

template <bool Settings::* Flag>
constexpr Setting flag(std::string_view name) {
  return {name, flagText<Flag>, setFlag<Flag>};
}

std::optional<int> wholeNumber(const std::string& text) {
  int number = 0;
  const auto* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || text.empty()) return std::nullopt;
  return number;
}

std::string delayText(const Settings& settings) { return secondsText(settings.answerDelay); }

Problem setDelay(Settings& settings, const std::string& text) {
  std::istringstream stream(text);
  stream.imbue(std::locale::classic());
  double seconds = 0;
  const bool good = (stream >> seconds) && stream.peek() == std::istringstream::traits_type::eof();
  if (!good || !std::isfinite(seconds) || seconds < 0) return "is a number of seconds, 0 or more";
  settings.answerDelay = seconds;
  return std::nullopt;
}

Problem setFailure(Settings& settings, const std::string& text) {
  const auto code = wholeNumber(text);
  if (!code || *code < 0) return "is a store error code, 0 or more";
  settings.failureError = *code;
  return std::nullopt;
}

Problem setDownloadSpeed(Settings& settings, const std::string& text) {
  const auto speed = wholeNumber(text);
  if (!speed || *speed < 0) return "is a number of bytes a second, or 0 for no limit";
  settings.downloadSpeed = *speed;
  return std::nullopt;
}

// Of a language that nobody knows it may be, as on the platform.
Problem setLocale(Settings& settings, const std::string& text) {
  constexpr const char* kLetters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
  const auto stop = text.find_first_not_of(std::string(kLetters) + "_-@=;");
  if (text.empty() || stop != text.npos) return "is a locale, such as en_US";
  settings.locale = text;
  return std::nullopt;
}

Problem setStorefront(Settings& settings, const std::string& text) {
  if (!storefrontCurrency(text)) return "is a country of three capital letters, such as USA";
  settings.storefront = text;
  return std::nullopt;
}

Problem setTimeRate(Settings& settings, const std::string& text) {
  const auto number = wholeNumber(text);
  if (!number || !isTimeRate(*number)) return "is one of the platform's time rates: " + timeRates();
  settings.timeRate = *number;
  return std::nullopt;
}

constexpr Setting kSettings[] = {
    {"answerDelay", delayText, setDelay},
    flag<&Settings::askToBuyEnabled>("askToBuyEnabled"),
    flag<&Settings::billingGracePeriodEnabled>("billingGracePeriodEnabled"),
    flag<&Settings::billingRetryOnRenewalEnabled>("billingRetryOnRenewalEnabled"),
    flag<&Settings::canMakePayments>("canMakePayments"),
    flag<&Settings::disableDialogs>("disableDialogs"),
    {"downloadSpeed", [](const Settings& all) { return std::to_string(all.downloadSpeed); },
     setDownloadSpeed},
    flag<&Settings::failTransactionsEnabled>("failTransactionsEnabled"),
    {"failureError", [](const Settings& all) { return std::to_string(all.failureError); },
     setFailure},
    flag<&Settings::interruptedPurchasesEnabled>("interruptedPurchasesEnabled"),
    {"locale", [](const Settings& all) { return all.locale; }, setLocale},
    {"storefront", [](const Settings& all) { return all.storefront; }, setStorefront},
    {"timeRate", [](const Settings& all) { return std::to_string(all.timeRate); }, setTimeRate},
};

const Setting* find(std::string_view name) {
  const auto* const found =
      std::find_if(std::begin(kSettings), std::end(kSettings),
                   [&](const Setting& setting) { return setting.name == name; });
  return found == std::end(kSettings) ? nullptr : found;
}

}  // namespace

std::string secondsText(double seconds) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), seconds).ptr;
  return {text.data(), end};
}

std::vector<std::string_view> settingNames() {
  std::vector<std::string_view> names;
  for (const auto& setting : kSettings) names.push_back(setting.name);
  return names;
}

std::optional<std::string> settingText(const Settings& settings, std::string_view name) {
  if (isHostedContentSetting(name)) return hostedContentText(settings.hostedContent, name);
  const auto* const setting = find(name);
  if (setting == nullptr) return std::nullopt;
  return setting->text(settings);
}

std::optional<std::string> setSetting(Settings& settings, std::string_view name,
                                      const std::string& text) {
  const bool hosted = isHostedContentSetting(name);
  const auto* const setting = hosted ? nullptr : find(name);
  if (setting == nullptr && !hosted) return std::string(name) + " is no setting";
  auto problem =
      hosted ? setHostedContent(settings.hostedContent, name, text) : setting->set(settings, text);
  if (problem) return std::string(name) + " " + *problem + ", not \"" + text + "\"";
  return std::nullopt;
}

}  // namespace StoreKit
