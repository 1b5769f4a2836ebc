#include <gtest/gtest.h>

#include "tests/tools/ToolOnLedger.hpp"
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
    "price": "29.99", "priceText": "R$29.99",
    "priceLocale": "en_US@currency=BRL", "currency": "BRL",
    "subscriptionPeriod": {"unit": "year", "numberOfUnits": 1, "text": "1 year"},
    "subscriptionGroupIdentifier": "G1",
    "introductoryPrice": {"identifier": null, "type": "introductory", "price": "0",
      "priceText": "R$0.00", "paymentMode": "freeTrial", "numberOfPeriods": 1,
      "subscriptionPeriod": {"unit": "week", "numberOfUnits": 2, "text": "2 weeks"}},
    "discounts": [{"identifier": "back", "type": "subscription", "price": "9.99",
      "priceText": "R$9.99", "paymentMode": "payAsYouGo", "numberOfPeriods": 3,
      "subscriptionPeriod": {"unit": "month", "numberOfUnits": 1, "text": "1 month"}}],
    "isFamilyShareable": false,
    "isDownloadable": false, "downloadContentLengths": [], "downloadContentVersion": ""})");
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
  EXPECT_NE(run.lines()[1].find("R$0.99"), std::string::npos);
  EXPECT_NE(run.lines()[4].find("R$29.99  1 year  R$0.00 for 2 weeks"), std::string::npos);
}

TEST_F(ProductsCommand, TheLocaleOptionReplacesTheConfigurationsForTextsAndPrices) {
  const TemporaryFile file(R"({"products": [{"productID": "a", "type": "Consumable",
    "displayPrice": "1234.5", "localizations": [
      {"locale": "en_US", "displayName": "Map", "description": ""},
      {"locale": "de", "displayName": "Karte", "description": ""}]}],
    "settings": {"_locale": "en_US", "_storefront": "DEU"}})");

  const auto run = runTool({"--config", file.path(), "--json", "--locale", "de_DE", "products"});

  EXPECT_EQ(run.json().at(0)["localizedTitle"], "Karte");
  EXPECT_EQ(run.json().at(0)["priceLocale"], "de_DE@currency=EUR");
  EXPECT_EQ(run.json().at(0)["priceText"], "1.234,50\u00a0€");
}

using ProductsOnALedger = tests::ToolOnLedger;

TEST_F(ProductsOnALedger, TheLocaleOptionIsForThisRunOnly) {
  run({"--locale", "de_DE", "products"});

  EXPECT_EQ(run({"products", "gems"}).json().at(0)["priceLocale"], "en_US@currency=BRL");
}

TEST_F(ProductsOnALedger, TheLocaleOptionWinsOverALocaleThatWasSet) {
  run({"settings", "locale", "de_DE"});

  EXPECT_EQ(run({"--locale", "fr_FR", "products", "gems"}).json().at(0)["priceLocale"],
            "fr_FR@currency=BRL");
  EXPECT_EQ(run({"products", "gems"}).json().at(0)["priceLocale"], "de_DE@currency=BRL");
}

TEST_F(ProductsOnALedger, ShowsTheContentThatIsHosted) {
  std::filesystem::create_directory(folder_.file("content"));
  tests::write(folder_.file("content/map"), "12345");
  run({"settings", "hostedContent.levels", folder_.file("content")});
  run({"settings", "hostedContentVersion.levels", "1.10"});

  const auto levels = run({"products", "levels"}).json().at(0);

  EXPECT_EQ(levels["isDownloadable"], true);
  EXPECT_EQ(levels["downloadContentLengths"], Json::array({5}));
  EXPECT_EQ(levels["downloadContentVersion"], "1.10");
  EXPECT_THAT(runForPerson({"products"}).output, testing::HasSubstr("5 bytes, version 1.10\n"));
}

TEST_F(ProductsCommand, PeriodsAreInTheUsersLanguageWhateverThePriceLocaleIs) {
  const auto run =
      runTool({"--config", shop_.path(), "--json", "--locale", "ja_JP", "products", "club"},
              {"LC_ALL=de_DE.UTF-8"});

  EXPECT_EQ(run.json().at(0)["subscriptionPeriod"]["text"], "1 Jahr");
  EXPECT_EQ(run.json().at(0)["introductoryPrice"]["subscriptionPeriod"]["text"], "2 Wochen");
}

TEST_F(ProductsCommand, AProductThatCostsNothingIsFree) {
  const TemporaryFile file(
      R"({"products": [{"productID": "a", "type": "Consumable", "displayPrice": "0"}]})");

  const auto run = runTool({"--config", file.path(), "--json", "products"});

  EXPECT_EQ(run.json().at(0)["priceText"], "Free");
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
