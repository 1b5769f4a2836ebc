#include <gtest/gtest.h>

#include "tests/tools/ToolRun.hpp"

namespace {

using Json = nlohmann::ordered_json;

class ProductsCommand : public testing::Test {
 protected:
  ToolRun products(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), {"--config", shop_.path(), "products"});
    return runTool(arguments);
  }
  ToolRun productsAsJson(std::vector<std::string> arguments = {}) const {
    arguments.insert(arguments.begin(), "--json");
    return products(std::move(arguments));
  }

  TemporaryFile shop_{shopConfiguration()};
};

TEST_F(ProductsCommand, ListsTheProductsInTheOrderOfTheFile) {
  std::vector<std::string> identifiers;
  for (const auto& line : productsAsJson().json()) identifiers.push_back(line["productIdentifier"]);

  EXPECT_EQ(identifiers, (std::vector<std::string>{"gems", "levels", "pass", "club"}));
}

TEST_F(ProductsCommand, ShowsEveryFieldOfASubscription) {
  const auto run = productsAsJson({"club"});

  const auto expected = Json::parse(R"({
    "productIdentifier": "club", "type": "RecurringSubscription",
    "localizedTitle": "", "localizedDescription": "",
    "price": "29.99", "priceLocale": "en_US@currency=BRL", "currency": "BRL",
    "subscriptionPeriod": {"unit": "year", "numberOfUnits": 1},
    "subscriptionGroupIdentifier": "G1",
    "introductoryPrice": {"identifier": null, "type": "introductory", "price": "0",
      "paymentMode": "freeTrial", "numberOfPeriods": 1,
      "subscriptionPeriod": {"unit": "week", "numberOfUnits": 2}},
    "discounts": [{"identifier": "back", "type": "subscription", "price": "9.99",
      "paymentMode": "payAsYouGo", "numberOfPeriods": 3,
      "subscriptionPeriod": {"unit": "month", "numberOfUnits": 1}}],
    "isFamilyShareable": false})");
  EXPECT_EQ(run.output, expected.dump() + "\n");
  EXPECT_EQ(run.exitStatus, 0);
}

TEST_F(ProductsCommand, ShowsNullForWhatAConsumableDoesNotHave) {
  const auto gems = productsAsJson({"gems"}).json().at(0);

  EXPECT_TRUE(gems["subscriptionPeriod"].is_null());
  EXPECT_TRUE(gems["subscriptionGroupIdentifier"].is_null());
  EXPECT_TRUE(gems["introductoryPrice"].is_null());
  EXPECT_EQ(gems["discounts"], Json::array());
}

TEST_F(ProductsCommand, NamesUnknownIdentifiersAndExitsWithOne) {
  const auto run = productsAsJson({"nope", "gems"});

  ASSERT_EQ(run.lines().size(), 2U);
  EXPECT_EQ(run.json()[0]["productIdentifier"], "gems");
  EXPECT_EQ(run.lines()[1], R"({"invalidProductIdentifier":"nope"})");
  EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(ProductsCommand, NamesUnknownIdentifiersToAPersonOnStandardError) {
  const auto run = products({"nope"});

  EXPECT_EQ(run.output, "");
  EXPECT_EQ(run.errors, "tqstore: the store does not know the product \"nope\"\n");
  EXPECT_EQ(run.exitStatus, 1);
}

TEST_F(ProductsCommand, ShowsAPersonPricesWithTheirCurrency) {
  const auto run = products();

  ASSERT_EQ(run.lines().size(), 5U);
  EXPECT_NE(run.lines()[1].find("0.99 BRL"), std::string::npos);
  EXPECT_NE(run.lines()[4].find("29.99 BRL  / year"), std::string::npos);
}

TEST_F(ProductsCommand, WritesNoColourWhenThereIsNoTerminal) {
  EXPECT_EQ(products().output.find('\033'), std::string::npos);
}

TEST_F(ProductsCommand, MakesControlCharactersOfANameVisible) {
  const TemporaryFile file(R"({"products": [{"productID": "a", "type": "Consumable",
    "displayPrice": "1", "localizations": [{"locale": "en_US", "displayName": "x\u001b[2Jy",
    "description": ""}]}]})");

  const auto run = runTool({"--config", file.path(), "products"});

  EXPECT_EQ(run.output.find('\033'), std::string::npos);
  EXPECT_NE(run.output.find("x\\x1b[2Jy"), std::string::npos);
}

TEST_F(ProductsCommand, AnEmptyCatalogueIsSaidAndIsNoFailure) {
  const TemporaryFile empty(R"({"products": []})");

  const auto run = runTool({"--config", empty.path(), "products"});

  EXPECT_EQ(run.errors, "tqstore: the configuration has no products\n");
  EXPECT_EQ(run.exitStatus, 0);
}

}  // namespace
