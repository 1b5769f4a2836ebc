#include "TQStoreKitLib/detail/TaggedUnion.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace TQStoreKitLib::tests {
namespace {

using Union = detail::TaggedUnion<int, std::string>;

Union anInt(int value) { return Union(std::in_place_index<0>, value); }
Union aText(std::string value) { return Union(std::in_place_index<1>, std::move(value)); }

TEST(TaggedUnion, IndexIsThePositionOfThePayload) {
  EXPECT_EQ(anInt(7).index(), 0U);
  EXPECT_EQ(aText("seven").index(), 1U);
}

TEST(TaggedUnion, GetGivesThePayloadThatIsHeldAndNullForTheOthers) {
  const auto text = aText("seven");

  ASSERT_NE(text.get<1>(), nullptr);
  EXPECT_EQ(*text.get<1>(), "seven");
  EXPECT_EQ(text.get<0>(), nullptr);
}

TEST(TaggedUnion, PayloadsOfOneTypeAreToldApartByPosition) {
  using Twins = detail::TaggedUnion<int, int>;
  const Twins second(std::in_place_index<1>, 7);

  EXPECT_EQ(second.get<0>(), nullptr);
  ASSERT_NE(second.get<1>(), nullptr);
  EXPECT_EQ(*second.get<1>(), 7);
}

TEST(TaggedUnion, MatchCallsOnlyTheFunctionOfThePayload) {
  int ints = 0;
  int texts = 0;

  aText("seven").match([&](int) { ++ints; }, [&](const std::string&) { ++texts; });

  EXPECT_EQ(ints, 0);
  EXPECT_EQ(texts, 1);
}

TEST(TaggedUnion, MatchReturnsWhatTheFunctionReturns) {
  const auto length = [](const std::string& text) { return static_cast<int>(text.size()); };
  const auto same = [](int value) { return value; };

  EXPECT_EQ(anInt(7).match(same, length), 7);
  EXPECT_EQ(aText("seven").match(same, length), 5);
}

TEST(TaggedUnion, MatchTakesFunctionsInAnyOrder) {
  EXPECT_EQ(anInt(7).match([](const std::string&) { return 1; }, [](int) { return 2; }), 2);
}

TEST(TaggedUnion, MatchReturnsAReferenceToThePayloadItself) {
  const auto text = aText("seven");
  const std::string other;

  const std::string& found =
      text.match([&](int) -> const std::string& { return other; },
                 [](const std::string& held) -> const std::string& { return held; });

  EXPECT_EQ(&found, text.get<1>());
}

TEST(TaggedUnion, MatchReturnsAMutableReferenceToSomethingElse) {
  int ints = 0;
  int texts = 0;

  anInt(7).match([&](int) -> int& { return ints; },
                 [&](const std::string&) -> int& { return texts; }) = 3;

  EXPECT_EQ(ints, 3);
  EXPECT_EQ(texts, 0);
}

TEST(TaggedUnion, MatchTakesFunctionsAndReturnsValuesThatOnlyMove) {
  auto number = std::make_unique<int>(40);

  const auto sum = anInt(2).match(
      [number = std::move(number)](int value) { return std::make_unique<int>(*number + value); },
      [](const std::string&) { return std::unique_ptr<int>(); });

  EXPECT_EQ(*sum, 42);
}

TEST(TaggedUnion, OneGenericFunctionServesEveryCase) {
  const auto size = [](const auto& payload) { return sizeof(payload); };

  EXPECT_EQ(anInt(7).match(size), sizeof(int));
  EXPECT_EQ(aText("seven").match(size), sizeof(std::string));
}

TEST(TaggedUnion, MatchReachesTheLastOfManyCases) {
  using Many = detail::TaggedUnion<int, double, char, std::string>;
  const Many last(std::in_place_index<3>, "end");

  const auto text = last.match([](const std::string& held) { return held; },
                               [](auto) { return std::string("another"); });

  EXPECT_EQ(text, "end");
}

TEST(TaggedUnion, CopyIsAValueOfItsOwn) {
  auto original = aText("seven");
  const auto copy = original;

  original = anInt(8);

  ASSERT_NE(copy.get<1>(), nullptr);
  EXPECT_EQ(*copy.get<1>(), "seven");
}

}  // namespace
}  // namespace TQStoreKitLib::tests
