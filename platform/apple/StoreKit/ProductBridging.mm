#include "platform/apple/StoreKit/ProductBridging.hpp"

#include "platform/Foundation/Print.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace StoreKit {

namespace {

Foundation::Decimal priceFrom(NSDecimalNumber* price) {
  if (const auto exact = Foundation::decimalFrom(price)) return *exact;
  Foundation::warn("A price of the store is not a number that can be held; it is taken as 0: " +
                   Foundation::textFrom([price description]));
  return {};
}

std::optional<SKProductSubscriptionPeriod> optionalPeriodFrom(
    ::SKProductSubscriptionPeriod* period) {
  if (period == nil) return std::nullopt;
  return periodFrom(period);
}

std::optional<SKProductDiscount> introductoryPriceOf(::SKProduct* product) {
  ::SKProductDiscount* const discount = [product introductoryPrice];
  if (discount == nil) return std::nullopt;
  return discountFrom(discount, SKProductDiscountType::introductory);
}

std::vector<SKProductDiscount> discountsOf(::SKProduct* product) {
  if (@available(iOS 12.2, macOS 10.14.4, *)) {
    return Foundation::listFrom([product discounts], [](::SKProductDiscount* discount) {
      return discountFrom(discount, SKProductDiscountType::subscription);
    });
  }
  return {};
}

std::optional<std::string> groupOf(::SKProduct* product) {
  if (@available(iOS 12.0, macOS 10.14, *)) {
    return Foundation::optionalTextFrom([product subscriptionGroupIdentifier]);
  }
  return std::nullopt;
}

bool isFamilyShareable(::SKProduct* product) {
  if (@available(iOS 14.0, macOS 11.0, *)) return [product isFamilyShareable];
  return false;
}

std::vector<std::int64_t> contentLengthsOf(::SKProduct* product) {
  return Foundation::listFrom([product downloadContentLengths], [](NSNumber* length) {
    return std::int64_t{[length longLongValue]};
  });
}

SKProduct::Values valuesOf(::SKProduct* product) {
  using Foundation::textFrom;
  return {.productIdentifier = textFrom([product productIdentifier]),
          .localizedTitle = textFrom([product localizedTitle]),
          .localizedDescription = textFrom([product localizedDescription]),
          .price = priceFrom([product price]),
          .priceLocale = Foundation::localeFrom([product priceLocale]),
          .subscriptionPeriod = optionalPeriodFrom([product subscriptionPeriod]),
          .introductoryPrice = introductoryPriceOf(product),
          .discounts = discountsOf(product),
          .subscriptionGroupIdentifier = groupOf(product),
          .isFamilyShareable = isFamilyShareable(product),
          .isDownloadable = static_cast<bool>([product isDownloadable]),
          .downloadContentLengths = contentLengthsOf(product),
          .downloadContentVersion = textFrom([product downloadContentVersion])};
}

}  // namespace

SKProductSubscriptionPeriod periodFrom(::SKProductSubscriptionPeriod* period) {
  return {[period numberOfUnits], static_cast<SKProductPeriodUnit>([period unit])};
}

SKProductDiscount discountFrom(::SKProductDiscount* discount, SKProductDiscountType place) {
  SKProductDiscount result{
      .price = priceFrom([discount price]),
      .priceLocale = Foundation::localeFrom([discount priceLocale]),
      .subscriptionPeriod = periodFrom([discount subscriptionPeriod]),
      .numberOfPeriods = [discount numberOfPeriods],
      .paymentMode = static_cast<SKProductDiscountPaymentMode>([discount paymentMode]),
      .type = place};
  if (@available(iOS 12.2, macOS 10.14.4, *)) {
    result.type = static_cast<SKProductDiscountType>([discount type]);
    result.identifier = Foundation::optionalTextFrom([discount identifier]);
  }
  return result;
}

SKProductPtr productFrom(::SKProduct* product) {
  if (product == nil) return nullptr;
  return std::make_shared<const SKProduct>(valuesOf(product), Foundation::handleOn(product));
}

}  // namespace StoreKit
