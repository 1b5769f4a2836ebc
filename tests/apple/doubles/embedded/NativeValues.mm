#import "tests/apple/doubles/embedded/NativeValues.h"

#include <any>

namespace tests {

namespace {

NSDecimalNumber* platformDecimal(const Foundation::Decimal& decimal) {
  return [NSDecimalNumber decimalNumberWithString:platformText(decimal.toString())];
}

NSLocale* platformLocale(const Foundation::Locale& locale) {
  return
      [[[NSLocale alloc] initWithLocaleIdentifier:platformText(locale.identifier())] autorelease];
}

SKProductSubscriptionPeriod* platformPeriod(const StoreKit::SKProductSubscriptionPeriod& period) {
  return [SKProductSubscriptionPeriod with:@{
    @"numberOfUnits" : [NSNumber numberWithUnsignedLongLong:period.numberOfUnits],
    @"unit" : [NSNumber numberWithUnsignedLongLong:static_cast<std::uint64_t>(period.unit)],
  }];
}

SKProductDiscount* platformDiscount(const StoreKit::SKProductDiscount& discount) {
  auto* const result = [SKProductDiscount with:@{
    @"price" : platformDecimal(discount.price),
    @"priceLocale" : platformLocale(discount.priceLocale),
    @"subscriptionPeriod" : platformPeriod(discount.subscriptionPeriod),
    @"numberOfPeriods" : [NSNumber numberWithUnsignedLongLong:discount.numberOfPeriods],
    @"paymentMode" :
        [NSNumber numberWithUnsignedLongLong:static_cast<std::uint64_t>(discount.paymentMode)],
    @"type" : [NSNumber numberWithUnsignedLongLong:static_cast<std::uint64_t>(discount.type)],
  }];
  if (discount.identifier) [result set:platformText(*discount.identifier) for:@"identifier"];
  return result;
}

NSArray* platformDiscounts(const std::vector<StoreKit::SKProductDiscount>& discounts) {
  NSMutableArray* const result = [NSMutableArray array];
  for (const auto& discount : discounts) [result addObject:platformDiscount(discount)];
  return result;
}

id platformValue(const std::any& value) {
  if (const auto* text = std::any_cast<std::string>(&value)) return platformText(*text);
  if (const auto* number = std::any_cast<std::int64_t>(&value)) {
    return [NSNumber numberWithLongLong:*number];
  }
  if (const auto* error = std::any_cast<Foundation::NSError>(&value)) return platformError(*error);
  return nil;
}

}  // namespace

NSString* platformText(const std::string& text) {
  return [[[NSString alloc] initWithBytes:text.data()
                                   length:text.size()
                                 encoding:NSUTF8StringEncoding] autorelease];
}

std::string textOf(NSString* text) {
  NSData* const data = [text dataUsingEncoding:NSUTF8StringEncoding];
  return {static_cast<const char*>([data bytes]), [data length]};
}

NSError* platformError(const Foundation::NSError& error) {
  NSMutableDictionary* const userInfo = [NSMutableDictionary dictionary];
  for (const auto& [key, value] : error.userInfo()) {
    if (id const object = platformValue(value))
      [userInfo setObject:object forKey:platformText(key)];
  }
  return [NSError errorWithDomain:platformText(error.domain()) code:error.code() userInfo:userInfo];
}

SKProduct* platformProduct(const StoreKit::SKProduct& product) {
  auto* const result = [SKProduct with:@{
    @"productIdentifier" : platformText(product.productIdentifier()),
    @"localizedTitle" : platformText(product.localizedTitle()),
    @"localizedDescription" : platformText(product.localizedDescription()),
    @"price" : platformDecimal(product.price()),
    @"priceLocale" : platformLocale(product.priceLocale()),
    @"discounts" : platformDiscounts(product.discounts()),
    @"isFamilyShareable" : [NSNumber numberWithBool:product.isFamilyShareable()],
  }];
  if (const auto& period = product.subscriptionPeriod()) {
    [result set:platformPeriod(*period) for:@"subscriptionPeriod"];
  }
  if (const auto& price = product.introductoryPrice()) {
    [result set:platformDiscount(*price) for:@"introductoryPrice"];
  }
  if (const auto& group = product.subscriptionGroupIdentifier()) {
    [result set:platformText(*group) for:@"subscriptionGroupIdentifier"];
  }
  return result;
}

SKPayment* platformPayment(const StoreKit::SKPayment& payment) {
  auto* const result = [SKPayment with:@{
    @"productIdentifier" : platformText(payment.productIdentifier()),
    @"quantity" : [NSNumber numberWithLongLong:payment.quantity()],
    @"simulatesAskToBuyInSandbox" : [NSNumber numberWithBool:payment.simulatesAskToBuyInSandbox()],
  }];
  if (const auto& user = payment.applicationUsername()) {
    [result set:platformText(*user) for:@"applicationUsername"];
  }
  if (const auto& data = payment.requestData()) {
    [result set:[NSData dataWithBytes:data->data() length:data->size()] for:@"requestData"];
  }
  if (const auto& discount = payment.paymentDiscount()) {
    NSUUID* const nonce =
        [[[NSUUID alloc] initWithUUIDString:platformText(discount->nonce)] autorelease];
    [result set:[[[SKPaymentDiscount alloc]
                    initWithIdentifier:platformText(discount->identifier)
                         keyIdentifier:platformText(discount->keyIdentifier)
                                 nonce:nonce
                             signature:platformText(discount->signature)
                             timestamp:[NSNumber numberWithLongLong:discount->timestamp]]
                    autorelease]
            for:@"paymentDiscount"];
  }
  return result;
}

StoreKit::SKPayment paymentOf(SKPayment* payment) {
  StoreKit::SKPayment::Values values;
  values.productIdentifier = textOf([payment productIdentifier]);
  values.quantity = [payment quantity];
  values.simulatesAskToBuyInSandbox = [payment simulatesAskToBuyInSandbox];
  if (NSString* const user = [payment applicationUsername]) {
    values.applicationUsername = textOf(user);
  }
  if (NSData* const data = [payment requestData]) {
    const auto* const bytes = static_cast<const std::byte*>([data bytes]);
    values.requestData.emplace(bytes, bytes + [data length]);
  }
  if (SKPaymentDiscount* const discount = [payment paymentDiscount]) {
    values.paymentDiscount = {.identifier = textOf([discount identifier]),
                              .keyIdentifier = textOf([discount keyIdentifier]),
                              .nonce = textOf([[[discount nonce] UUIDString] lowercaseString]),
                              .signature = textOf([discount signature]),
                              .timestamp = [[discount timestamp] longLongValue]};
  }
  return StoreKit::SKPayment(std::move(values));
}

}  // namespace tests
