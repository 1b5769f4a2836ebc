#include "platform/embedded/store/Catalogue.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fakes/ShopConfigurations.hpp"

namespace StoreKit {
namespace {

using tests::product;
using tests::subscription;

Catalogue catalogue(const StoreConfiguration& configuration, const std::string& locale = "en_US",
                    const std::string& storefront = "USA") {
  return {configuration, locale, storefront, 1};
}

SKProductPtr only(StoreConfiguration::Product sold, const std::string& locale = "en_US",
                  const std::string& storefront = "USA") {
  StoreConfiguration configuration;
  configuration.products = {std::move(sold)};
  return catalogue(configuration, locale, storefront).entries().at(0).product;
}

StoreConfiguration::Offer offer(const std::string& identifier, const char* price) {
  return {.offerID = identifier,
          .displayPrice = *Foundation::Decimal::fromString(price),
          .paymentMode = SKProductDiscountPaymentMode::payUpFront,
          .subscriptionPeriod = {3, SKProductPeriodUnit::month},
          .numberOfPeriods = 2};
}

TEST(Catalogue, IsEmptyToBeginWith) {
  EXPECT_THAT(Catalogue().entries(), testing::IsEmpty());
  EXPECT_EQ(Catalogue().find("gems"), nullptr);
}

TEST(Catalogue, KeepsTheOrderOfTheConfiguration) {
  std::vector<std::string> identifiers;
  const auto all = catalogue(tests::shop());
  for (const auto& entry : all.entries()) identifiers.push_back(entry.product->productIdentifier());
  EXPECT_THAT(identifiers,
              testing::ElementsAre("gems", "coins", "crown", "cape", "season", "club"));
}

TEST(Catalogue, KnowsTheTypeOfEach) {
  const auto all = catalogue(tests::shop());
  EXPECT_EQ(all.find("gems")->type, ProductType::consumable);
  EXPECT_EQ(all.find("crown")->type, ProductType::nonConsumable);
  EXPECT_EQ(all.find("season")->type, ProductType::nonRenewingSubscription);
  EXPECT_EQ(all.find("club")->type, ProductType::autoRenewableSubscription);
}

TEST(Catalogue, FindsTheVeryIdentifierOnly) {
  const auto all = catalogue(tests::shop());
  EXPECT_EQ(all.find("crown")->product->productIdentifier(), "crown");
  EXPECT_EQ(all.find("Crown"), nullptr);
  EXPECT_EQ(all.find("crow"), nullptr);
  EXPECT_EQ(all.find(""), nullptr);
  EXPECT_EQ(all.find(std::string_view("crown\0", 6)), nullptr);
}

TEST(Catalogue, GivesTheTextsOfTheUsersLanguage) {
  auto sold = product("gems", ProductType::consumable);
  sold.localizations = {{"en_US", "Gems", "Shiny"}, {"de_DE", "Edelsteine", "Funkelnd"}};
  const auto german = only(sold, "de_DE");
  EXPECT_EQ(german->localizedTitle(), "Edelsteine");
  EXPECT_EQ(german->localizedDescription(), "Funkelnd");
}

TEST(Catalogue, WithoutAnyTextTheTextsAreEmpty) {
  const auto silent = only(product("gems", ProductType::consumable));
  EXPECT_EQ(silent->localizedTitle(), "");
  EXPECT_EQ(silent->localizedDescription(), "");
}

TEST(Catalogue, ShowsPricesInTheStorefrontsCurrency) {
  const auto sold = only(product("gems", ProductType::consumable), "en_US", "BRA");
  EXPECT_EQ(sold->priceLocale().identifier(), "en_US@currency=BRL");
  EXPECT_EQ(sold->priceLocale().currencyCode(), "BRL");
  EXPECT_EQ(sold->price().toString(), "0.99");
}

TEST(Catalogue, FamilySharingComesFromTheConfiguration) {
  auto shared = product("crown", ProductType::nonConsumable);
  EXPECT_FALSE(only(shared)->isFamilyShareable());
  shared.familyShareable = true;
  EXPECT_TRUE(only(shared)->isFamilyShareable());
}

TEST(Catalogue, WhatIsNoSubscriptionHasNothingOfOne) {
  const auto sold = only(product("gems", ProductType::consumable));
  EXPECT_FALSE(sold->subscriptionPeriod());
  EXPECT_FALSE(sold->subscriptionGroupIdentifier());
  EXPECT_FALSE(sold->introductoryPrice());
  EXPECT_THAT(sold->discounts(), testing::IsEmpty());
}

TEST(Catalogue, SubscriptionHasItsPeriodAndGroup) {
  const auto club = only(subscription("club"));
  EXPECT_EQ(club->subscriptionPeriod(),
            (SKProductSubscriptionPeriod{1, SKProductPeriodUnit::month}));
  EXPECT_EQ(club->subscriptionGroupIdentifier(), "readers");
  EXPECT_FALSE(club->introductoryPrice());
}

TEST(Catalogue, IntroductoryOfferBecomesTheIntroductoryPrice) {
  auto sold = subscription("club");
  sold.subscription->introductoryOffer = offer("", "1.99");
  const auto club = only(sold, "en_US", "BRA");
  ASSERT_TRUE(club->introductoryPrice());
  const auto& discount = *club->introductoryPrice();
  EXPECT_EQ(discount.price.toString(), "1.99");
  EXPECT_EQ(discount.priceLocale.identifier(), "en_US@currency=BRL");
  EXPECT_EQ(discount.subscriptionPeriod,
            (SKProductSubscriptionPeriod{3, SKProductPeriodUnit::month}));
  EXPECT_EQ(discount.numberOfPeriods, 2U);
  EXPECT_EQ(discount.paymentMode, SKProductDiscountPaymentMode::payUpFront);
  EXPECT_EQ(discount.type, SKProductDiscountType::introductory);
  EXPECT_FALSE(discount.identifier);
}

TEST(Catalogue, PromotionalOffersBecomeDiscountsInTheirOrder) {
  auto sold = subscription("club");
  sold.subscription->adHocOffers = {offer("half", "0.50"), offer("tenth", "0.10")};
  const auto club = only(sold);
  ASSERT_EQ(club->discounts().size(), 2U);
  EXPECT_EQ(club->discounts()[0].identifier, "half");
  EXPECT_EQ(club->discounts()[1].identifier, "tenth");
  EXPECT_EQ(club->discounts()[1].price.toString(), "0.1");
  EXPECT_EQ(club->discounts()[1].type, SKProductDiscountType::subscription);
  EXPECT_EQ(club->discounts()[1].priceLocale.identifier(), "en_US@currency=USD");
}

TEST(Catalogue, ProductsOfOneConfigurationAreEqualByIdentifier) {
  const Catalogue english(tests::shop(), "en_US", "USA", 7);
  const Catalogue german(tests::shop(), "de_DE", "DEU", 7);
  EXPECT_TRUE(*english.find("gems")->product == *german.find("gems")->product);
  EXPECT_EQ(english.find("gems")->product->hash(), german.find("gems")->product->hash());
  EXPECT_FALSE(*english.find("gems")->product == *english.find("coins")->product);
}

TEST(Catalogue, ProductsOfTwoConfigurationsDiffer) {
  const Catalogue one(tests::shop(), "en_US", "USA", 7);
  const Catalogue other(tests::shop(), "en_US", "USA", 8);
  EXPECT_FALSE(*one.find("gems")->product == *other.find("gems")->product);
}

}  // namespace
}  // namespace StoreKit
