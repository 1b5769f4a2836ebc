#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/PaymentBridging.hpp"
#include "platform/apple/StoreKit/ProductBridging.hpp"
#include "tests/apple/run/StoreKit/Samples.h"
#include "tests/fakes/CapturedError.hpp"

namespace StoreKit {
namespace {

using testing::HasSubstr;
using tests::aPayment;
using tests::aProduct;

constexpr const char* kNonce = "6f0f3a4e-0c5a-4a53-8b8e-3b6c2c0a1d2e";
const SKPaymentDiscount kDiscount{"summer", "key", kNonce, "c2lnbmVk", 9'007'199'254'740'993};

SKMutablePayment discounted() {
  SKMutablePayment payment(productFrom(aProduct()));
  payment.setPaymentDiscount(kDiscount);
  return payment;
}

TEST(ApplePayment, IsForTheProductOfThePlatform) {
  ::SKProduct* const product = aProduct(@"crown");
  ::SKPayment* const native = nativePayment(SKMutablePayment(productFrom(product)));
  EXPECT_EQ([native product], product);
  EXPECT_TRUE([[native productIdentifier] isEqual:@"crown"]);
}

TEST(ApplePayment, WithoutAnythingElseHasThePlatformsDefaults) {
  ::SKPayment* const native = nativePayment(SKMutablePayment(productFrom(aProduct())));
  EXPECT_EQ([native quantity], 1);
  EXPECT_EQ([native requestData], nil);
  EXPECT_EQ([native applicationUsername], nil);
  EXPECT_FALSE([native simulatesAskToBuyInSandbox]);
  EXPECT_EQ([native paymentDiscount], nil);
}

TEST(ApplePayment, ForAProductThatThePlatformDidNotMakeNamesIt) {
  const auto product =
      std::make_shared<const SKProduct>(SKProduct::Values{.productIdentifier = "homemade"});
  EXPECT_TRUE([[nativePayment(SKMutablePayment(product)) productIdentifier] isEqual:@"homemade"]);
}

TEST(ApplePayment, WithoutAProductNamesIt) {
  const SKPayment payment({.productIdentifier = "named"});
  EXPECT_TRUE([[nativePayment(payment) productIdentifier] isEqual:@"named"]);
}

TEST(ApplePayment, TakesItsQuantityAlong) {
  SKMutablePayment payment(productFrom(aProduct()));
  payment.setQuantity(7);
  EXPECT_EQ([nativePayment(payment) quantity], 7);
}

TEST(ApplePayment, TakesItsUserAlong) {
  SKMutablePayment payment(productFrom(aProduct()));
  payment.setApplicationUsername("Zoë");
  EXPECT_TRUE([[nativePayment(payment) applicationUsername] isEqual:@"Zoë"]);
}

TEST(ApplePayment, EmptyUserStaysEmpty) {
  SKMutablePayment payment(productFrom(aProduct()));
  payment.setApplicationUsername("");
  EXPECT_TRUE([[nativePayment(payment) applicationUsername] isEqual:@""]);
}

TEST(ApplePayment, TakesItsRequestDataAlong) {
  SKMutablePayment payment(productFrom(aProduct()));
  payment.setRequestData(Foundation::dataFromText(std::string_view("a\0b", 3)));
  NSData* const expected = [NSData dataWithBytes:"a\0b" length:3];
  EXPECT_TRUE([[nativePayment(payment) requestData] isEqual:expected]);
}

TEST(ApplePayment, EmptyRequestDataStaysEmpty) {
  SKMutablePayment payment(productFrom(aProduct()));
  payment.setRequestData(Foundation::Data());
  EXPECT_TRUE([[nativePayment(payment) requestData] isEqual:[NSData data]]);
}

TEST(ApplePayment, SimulatesAskToBuy) {
  SKMutablePayment payment(productFrom(aProduct()));
  payment.setSimulatesAskToBuyInSandbox(true);
  EXPECT_TRUE([nativePayment(payment) simulatesAskToBuyInSandbox]);
}

TEST(ApplePayment, TakesItsDiscountAlong) {
  ::SKPaymentDiscount* const discount = [nativePayment(discounted()) paymentDiscount];
  EXPECT_TRUE([[discount identifier] isEqual:@"summer"]);
  EXPECT_TRUE([[discount keyIdentifier] isEqual:@"key"]);
  EXPECT_EQ(Foundation::textFrom([[[discount nonce] UUIDString] lowercaseString]), kNonce);
  EXPECT_TRUE([[discount signature] isEqual:@"c2lnbmVk"]);
  EXPECT_EQ([[discount timestamp] longLongValue], 9'007'199'254'740'993);
}

TEST(ApplePayment, HasNoDiscountBeforeTheSystemHad) {
  tests::playSystem(12, 1);
  ::SKPayment* const native = nativePayment(discounted());
  tests::playSystem(12, 2);
  EXPECT_EQ([native paymentDiscount], nil);
}

TEST(ApplePayment, NonceThatIsNoUuidIsSentAsOneThatWasNotSigned) {
  SKMutablePayment payment(productFrom(aProduct()));
  payment.setPaymentDiscount(SKPaymentDiscount{"summer", "key", "not a nonce", "", 1});
  tests::CapturedError error;
  ::SKPaymentDiscount* const discount = [nativePayment(payment) paymentDiscount];
  EXPECT_THAT(error.text(), HasSubstr("not a UUID: \"not a nonce\""));
  EXPECT_TRUE([[[discount nonce] UUIDString] isEqual:@"00000000-0000-0000-0000-000000000000"]);
}

TEST(ApplePayment, OfThePlatformGoesBackAsItIs) {
  ::SKPayment* const native = aPayment();
  EXPECT_EQ(nativePayment(*paymentFrom(native)), native);
}

TEST(ApplePayment, OfThePlatformHasEveryField) {
  ::SKPayment* const native = [::SKPayment with:@{
    @"productIdentifier" : @"crown",
    @"quantity" : @4,
    @"requestData" : [NSData dataWithBytes:"xy" length:2],
    @"applicationUsername" : @"Ada",
    @"simulatesAskToBuyInSandbox" : [NSNumber numberWithBool:YES],
  }];
  const auto payment = paymentFrom(native);
  EXPECT_EQ(payment->productIdentifier(), "crown");
  EXPECT_EQ(payment->quantity(), 4);
  EXPECT_EQ(payment->requestData(), Foundation::dataFromText("xy"));
  EXPECT_EQ(payment->applicationUsername(), "Ada");
  EXPECT_TRUE(payment->simulatesAskToBuyInSandbox());
}

TEST(ApplePayment, OfThePlatformLacksWhatItLacks) {
  const auto payment = paymentFrom(aPayment());
  EXPECT_FALSE(payment->requestData());
  EXPECT_FALSE(payment->applicationUsername());
  EXPECT_FALSE(payment->paymentDiscount());
  EXPECT_FALSE(payment->simulatesAskToBuyInSandbox());
}

TEST(ApplePayment, OfThePlatformHasItsDiscount) {
  const auto discount = paymentFrom(nativePayment(discounted()))->paymentDiscount();
  ASSERT_TRUE(discount);
  EXPECT_EQ(discount->identifier, kDiscount.identifier);
  EXPECT_EQ(discount->keyIdentifier, kDiscount.keyIdentifier);
  EXPECT_EQ(discount->nonce, kNonce);
  EXPECT_EQ(discount->signature, kDiscount.signature);
  EXPECT_EQ(discount->timestamp, kDiscount.timestamp);
}

TEST(ApplePayment, OfAnOldSystemHasNoDiscount) {
  tests::playSystem(12, 1);
  EXPECT_FALSE(paymentFrom(aPayment())->paymentDiscount());
}

TEST(ApplePayment, OfNothingIsForNothing) {
  const auto payment = paymentFrom(nil);
  ASSERT_NE(payment, nullptr);
  EXPECT_EQ(payment->productIdentifier(), "");
  EXPECT_EQ(payment->native(), nullptr);
}

}  // namespace
}  // namespace StoreKit
