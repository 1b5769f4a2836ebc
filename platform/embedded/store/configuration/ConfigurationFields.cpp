#include "platform/embedded/store/configuration/ConfigurationFields.hpp"

#include <utility>

#include "platform/embedded/store/configuration/ConfigurationDuration.hpp"
#include "platform/embedded/store/configuration/ConfigurationPrice.hpp"

namespace StoreKit::detail {

using Value = ConfigurationValue;

const ConfigurationValue* ConfigurationFields::find(std::string_view key) const {
  const Value* value = findMember(object_, key);
  return value == nullptr || value->isNull() ? nullptr : value;
}

std::string ConfigurationFields::text(std::string_view key, std::string_view fallback) const {
  const Value* value = find(key);
  if (value == nullptr) return std::string(fallback);
  if (const auto* text = std::get_if<std::string>(&value->content)) return *text;
  warnAboutKind(*value, "a text", inQuotes(fallback));
  return std::string(fallback);
}

bool ConfigurationFields::flag(std::string_view key) const {
  const Value* value = find(key);
  if (value == nullptr) return false;
  if (const auto* flag = std::get_if<bool>(&value->content)) return *flag;
  warnAboutKind(*value, "true or false", "false");
  return false;
}

std::int64_t ConfigurationFields::wholeNumber(std::string_view key, std::int64_t fallback) const {
  const Value* value = find(key);
  if (value == nullptr) return fallback;
  const auto* number = std::get_if<Value::Number>(&value->content);
  if (number != nullptr && number->whole) return *number->whole;
  warnAboutKind(*value, "a whole number", std::to_string(fallback));
  return fallback;
}

const ConfigurationValue::Array& ConfigurationFields::list(std::string_view key) const {
  static const Value::Array kEmpty;
  const Value* value = find(key);
  if (value == nullptr) return kEmpty;
  if (const auto* list = std::get_if<Value::Array>(&value->content)) return *list;
  warnAboutKind(*value, "a list", "an empty one");
  return kEmpty;
}

std::optional<Foundation::Decimal> ConfigurationFields::price(std::string_view key,
                                                              std::string_view consequence) const {
  if (find(key) == nullptr) return warnAboutMissing(key, consequence), std::nullopt;
  const auto written = text(key);
  auto [price, remark] = readPrice(written);
  if (!price) {
    warn(key, "the price " + inQuotes(written) + " " + remark + "; " + std::string(consequence));
  } else if (!remark.empty()) {
    warn(key, "the price " + inQuotes(written) + " " + remark + "; read as " + price->toString());
  }
  return price;
}

std::optional<SKProductSubscriptionPeriod> ConfigurationFields::duration(
    std::string_view key, std::string_view consequence) const {
  if (find(key) == nullptr) return warnAboutMissing(key, consequence), std::nullopt;
  const auto written = text(key);
  const auto duration = readDuration(written);
  if (!duration) {
    warn(key, inQuotes(written) + " is no duration such as \"P1M\"; " + std::string(consequence));
  }
  return duration;
}

void ConfigurationFields::warn(std::string message) const {
  problems_.warn(object_, std::move(message));
}

void ConfigurationFields::warn(std::string_view key, std::string message) const {
  const Value* value = find(key);
  problems_.warn(value == nullptr ? object_ : *value, std::move(message));
}

void ConfigurationFields::warnAboutKind(const Value& value, std::string_view expected,
                                        const std::string& readAs) const {
  problems_.warn(value, mismatch(expected, value) + "; read as " + readAs);
}

void ConfigurationFields::warnAboutMissing(std::string_view key,
                                           std::string_view consequence) const {
  warn("has no " + std::string(key) + "; " + std::string(consequence));
}

}  // namespace StoreKit::detail
