#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/apple/Foundation/Bridging.hpp"
#include "platform/apple/StoreKit/ProductBridging.hpp"
#include "tests/apple/run/StoreKit/Samples.h"
#include "tests/fakes/CapturedError.hpp"

namespace StoreKit {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using tests::aDiscount;
using tests::aPeriod;
using tests::aProduct;

TEST(AppleProduct, HasTheTextsOfThePlatforms) {
  const auto product = productFrom(aProduct());
  EXPECT_EQ(product->productIdentifier(), "gems");
  EXPECT_EQ(product->localizedTitle(), "Gems");
  EXPECT_EQ(product->localizedDescription(), "A bag of gems");
}

TEST(AppleProduct, TextsKeepEveryCharacter) {
  auto* const native = aProduct();
  [native set:@"Ž\U0001F48E \"\\" for:@"localizedTitle"];
  EXPECT_EQ(productFrom(native)->localizedTitle(), "Ž\U0001F48E \"\\");
}

TEST(AppleProduct, PriceIsExactBeyondFloatingPoint) {
  auto* const native = aProduct();
  [native set:tests::decimal(@"12345678901234567890.123456789") for:@"price"];
  EXPECT_EQ(productFrom(native)->price().toString(), "12345678901234567890.123456789");
}

TEST(AppleProduct, PriceThatIsNoNumberIsZeroAndSaid) {
  auto* const native = aProduct();
  [native set:[NSDecimalNumber notANumber] for:@"price"];
  tests::CapturedError error;
  EXPECT_TRUE(productFrom(native)->price().isZero());
  EXPECT_THAT(error.text(), HasSubstr("A price of the store is not a number"));
}

TEST(AppleProduct, PriceLocaleKeepsItsIdentifier) {
  auto* const native = aProduct();
  [native set:tests::locale(@"de_DE") for:@"priceLocale"];
  EXPECT_EQ(productFrom(native)->priceLocale().identifier(), "de_DE");
}

TEST(AppleProduct, WithoutSubscriptionHasNoneOfItsFields) {
  const auto product = productFrom(aProduct());
  EXPECT_FALSE(product->subscriptionPeriod());
  EXPECT_FALSE(product->introductoryPrice());
  EXPECT_FALSE(product->subscriptionGroupIdentifier());
  EXPECT_THAT(product->discounts(), IsEmpty());
}

TEST(AppleProduct, SubscriptionPeriodKeepsCountAndUnit) {
  auto* const native = aProduct();
  [native set:aPeriod(6, SKProductPeriodUnitMonth) for:@"subscriptionPeriod"];
  const SKProductSubscriptionPeriod expected{6, SKProductPeriodUnit::month};
  EXPECT_EQ(productFrom(native)->subscriptionPeriod(), expected);
}

TEST(AppleProduct, UnknownPeriodUnitStaysANumber) {
  auto* const native = aProduct();
  [native set:aPeriod(1, 77) for:@"subscriptionPeriod"];
  EXPECT_EQ(productFrom(native)->subscriptionPeriod()->unit, static_cast<SKProductPeriodUnit>(77));
}

TEST(AppleProduct, EmptyGroupIsNotAnAbsentOne) {
  auto* const native = aProduct();
  [native set:@"" for:@"subscriptionGroupIdentifier"];
  EXPECT_EQ(productFrom(native)->subscriptionGroupIdentifier(), "");
}

TEST(AppleProduct, DiscountsComeInTheirOrder) {
  auto* const native = aProduct();
  auto* const second = aDiscount();
  [second set:@"summer" for:@"identifier"];
  [native set:@[ aDiscount(), second ] for:@"discounts"];
  const auto product = productFrom(native);
  ASSERT_EQ(product->discounts().size(), 2U);
  EXPECT_EQ(product->discounts()[0].identifier, std::nullopt);
  EXPECT_EQ(product->discounts()[1].identifier, "summer");
}

TEST(AppleProduct, HostedContentIsDescribed) {
  auto* const native = aProduct();
  [native set:[NSNumber numberWithBool:YES] for:@"isDownloadable"];
  [native set:@[ @10, [NSNumber numberWithLongLong:5'000'000'000] ] for:@"downloadContentLengths"];
  [native set:@"1.2.3" for:@"downloadContentVersion"];
  const auto product = productFrom(native);
  EXPECT_TRUE(product->isDownloadable());
  EXPECT_THAT(product->downloadContentLengths(), ElementsAre(10, 5'000'000'000));
  EXPECT_EQ(product->downloadContentVersion(), "1.2.3");
}

TEST(AppleProduct, SaysWhetherAFamilyMayShareIt) {
  auto* const native = aProduct();
  EXPECT_FALSE(productFrom(native)->isFamilyShareable());
  [native set:[NSNumber numberWithBool:YES] for:@"isFamilyShareable"];
  EXPECT_TRUE(productFrom(native)->isFamilyShareable());
}

TEST(AppleProduct, OnTheOldestSystemLacksWhatCameLater) {
  auto* const native = aProduct();
  [native set:@"group" for:@"subscriptionGroupIdentifier"];
  [native set:@[ aDiscount() ] for:@"discounts"];
  [native set:[NSNumber numberWithBool:YES] for:@"isFamilyShareable"];
  tests::playSystem(11, 2);
  const auto product = productFrom(native);
  EXPECT_FALSE(product->subscriptionGroupIdentifier());
  EXPECT_THAT(product->discounts(), IsEmpty());
  EXPECT_FALSE(product->isFamilyShareable());
}

TEST(AppleProduct, GroupCameBeforeTheDiscounts) {
  auto* const native = aProduct();
  [native set:@"group" for:@"subscriptionGroupIdentifier"];
  [native set:@[ aDiscount() ] for:@"discounts"];
  tests::playSystem(12, 0);
  EXPECT_EQ(productFrom(native)->subscriptionGroupIdentifier(), "group");
  EXPECT_THAT(productFrom(native)->discounts(), IsEmpty());
}

TEST(AppleProduct, KeepsThePlatformsObject) {
  auto* const native = aProduct();
  EXPECT_EQ(Foundation::nativeObject(productFrom(native)->native()), native);
}

TEST(AppleProduct, TwoOfOneObjectAreEqualAndHashAlike) {
  auto* const native = aProduct();
  const auto one = productFrom(native);
  const auto other = productFrom(native);
  EXPECT_TRUE(*one == *other);
  EXPECT_EQ(one->hash(), other->hash());
}

TEST(AppleProduct, TwoObjectsThatThePlatformTellsApartAreNotEqual) {
  EXPECT_FALSE(*productFrom(aProduct()) == *productFrom(aProduct()));
}

TEST(AppleProduct, NoneIsNull) { EXPECT_EQ(productFrom(nil), nullptr); }

TEST(AppleDiscount, HasEveryField) {
  auto* const native = aDiscount();
  [native set:@"summer" for:@"identifier"];
  [native set:[NSNumber numberWithInt:SKProductDiscountTypeSubscription] for:@"type"];
  [native set:[NSNumber numberWithInt:SKProductDiscountPaymentModeFreeTrial] for:@"paymentMode"];
  const auto discount = discountFrom(native, SKProductDiscountType::introductory);
  EXPECT_EQ(discount.price.toString(), "0.49");
  EXPECT_EQ(discount.priceLocale.identifier(), "en_US");
  EXPECT_EQ(discount.subscriptionPeriod,
            (SKProductSubscriptionPeriod{1, SKProductPeriodUnit::month}));
  EXPECT_EQ(discount.numberOfPeriods, 3U);
  EXPECT_EQ(discount.paymentMode, SKProductDiscountPaymentMode::freeTrial);
  EXPECT_EQ(discount.type, SKProductDiscountType::subscription);
  EXPECT_EQ(discount.identifier, "summer");
}

TEST(AppleDiscount, UnknownNumbersStayAsTheyAre) {
  auto* const native = aDiscount();
  [native set:@9 for:@"paymentMode"];
  [native set:@8 for:@"type"];
  const auto discount = discountFrom(native, SKProductDiscountType::introductory);
  EXPECT_EQ(discount.paymentMode, static_cast<SKProductDiscountPaymentMode>(9));
  EXPECT_EQ(discount.type, static_cast<SKProductDiscountType>(8));
}

TEST(AppleDiscount, BeforeItHadATypeIsWhatItsPlaceSays) {
  auto* const native = aProduct();
  auto* const introduction = aDiscount();
  [introduction set:[NSNumber numberWithInt:SKProductDiscountTypeSubscription] for:@"type"];
  [introduction set:@"identifier" for:@"identifier"];
  [native set:introduction for:@"introductoryPrice"];
  tests::playSystem(12, 1);
  const auto product = productFrom(native);
  ASSERT_TRUE(product->introductoryPrice());
  EXPECT_EQ(product->introductoryPrice()->type, SKProductDiscountType::introductory);
  EXPECT_FALSE(product->introductoryPrice()->identifier);
}

}  // namespace
}  // namespace StoreKit
