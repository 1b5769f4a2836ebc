#include "platform/Foundation/JSONValue.hpp"

#include <gtest/gtest.h>

namespace Foundation {
namespace {

using Case = JSONValue::Case;

TEST(JSONValue, IsNullAtFirst) {
  EXPECT_TRUE(JSONValue().isNull());
  EXPECT_EQ(JSONValue(nullptr), JSONValue());
}

TEST(JSONValue, TellsABooleanFromANumber) {
  EXPECT_EQ(JSONValue(true).tag(), Case::boolean);
  EXPECT_EQ(JSONValue(1).tag(), Case::integer);
  EXPECT_FALSE(JSONValue(true) == JSONValue(1));
}

TEST(JSONValue, KeepsIntegersOfAllTypes) {
  EXPECT_EQ(*JSONValue(-7).asInteger(), -7);
  EXPECT_EQ(*JSONValue(static_cast<short>(-7)).asInteger(), -7);
  EXPECT_EQ(*JSONValue(7U).asInteger(), 7);
  EXPECT_EQ(*JSONValue(INT64_MIN).asInteger(), INT64_MIN);
  EXPECT_EQ(*JSONValue(UINT64_MAX).asUnsignedInteger(), UINT64_MAX);
}

TEST(JSONValue, IsUnsignedOnlyBeyondTheSignedIntegers) {
  const auto largest = static_cast<std::uint64_t>(INT64_MAX);
  EXPECT_EQ(JSONValue(largest).tag(), Case::integer);
  EXPECT_EQ(JSONValue(largest + 1).tag(), Case::unsignedInteger);
  EXPECT_EQ(JSONValue(JSONNumber(std::uint64_t{7})).tag(), Case::integer);
}

TEST(JSONValue, AFloatingNumberStaysOne) {
  EXPECT_EQ(*JSONValue(1.5F).asFloating(), 1.5);
  EXPECT_FALSE(JSONValue(1) == JSONValue(1.0));
}

TEST(JSONValue, TakesTextOfAllKinds) {
  EXPECT_EQ(*JSONValue("a").asText(), "a");
  EXPECT_EQ(*JSONValue(std::string("a")).asText(), "a");
  EXPECT_EQ(*JSONValue(std::string_view("a")).asText(), "a");
}

TEST(JSONValue, IsMadeFromBraces) {
  const JSONValue value = JSONValue::Map{
      {"name", "Ada"}, {"level", 3}, {"tags", JSONValue::List{"a", nullptr, true, 0.5}}};
  ASSERT_EQ(value.asMap()->size(), 3U);
  const auto& tags = *value.find("tags")->asList();
  ASSERT_EQ(tags.size(), 4U);
  EXPECT_EQ(*tags[0].asText(), "a");
  EXPECT_TRUE(tags[1].isNull());
  EXPECT_TRUE(*tags[2].asBoolean());
  EXPECT_EQ(*tags[3].asFloating(), 0.5);
}

TEST(JSONValue, FindsNothingInWhatIsNoMap) {
  EXPECT_EQ(JSONValue("a").find("a"), nullptr);
  EXPECT_EQ(JSONValue(JSONValue::Map{{"a", 1}}).find("b"), nullptr);
}

TEST(JSONValue, GivesAnyNumberAsANumber) {
  EXPECT_EQ(JSONValue(7).number(), JSONNumber(std::int64_t{7}));
  EXPECT_EQ(JSONValue(UINT64_MAX).number(), JSONNumber(UINT64_MAX));
  EXPECT_EQ(JSONValue(7.5).number(), JSONNumber(7.5));
  EXPECT_EQ(JSONValue(true).number(), std::nullopt);
  EXPECT_EQ(JSONValue("7").number(), std::nullopt);
}

TEST(JSONValue, GivesNoPayloadOfAnotherCase) {
  const JSONValue value("text");
  EXPECT_EQ(value.asBoolean(), nullptr);
  EXPECT_EQ(value.asInteger(), nullptr);
  EXPECT_EQ(value.asUnsignedInteger(), nullptr);
  EXPECT_EQ(value.asFloating(), nullptr);
  EXPECT_EQ(value.asList(), nullptr);
  EXPECT_EQ(value.asMap(), nullptr);
  EXPECT_FALSE(value.isNull());
}

}  // namespace
}  // namespace Foundation
