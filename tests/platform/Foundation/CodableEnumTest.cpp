#include <gtest/gtest.h>

#include "platform/Foundation/JSONDecoder.hpp"
#include "platform/Foundation/JSONEncoder.hpp"

namespace Foundation {
namespace {

enum class Rank { novice, knight };
constexpr auto codableCases(Rank) {
  return codedAsText<Rank>({{Rank::novice, "novice"}, {Rank::knight, "knight"}});
}

enum class Door : std::uint8_t { shut = 0, open = 200 };
constexpr auto codableCases(Door) { return codedAsNumber({Door::shut, Door::open}); }

enum class Offset : std::int64_t { back = -5, none = 0 };
constexpr auto codableCases(Offset) { return codedAsNumber({Offset::back, Offset::none}); }

class Lamp {
 public:
  enum class State { off, on };
  friend constexpr auto codableCases(State) {
    return codedAsText<State>({{State::off, "off"}, {State::on, "on"}});
  }
};

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

TEST(CodableEnum, IsItsTextWhenItSaysSo) {
  EXPECT_EQ(json(std::vector{Rank::knight, Rank::novice}), R"(["knight","novice"])");
  EXPECT_EQ(JSONDecoder().decode<Rank>("\"knight\"").value, Rank::knight);
}

TEST(CodableEnum, IsItsNumberWhenItSaysSo) {
  EXPECT_EQ(json(Door::open), "200");
  EXPECT_EQ(json(Offset::back), "-5");
  EXPECT_EQ(JSONDecoder().decode<Door>("200").value, Door::open);
  EXPECT_EQ(JSONDecoder().decode<Offset>("-5").value, Offset::back);
}

TEST(CodableEnum, CanStandInsideAClass) {
  EXPECT_EQ(json(Lamp::State::on), "\"on\"");
  EXPECT_EQ(JSONDecoder().decode<Lamp::State>("\"off\"").value, Lamp::State::off);
}

TEST(CodableEnum, RefusesTextsAndNumbersOfNoCase) {
  EXPECT_EQ(problem<Rank>("\"king\""), "\"king\" is none of the enum's cases");
  EXPECT_EQ(problem<Door>("1"), "1 is none of the enum's cases");
  EXPECT_EQ(problem<std::vector<Offset>>("[0,-4]"), "[1]: -4 is none of the enum's cases");
}

TEST(CodableEnum, RefusesTheOtherForm) {
  EXPECT_EQ(problem<Rank>("1"), "expected text, found a number");
  EXPECT_EQ(problem<Door>("\"open\""), "expected an integer, found text");
}

TEST(CodableEnum, RefusesToWriteAValueOfNoCase) {
  EXPECT_EQ(json(static_cast<Rank>(7)), "the value is none of the enum's cases");
  EXPECT_EQ(json(static_cast<Door>(7)), "the value is none of the enum's cases");
}

}  // namespace
}  // namespace Foundation
