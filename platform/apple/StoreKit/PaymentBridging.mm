#include "platform/apple/StoreKit/PaymentBridging.hpp"

#include "platform/Foundation/Print.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace StoreKit {

namespace {

std::optional<std::vector<std::byte>> requestDataOf(::SKPayment* payment) {
  if ([payment requestData] == nil) return std::nullopt;
  return Foundation::dataFrom([payment requestData]);
}

std::optional<SKPaymentDiscount> discountOf(::SKPayment* payment) {
  if (@available(iOS 12.2, macOS 10.14.4, *)) {
    ::SKPaymentDiscount* const discount = [payment paymentDiscount];
    if (discount == nil) return std::nullopt;
    return SKPaymentDiscount{
        .identifier = Foundation::textFrom([discount identifier]),
        .keyIdentifier = Foundation::textFrom([discount keyIdentifier]),
        .nonce = Foundation::textFrom([[[discount nonce] UUIDString] lowercaseString]),
        .signature = Foundation::textFrom([discount signature]),
        .timestamp = [[discount timestamp] longLongValue]};
  }
  return std::nullopt;
}

// What is no UUID was not signed either: the store is to say so, as it does of any wrong signature.
NSUUID* nativeNonce(const std::string& text) {
  const auto nonceFrom = [](NSString* uuid) {
    return [[[NSUUID alloc] initWithUUIDString:uuid] autorelease];
  };
  if (NSUUID* const nonce = nonceFrom(Foundation::nativeText(text))) return nonce;
  Foundation::warn("The nonce of a payment's discount is not a UUID: \"" + text +
                   "\". The store will refuse the discount.");
  return nonceFrom(@"00000000-0000-0000-0000-000000000000");
}

void setDiscount(::SKMutablePayment* payment, const SKPaymentDiscount& discount) {
  if (@available(iOS 12.2, macOS 10.14.4, *)) {
    using Foundation::nativeText;
    NSNumber* const timestamp = [NSNumber numberWithLongLong:discount.timestamp];
    [payment setPaymentDiscount:[[[::SKPaymentDiscount alloc]
                                    initWithIdentifier:nativeText(discount.identifier)
                                         keyIdentifier:nativeText(discount.keyIdentifier)
                                                 nonce:nativeNonce(discount.nonce)
                                             signature:nativeText(discount.signature)
                                             timestamp:timestamp] autorelease]];
  }
}

::SKMutablePayment* newPaymentFor(const SKPayment& payment) {
  const auto& product = payment.product();
  ::SKProduct* const native =
      product ? Foundation::as<::SKProduct>(Foundation::nativeObject(product->native())) : nil;
  if (native != nil) return [::SKMutablePayment paymentWithProduct:native];
  ::SKMutablePayment* const result = [[[::SKMutablePayment alloc] init] autorelease];
  [result setProductIdentifier:Foundation::nativeText(payment.productIdentifier())];
  return result;
}

::SKPayment* newPayment(const SKPayment& payment) {
  ::SKMutablePayment* const result = newPaymentFor(payment);
  [result setQuantity:payment.quantity()];
  if (payment.requestData()) [result setRequestData:Foundation::nativeData(*payment.requestData())];
  [result setApplicationUsername:Foundation::nativeOptionalText(payment.applicationUsername())];
  [result setSimulatesAskToBuyInSandbox:payment.simulatesAskToBuyInSandbox()];
  if (payment.paymentDiscount()) setDiscount(result, *payment.paymentDiscount());
  return result;
}

}  // namespace

SKPaymentPtr paymentFrom(::SKPayment* payment) {
  SKPayment::Values values{
      .productIdentifier = Foundation::textFrom([payment productIdentifier]),
      .quantity = [payment quantity],
      .requestData = requestDataOf(payment),
      .applicationUsername = Foundation::optionalTextFrom([payment applicationUsername]),
      .simulatesAskToBuyInSandbox = static_cast<bool>([payment simulatesAskToBuyInSandbox]),
      .paymentDiscount = discountOf(payment)};
  auto native = payment == nil ? nullptr : Foundation::handleOn(payment);
  return std::make_shared<const SKPayment>(std::move(values), nullptr, std::move(native));
}

::SKPayment* nativePayment(const SKPayment& payment) {
  ::SKPayment* const native =
      Foundation::as<::SKPayment>(Foundation::nativeObject(payment.native()));
  return native != nil ? native : newPayment(payment);
}

}  // namespace StoreKit
