#include "tools/tqstore/Json.hpp"

#include <nlohmann/json.hpp>

#include "TQStoreKitLib/products/ProductPricing.hpp"
#include "tools/tqstore/Console.hpp"

namespace tqstore {

namespace {

using namespace StoreKit;

template <class T>
Json orNull(const std::optional<T>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json periodJson(const SKProductSubscriptionPeriod& period) {
  return {{"unit", unitName(period.unit)},
          {"numberOfUnits", period.numberOfUnits},
          {"text", localizedSubscriptionPeriod(period)}};
}

const char* paymentModeName(SKProductDiscountPaymentMode mode) {
  switch (mode) {
    case SKProductDiscountPaymentMode::payAsYouGo:
      return "payAsYouGo";
    case SKProductDiscountPaymentMode::payUpFront:
      return "payUpFront";
    case SKProductDiscountPaymentMode::freeTrial:
      return "freeTrial";
  }
  return "unknown";
}

const char* discountTypeName(SKProductDiscountType type) {
  return type == SKProductDiscountType::introductory ? "introductory" : "subscription";
}

Json discountJson(const SKProductDiscount& discount) {
  return {{"identifier", orNull(discount.identifier)},
          {"type", discountTypeName(discount.type)},
          {"price", discount.price.toString()},
          {"priceText", orNull(localizedPrice(discount))},
          {"paymentMode", paymentModeName(discount.paymentMode)},
          {"numberOfPeriods", discount.numberOfPeriods},
          {"subscriptionPeriod", periodJson(discount.subscriptionPeriod)}};
}

Json discountsJson(const std::vector<SKProductDiscount>& discounts) {
  Json list = Json::array();
  for (const auto& discount : discounts) list.push_back(discountJson(discount));
  return list;
}

}  // namespace

std::string unitName(SKProductPeriodUnit unit) {
  switch (unit) {
    case SKProductPeriodUnit::day:
      return "day";
    case SKProductPeriodUnit::week:
      return "week";
    case SKProductPeriodUnit::month:
      return "month";
    case SKProductPeriodUnit::year:
      return "year";
  }
  return "unknown";
}

std::string asLine(const Json& value) {
  return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void writeJson(const Json& value) { writeLine(asLine(value)); }

Json toJson(const CatalogueEntry& entry) {
  const auto& product = *entry.product;
  const auto& period = product.subscriptionPeriod();
  const auto& introductory = product.introductoryPrice();
  return {{"productIdentifier", product.productIdentifier()},
          {"type", std::string(toString(entry.type))},
          {"localizedTitle", product.localizedTitle()},
          {"localizedDescription", product.localizedDescription()},
          {"price", product.price().toString()},
          {"priceText", orNull(regularPrice(product))},
          {"priceLocale", product.priceLocale().identifier()},
          {"currency", orNull(product.priceLocale().currencyCode())},
          {"subscriptionPeriod", period ? periodJson(*period) : Json(nullptr)},
          {"subscriptionGroupIdentifier", orNull(product.subscriptionGroupIdentifier())},
          {"introductoryPrice", introductory ? discountJson(*introductory) : Json(nullptr)},
          {"discounts", discountsJson(product.discounts())},
          {"isFamilyShareable", product.isFamilyShareable()},
          {"isDownloadable", product.isDownloadable()},
          {"downloadContentLengths", product.downloadContentLengths()},
          {"downloadContentVersion", product.downloadContentVersion()}};
}

}  // namespace tqstore
