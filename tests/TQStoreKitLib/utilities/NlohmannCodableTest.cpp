#include "TQStoreKitLib/utilities/NlohmannCodable.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "platform/Foundation/JSONDecoder.hpp"
#include "platform/Foundation/JSONEncoder.hpp"

namespace shop {

// Types that have nlohmann's conversions and know nothing of codable types.
struct Item {
  std::string name;
  double price = 0;
  friend bool operator==(const Item&, const Item&) = default;
};
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Item, name, price)

enum class Size { small, large };
NLOHMANN_JSON_SERIALIZE_ENUM(Size, {{Size::small, "small"}, {Size::large, "large"}})

struct Everything {
  nlohmann::json json;
};
void to_json(nlohmann::json& json, const Everything& everything) { json = everything.json; }
void from_json(const nlohmann::json& json, Everything& everything) { everything.json = json; }

struct Throwing {};
void to_json(nlohmann::json&, const Throwing&) { throw std::runtime_error("not to JSON"); }
void from_json(const nlohmann::json&, Throwing&) { throw std::runtime_error("not from JSON"); }

}  // namespace shop

namespace Foundation {
namespace {

struct Basket {
  std::vector<shop::Item> items;
  shop::Size size = shop::Size::small;
};
template <class Coder>
void codableFields(Coder& coder, Basket& basket) {
  coder("items", basket.items)("size", basket.size);
}

template <class T>
std::string json(const T& value) {
  const auto encoding = JSONEncoder().encode(value);
  return encoding.data ? std::string(textInData(*encoding.data))
                       : encoding.error->localizedDescription();
}

template <class T>
std::string problem(std::string_view json) {
  return JSONDecoder().decode<T>(json).error->localizedDescription();
}

TEST(NlohmannCodable, MakesTypesWithConversionsCodable) {
  EXPECT_EQ(json(shop::Item{"gem", 0.1}), R"({"name":"gem","price":0.1})");
  EXPECT_EQ(JSONDecoder().decode<shop::Item>(R"({"price":2,"name":"gem"})").value,
            (shop::Item{"gem", 2}));
}

TEST(NlohmannCodable, MixesWithTypesThatSayTheirFields) {
  const Basket basket = {{{"gem", 1}}, shop::Size::large};
  EXPECT_EQ(json(basket), R"({"items":[{"name":"gem","price":1}],"size":"large"})");
  EXPECT_EQ(JSONDecoder().decode<Basket>(json(basket)).value->size, shop::Size::large);
}

TEST(NlohmannCodable, CarriesEveryKindOfValue) {
  const std::string text =
      R"({"b":true,"d":0.5,"i":-5,"l":[1,[],{}],"n":null,"t":"é","u":18446744073709551615})";
  EXPECT_EQ(json(*JSONDecoder().decode<shop::Everything>(text).value), text);
}

TEST(NlohmannCodable, NamesThePathToWhatAConversionRefuses) {
  EXPECT_EQ(problem<Basket>(R"({"items":[{"name":1,"price":1}],"size":"small"})"),
            "items[0]: [json.exception.type_error.302] type must be string, but is number");
  EXPECT_EQ(json(std::vector<shop::Throwing>(1)), "[0]: not to JSON");
  EXPECT_EQ(problem<shop::Throwing>("1"), "not from JSON");
}

TEST(NlohmannCodable, RefusesWhatJSONDoesNotHave) {
  EXPECT_EQ(json(shop::Everything{std::numeric_limits<double>::infinity()}),
            "inf is not a JSON number");
  EXPECT_EQ(json(shop::Everything{nlohmann::json::binary({1})}), "the value is none that JSON has");
}

TEST(NlohmannCodable, LeavesOtherTypesAsTheyAre) {
  EXPECT_EQ(json(Date::sinceEpoch(978307200)), "0");
  EXPECT_EQ(json(dataFromText("f")), "\"Zg==\"");
  EXPECT_EQ(json(std::vector<std::optional<int>>{1, std::nullopt}), "[1,null]");
}

}  // namespace
}  // namespace Foundation
