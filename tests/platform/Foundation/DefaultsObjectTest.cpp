#include "platform/Foundation/DefaultsObject.hpp"

#include <gtest/gtest.h>

namespace Foundation {
namespace {

using Case = DefaultsObject::Case;

TEST(DefaultsObject, HoldsOneOfEightKinds) {
  EXPECT_EQ(DefaultsObject::data(dataFromText("a")).tag(), Case::data);
  EXPECT_EQ(DefaultsObject::text("a").tag(), Case::text);
  EXPECT_EQ(DefaultsObject::integer(1).tag(), Case::integer);
  EXPECT_EQ(DefaultsObject::floating(1).tag(), Case::floating);
  EXPECT_EQ(DefaultsObject::boolean(true).tag(), Case::boolean);
  EXPECT_EQ(DefaultsObject::date(Date()).tag(), Case::date);
  EXPECT_EQ(DefaultsObject::list({}).tag(), Case::list);
  EXPECT_EQ(DefaultsObject::map({}).tag(), Case::map);
}

TEST(DefaultsObject, GivesThePayloadOfItsKindOnly) {
  const auto object = DefaultsObject::integer(5);
  EXPECT_EQ(*object.asInteger(), 5);
  EXPECT_EQ(object.asData(), nullptr);
  EXPECT_EQ(object.asText(), nullptr);
  EXPECT_EQ(object.asFloating(), nullptr);
  EXPECT_EQ(object.asBoolean(), nullptr);
  EXPECT_EQ(object.asDate(), nullptr);
  EXPECT_EQ(object.asList(), nullptr);
  EXPECT_EQ(object.asMap(), nullptr);
}

TEST(DefaultsObject, MatchesWithItsPayload) {
  const auto name = [](const auto& value) { return std::string(typeid(value).name()); };
  EXPECT_EQ(DefaultsObject::floating(1).match(name), typeid(double).name());
  EXPECT_EQ(DefaultsObject::map({}).match(name), typeid(DefaultsObject::Map).name());
}

TEST(DefaultsObject, NestsAndCompares) {
  const auto list = DefaultsObject::list({DefaultsObject::text("a"), DefaultsObject::integer(1)});
  const auto map = DefaultsObject::map({{"k", list}});
  EXPECT_EQ(map, DefaultsObject::map({{"k", list}}));
  EXPECT_EQ(map.asMap()->at("k").asList()->size(), 2U);
  EXPECT_FALSE(DefaultsObject::integer(1) == DefaultsObject::floating(1));
}

}  // namespace
}  // namespace Foundation
