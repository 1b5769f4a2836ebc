#include <gtest/gtest.h>

#include "tests/platform/embedded/store/configuration/ConfigurationTexts.hpp"

namespace StoreKit::tests {
namespace {

using Product = StoreConfiguration::Product;

std::vector<std::string> identifiersOf(const ConfigurationReading& reading) {
  std::vector<std::string> result;
  if (!reading.configuration) return result;
  for (const Product& product : reading.configuration->products) {
    result.push_back(product.productID);
  }
  return result;
}

// The one product of a file of which more is expected to be readable.
Product onlyProduct(const ConfigurationReading& reading) {
  if (!reading.configuration || reading.configuration->products.size() != 1) return {};
  return reading.configuration->products[0];
}

std::string entry(std::string_view productID, std::string_view type = "Consumable") {
  return R"({"productID":")" + std::string(productID) + R"(","type":")" + std::string(type) +
         R"(","displayPrice":"1","recurringSubscriptionPeriod":"P1M"})";
}

TEST(ConfigurationProducts, CatalogueListsProductsThenNonRenewingThenGroups) {
  const auto reading =
      parse(R"({"subscriptionGroups":[{"id":"G","subscriptions":[)" +
            entry("d", "RecurringSubscription") + "]},{\"id\":\"H\",\"subscriptions\":[" +
            entry("e", "RecurringSubscription") + R"(]}],"nonRenewingSubscriptions":[)" +
            entry("c", "NonRenewingSubscription") + R"(],"products":[)" + entry("b") + "," +
            entry("a") + "]}");
  EXPECT_EQ(identifiersOf(reading), (std::vector<std::string>{"b", "a", "c", "d", "e"}));
}

TEST(ConfigurationProducts, MissingAndNullListsAreEmpty) {
  const auto reading = parse(R"({"products":null,"subscriptionGroups":[{"subscriptions":null}]})");
  EXPECT_TRUE(isReadWith(reading, ""));
  EXPECT_TRUE(reading.configuration->products.empty());
}

TEST(ConfigurationProducts, EveryFieldIsRead) {
  const auto product = onlyProduct(parse(textWithProduct(
      R"("familyShareable":true,"referenceName":"Gems","localizations":[{"locale":"zh-Hans",)"
      R"("displayName":"宝石","description":"一袋"}],)")));
  EXPECT_EQ(product.displayPrice.toString(), "0.99");
  EXPECT_EQ(product.referenceName, "Gems");
  EXPECT_TRUE(product.familyShareable);
  ASSERT_EQ(product.localizations.size(), 1U);
  EXPECT_EQ(product.localizations[0].locale, "zh-Hans");
  EXPECT_EQ(product.localizations[0].displayName, "宝石");
  EXPECT_EQ(product.localizations[0].description, "一袋");
}

TEST(ConfigurationProducts, OnlyIdentifierTypeAndPriceAreNeeded) {
  const auto reading = parse(textWithProduct(""));
  EXPECT_TRUE(isReadWith(reading, ""));
  EXPECT_FALSE(onlyProduct(reading).familyShareable);
  EXPECT_FALSE(onlyProduct(reading).subscription);
}

TEST(ConfigurationProducts, NullNameIsNoName) {
  EXPECT_TRUE(isReadWith(parse(textWithProduct(R"("referenceName":null,)")), ""));
}

TEST(ConfigurationProducts, EachKnownTypeIsRead) {
  const auto reading = parse(R"({"products":[)" + entry("a") + "," + entry("b", "NonConsumable") +
                             "," + entry("c", "NonRenewingSubscription") + "]}");
  ASSERT_TRUE(isReadWith(reading, ""));
  EXPECT_EQ(reading.configuration->products[0].type, ProductType::consumable);
  EXPECT_EQ(reading.configuration->products[1].type, ProductType::nonConsumable);
  EXPECT_EQ(reading.configuration->products[2].type, ProductType::nonRenewingSubscription);
}

TEST(ConfigurationProducts, TypeInOtherCapitalsIsReadWithAWarning) {
  const auto reading = parse(R"({"products":[)" + entry("a", "nonConsumable") + "]}");
  EXPECT_EQ(onlyProduct(reading).type, ProductType::nonConsumable);
  EXPECT_EQ(problemsOf(reading),
            "/products/0/type: the type \"nonConsumable\" is unknown; read as NonConsumable\n");
}

TEST(ConfigurationProducts, UnknownTypeIsReadByWhereItStands) {
  const auto unknown = entry("a", "Rental");
  const auto product = onlyProduct(parse(R"({"products":[)" + unknown + "]}"));
  EXPECT_EQ(product.type, ProductType::nonConsumable);
  const auto season = onlyProduct(parse(R"({"nonRenewingSubscriptions":[)" + unknown + "]}"));
  EXPECT_EQ(season.type, ProductType::nonRenewingSubscription);
  const auto club = onlyProduct(
      parse(R"({"subscriptionGroups":[{"id":"G","subscriptions":[)" + unknown + "]}]}"));
  EXPECT_EQ(club.type, ProductType::autoRenewableSubscription);
}

TEST(ConfigurationProducts, MissingTypeIsReadByWhereItStandsWithAWarning) {
  const auto reading = parse(R"({"products":[{"productID":"a","displayPrice":"1"}]})");
  EXPECT_TRUE(isReadWith(reading, "/products/0: has no type; read as NonConsumable\n"));
}

TEST(ConfigurationProducts, SubscriptionOutsideOfAGroupIsReadWithAWarning) {
  const auto reading = parse(R"({"products":[)" + entry("a", "RecurringSubscription") + "]}");
  EXPECT_TRUE(onlyProduct(reading).subscription);
  EXPECT_TRUE(isReadWith(reading,
                         "/products/0: belongs to no group that has an identifier; read with an "
                         "empty one\n/products/0/type: a RecurringSubscription outside of a "
                         "subscription group; read as its type says\n"));
}

TEST(ConfigurationProducts, EntryWithoutIdentifierIsLeftOut) {
  const auto reading =
      parse(R"({"products":[{"displayPrice":"1"},{"productID":""},)" + entry("a") + ",null]}");
  EXPECT_EQ(identifiersOf(reading), std::vector<std::string>{"a"});
  EXPECT_EQ(problemsOf(reading),
            "/products/0: has no productID; left out\n/products/1: has no productID; left out\n"
            "/products/3: has no productID; left out\n");
}

TEST(ConfigurationProducts, DuplicateProductIdentifierKeepsTheFirst) {
  const auto reading = parse(R"({"nonRenewingSubscriptions":[)" + entry("a") + R"(],"products":[)" +
                             entry("a", "NonConsumable") + "]}");
  EXPECT_EQ(onlyProduct(reading).type, ProductType::nonConsumable);
  EXPECT_EQ(problemsOf(reading),
            "/nonRenewingSubscriptions/0: has the same productID \"a\" as /products/0; the first "
            "one is kept\n");
}

TEST(ConfigurationProducts, IdentifiersDifferByCase) {
  const auto reading = parse(R"({"products":[)" + entry("a") + "," + entry("A") + "]}");
  EXPECT_EQ(identifiersOf(reading), (std::vector<std::string>{"a", "A"}));
}

TEST(ConfigurationProducts, LocalizationWithoutLocaleIsLeftOut) {
  const auto reading =
      parse(textWithProduct(R"("localizations":[{"displayName":"Gems"},{"locale":"ja"}],)"));
  EXPECT_EQ(onlyProduct(reading).localizations.size(), 1U);
  EXPECT_EQ(problemsOf(reading), "/products/0/localizations/0: names no locale; left out\n");
}

TEST(ConfigurationProducts, WrongTypeWhereNothingDependsOnItGivesTheDefaultAndAWarning) {
  const auto reading =
      parse(textWithProduct(R"("familyShareable":"true","referenceName":7,"localizations":{},)"));
  EXPECT_FALSE(onlyProduct(reading).familyShareable);
  EXPECT_TRUE(isReadWith(
      reading,
      "/products/0/familyShareable: expected true or false, found a text; read as false\n"
      "/products/0/referenceName: expected a text, found a number; read as \"\"\n"
      "/products/0/localizations: expected a list, found an object; read as an empty one\n"));
}

TEST(ConfigurationProducts, StrayListIsNamedWhenNothingElseIsForSale) {
  const auto reading = parse(R"({"nonConsumables":[)" + entry("a") + "]}");
  EXPECT_TRUE(reading.configuration->products.empty());
  EXPECT_EQ(problemsOf(reading),
            "/nonConsumables: products are not read from \"nonConsumables\", only from "
            "\"products\", \"nonRenewingSubscriptions\" and \"subscriptionGroups\"; the catalogue "
            "is empty\n");
}

TEST(ConfigurationProducts, StrayListOfGroupsIsNamedToo) {
  const auto reading = parse(R"({"subscriptions":[{"subscriptions":[)" + entry("a") + "]}]}");
  EXPECT_EQ(reading.problems.at(0).place, "/subscriptions");
}

TEST(ConfigurationProducts, StrayListIsIgnoredBesideRealProducts) {
  EXPECT_TRUE(isReadWith(
      parse(R"({"nonConsumables":[)" + entry("a") + R"(],"products":[)" + entry("b") + "]}"), ""));
}

TEST(ConfigurationProducts, TypesAreNamedAsTheFileWritesThem) {
  EXPECT_EQ(toString(ProductType::consumable), "Consumable");
  EXPECT_EQ(toString(ProductType::nonConsumable), "NonConsumable");
  EXPECT_EQ(toString(ProductType::nonRenewingSubscription), "NonRenewingSubscription");
  EXPECT_EQ(toString(ProductType::autoRenewableSubscription), "RecurringSubscription");
}

}  // namespace
}  // namespace StoreKit::tests
