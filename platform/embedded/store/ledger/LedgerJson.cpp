#include "platform/embedded/store/ledger/LedgerJson.hpp"

#include <any>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace StoreKit::detail {

namespace {

using Foundation::NSError;
using Json = nlohmann::json;

Json errorJson(const NSError& error);

// Absent for a value that has no JSON form.
std::optional<Json> valueJson(const std::any& value) {
  if (const auto* text = std::any_cast<std::string>(&value)) return Json(*text);
  if (const auto* integer = std::any_cast<std::int64_t>(&value)) return Json(*integer);
  if (const auto* real = std::any_cast<double>(&value)) return Json(*real);
  if (const auto* flag = std::any_cast<bool>(&value)) return Json(*flag);
  if (const auto* error = std::any_cast<NSError>(&value)) return errorJson(*error);
  return std::nullopt;
}

Json errorJson(const NSError& error) {
  Json userInfo = Json::object();
  for (const auto& [key, value] : error.userInfo()) {
    if (auto json = valueJson(value)) userInfo[key] = std::move(*json);
  }
  return {{"domain", error.domain()}, {"code", error.code()}, {"userInfo", std::move(userInfo)}};
}

NSError errorOf(const Json& json);

std::any valueFrom(const Json& json) {
  if (json.is_string()) return json.get<std::string>();
  if (json.is_number_integer()) return json.get<std::int64_t>();
  if (json.is_number()) return json.get<double>();
  if (json.is_boolean()) return json.get<bool>();
  return errorOf(json);
}

NSError errorOf(const Json& json) {
  NSError::UserInfo userInfo;
  for (const auto& [key, value] : json.at("userInfo").items()) {
    userInfo.emplace(key, valueFrom(value));
  }
  return {json.at("domain"), json.at("code"), std::move(userInfo)};
}

Json discountJson(const SKPaymentDiscount& discount) {
  return {{"identifier", discount.identifier},
          {"keyIdentifier", discount.keyIdentifier},
          {"nonce", discount.nonce},
          {"signature", discount.signature},
          {"timestamp", discount.timestamp}};
}

// What is asked for in a query has a column of its own.
Json periodJson(const SubscriptionPeriod& period) {
  Json json = {{"ends", period.ends.timeIntervalSince1970()},
               {"renews", period.renews},
               {"renewsAs", period.renewsAs},
               {"asksForPriceIncrease", period.asksForPriceIncrease}};
  if (const auto& since = period.retryingSince) {
    json["retryingSince"] = since->timeIntervalSince1970();
  }
  if (const auto& offer = period.renewsWithOffer) json["renewsWithOffer"] = *offer;
  return json;
}

// Text that is not UTF-8 is kept as well as JSON can.
std::string dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string errorText(const NSError& error) { return dump(errorJson(error)); }

NSError errorFrom(const std::string& text) { return errorOf(Json::parse(text)); }

std::string discountText(const SKPaymentDiscount& discount) { return dump(discountJson(discount)); }

SKPaymentDiscount discountFrom(const std::string& text) {
  const auto json = Json::parse(text);
  return {.identifier = json.at("identifier"),
          .keyIdentifier = json.at("keyIdentifier"),
          .nonce = json.at("nonce"),
          .signature = json.at("signature"),
          .timestamp = json.at("timestamp")};
}

std::string periodText(const SubscriptionPeriod& period) { return dump(periodJson(period)); }

SubscriptionPeriod periodFrom(const std::string& text) {
  const auto json = Json::parse(text);
  SubscriptionPeriod period{.ends = Foundation::Date::sinceEpoch(json.at("ends")),
                            .renews = json.at("renews"),
                            .renewsAs = json.at("renewsAs"),
                            .asksForPriceIncrease = json.at("asksForPriceIncrease")};
  if (const auto since = json.find("retryingSince"); since != json.end()) {
    period.retryingSince = Foundation::Date::sinceEpoch(*since);
  }
  if (const auto offer = json.find("renewsWithOffer"); offer != json.end()) {
    period.renewsWithOffer = offer->get<std::string>();
  }
  return period;
}

}  // namespace StoreKit::detail
