#include <gmock/gmock.h>

#include "tests/tools/ToolRun.hpp"

namespace {

using Json = nlohmann::ordered_json;

ToolRun check(const std::vector<std::string>& files) {
  std::vector<std::string> arguments = {"--json", "check"};
  arguments.insert(arguments.end(), files.begin(), files.end());
  return runTool(arguments);
}

// A price that is read in a way of its own, and a product that is there twice.
const char* const kOdd = R"({"products": [
  {"productID": "a", "type": "Consumable", "displayPrice": "2,99"},
  {"productID": "a", "type": "Consumable", "displayPrice": "1"}]})";

TEST(CheckCommand, AGoodConfigurationHasItsProductsAndNoProblem) {
  const TemporaryFile shop(shopConfiguration());

  const auto run = check({shop.path()});

  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.errors, "");
  ASSERT_EQ(run.lines().size(), 1U);
  const auto object = run.json().at(0);
  EXPECT_EQ(object["file"], shop.path());
  EXPECT_EQ(object["readable"], true);
  EXPECT_EQ(object["problems"], Json::array());
  EXPECT_EQ(object["products"],
            Json(runTool({"--config", shop.path(), "--json", "products"}).json()));
}

TEST(CheckCommand, EveryProblemHasItsPlaceAndEndsWithOne) {
  const TemporaryFile odd(kOdd);

  const auto run = check({odd.path()});

  EXPECT_EQ(run.exitStatus, 1);
  const auto problems = run.json().at(0)["problems"];
  ASSERT_EQ(problems.size(), 2U) << run.output;
  EXPECT_EQ(problems[0]["severity"], "warning");
  EXPECT_EQ(problems[0]["place"], "/products/0/displayPrice");
  EXPECT_NE(problems[0]["message"], "");
  EXPECT_EQ(problems[1]["place"], "/products/1");
  EXPECT_EQ(run.json().at(0)["products"].size(), 1U);
}

TEST(CheckCommand, AFileThatCannotBeReadEndsWithOneAfterTheOthersWereChecked) {
  const TemporaryFile shop(shopConfiguration());

  const auto run = check({"/nowhere/x", shop.path()});

  EXPECT_EQ(run.exitStatus, 1);
  ASSERT_EQ(run.json().size(), 2U);
  EXPECT_EQ(run.json()[0]["readable"], false);
  EXPECT_EQ(run.json()[0]["problems"][0]["severity"], "error");
  EXPECT_EQ(run.json()[1]["readable"], true);
}

TEST(CheckCommand, AFileThatIsRefusedHasAllItsProblemsShown) {
  const TemporaryFile refused(R"({"products": [
    {"productID": "a", "type": "Consumable", "displayPrice": "2,99"},
    {"productID": 7}, {"type": "Consumable"}]})");

  const auto object = check({refused.path()}).json().at(0);

  EXPECT_EQ(object["readable"], false);
  std::vector<std::string> places;
  for (const auto& problem : object["problems"]) places.push_back(problem["place"]);
  EXPECT_EQ(places, (std::vector<std::string>{"/products/0/displayPrice", "/products/1/productID",
                                              "/products/2"}));
}

TEST(CheckCommand, TellsAPersonOnStandardOutput) {
  const TemporaryFile odd(kOdd);

  const auto run = runTool({"check", odd.path(), "/nowhere/x"});

  const auto lines = run.lines();
  ASSERT_EQ(lines.size(), 7U) << run.output;
  EXPECT_EQ(lines[0].rfind("warning  " + odd.path() + ": /products/0/displayPrice: ", 0), 0U);
  EXPECT_EQ(lines[2], odd.path() + ": 2 problems, 1 product, storefront USA, locale en_US");
  EXPECT_THAT(lines[4], testing::HasSubstr("$2.99"));
  EXPECT_EQ(lines[5], "error  /nowhere/x: can't be opened: No such file or directory");
  EXPECT_EQ(lines[6], "/nowhere/x: 1 problem, cannot be used");
}

TEST(CheckCommand, TheLocaleOptionChoosesTheLanguage) {
  const TemporaryFile shop(shopConfiguration());

  const auto run = runTool({"--json", "--locale", "de_DE", "check", shop.path()});

  EXPECT_EQ(run.json().at(0)["products"][0]["priceLocale"], "de_DE@currency=BRL");
}

}  // namespace
