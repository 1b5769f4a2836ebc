#include "platform/Foundation/JSONDecoder.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace Foundation {
namespace {

template <class T>
std::optional<T> value(std::string_view json) {
  return JSONDecoder().decode<T>(json).value;
}

template <class T>
std::string problem(std::string_view json) {
  const auto decoding = JSONDecoder().decode<T>(json);
  EXPECT_NE(decoding.value.has_value(), decoding.error.has_value());
  return decoding.error ? decoding.error->localizedDescription() : "";
}

struct Player {
  std::string name;
  int level = 0;
};
template <class Coder>
void codableFields(Coder& coder, Player& player) {
  coder("name", player.name)("level", player.level);
}

struct Team {
  std::vector<Player> players;
};
template <class Coder>
void codableFields(Coder& coder, Team& team) {
  coder("players", team.players);
}

struct Even {
  int number = 0;
};

}  // namespace

template <>
struct Codable<Even> {
  static void encode(Encoder& encoder, const Even& even) { encoder.integer(even.number); }
  static void decode(Decoder& decoder, Even& even) {
    decoder.value(even.number);
    if (even.number % 2 != 0) throw std::runtime_error("is odd");
  }
};

namespace {

TEST(JSONDecoder, ReadsPlainValuesAtTheTop) {
  EXPECT_EQ(value<bool>("true"), true);
  EXPECT_EQ(value<int>(" -5 "), -5);
  EXPECT_EQ(value<double>("0.5"), 0.5);
  EXPECT_EQ(value<std::string>("\"a\\n\""), "a\n");
}

TEST(JSONDecoder, ReadsIntegersToTheirLimits) {
  EXPECT_EQ(value<std::int8_t>("-128"), -128);
  EXPECT_EQ(value<std::uint8_t>("255"), 255);
  EXPECT_EQ(value<std::int64_t>("-9223372036854775808"), INT64_MIN);
  EXPECT_EQ(value<std::int64_t>("9223372036854775807"), INT64_MAX);
  EXPECT_EQ(value<std::uint64_t>("18446744073709551615"), UINT64_MAX);
}

TEST(JSONDecoder, RefusesIntegersThatDoNotFit) {
  EXPECT_EQ(problem<std::int8_t>("128"),
            "expected an integer from -128 to 127, found another number");
  EXPECT_EQ(problem<std::uint8_t>("-1"), "expected an integer from 0 to 255, found another number");
  EXPECT_FALSE(value<std::uint8_t>("256"));
  EXPECT_FALSE(value<std::int64_t>("9223372036854775808"));
  EXPECT_FALSE(value<std::int64_t>("1e19"));
  EXPECT_FALSE(value<std::uint64_t>("18446744073709551616"));
  EXPECT_FALSE(value<std::uint64_t>("-1"));
}

TEST(JSONDecoder, ReadsAnyNotationOfAnInteger) {
  EXPECT_EQ(value<int>("3.0"), 3);
  EXPECT_EQ(value<int>("3e2"), 300);
  EXPECT_EQ(value<unsigned>("-0"), 0U);
  EXPECT_EQ(value<std::uint64_t>("1e19"), 10000000000000000000U);
  EXPECT_FALSE(value<int>("3.5"));
}

TEST(JSONDecoder, ReadsNumbersOfAllKindsAsFloating) {
  EXPECT_EQ(value<double>("3"), 3.0);
  EXPECT_EQ(value<double>("18446744073709551615"), 0x1p64);
  EXPECT_EQ(value<double>("1e300"), 1e300);
  EXPECT_EQ(value<float>("0.1"), 0.1F);
}

TEST(JSONDecoder, RefusesNumbersBeyondTheType) {
  EXPECT_EQ(problem<float>("1e300"), "the number is beyond 3.4028234663852886e+38");
  EXPECT_FALSE(value<double>("1e400"));
  EXPECT_FALSE(value<float>("-1e39"));
}

TEST(JSONDecoder, ReadsDatesFromSecondsSinceTheReferenceDate) {
  EXPECT_EQ(value<Date>("0"), Date::sinceEpoch(978307200));
  EXPECT_EQ(value<Date>("-978307200.5"), Date::sinceEpoch(-0.5));
}

TEST(JSONDecoder, ReadsBytesFromBase64) {
  EXPECT_EQ(value<Data>(R"("++\/\/Pw==")"), dataFromText("\xFB\xEF\xFF?"));
  EXPECT_EQ(problem<Data>("\"***\""), "the text is not base 64");
}

TEST(JSONDecoder, ReadsOptionalValues) {
  EXPECT_EQ(value<std::optional<int>>("null"), std::optional<std::optional<int>>(std::in_place));
  EXPECT_EQ(value<std::optional<int>>("5"), 5);
}

TEST(JSONDecoder, ReadsListsInTheirOrder) {
  EXPECT_EQ(value<std::vector<int>>("[1,2,1]"), (std::vector<int>{1, 2, 1}));
  EXPECT_EQ(value<std::vector<int>>("[]"), std::vector<int>());
  EXPECT_EQ(value<std::vector<bool>>("[true,false]"), (std::vector<bool>{true, false}));
  EXPECT_EQ(value<std::vector<std::vector<int>>>("[[],[1]]"),
            (std::vector<std::vector<int>>{{}, {1}}));
}

TEST(JSONDecoder, ReadsMaps) {
  using Map = std::map<std::string, int>;
  EXPECT_EQ(value<Map>(R"({"b":2,"a":1})"), (Map{{"a", 1}, {"b", 2}}));
  EXPECT_EQ(value<Map>(R"({"a":1,"a":2})"), (Map{{"a", 2}}));
  EXPECT_EQ((value<std::unordered_map<std::string, int>>("{}")->size()), 0U);
}

TEST(JSONDecoder, SaysWhatItExpectedAndWhatItFound) {
  EXPECT_EQ(problem<int>("\"5\""), "expected an integer, found text");
  EXPECT_EQ(problem<int>("true"), "expected an integer, found a boolean");
  EXPECT_EQ(problem<bool>("1"), "expected a boolean, found a number");
  EXPECT_EQ(problem<double>("null"), "expected a number, found null");
  EXPECT_EQ(problem<std::string>("[]"), "expected text, found a list");
  EXPECT_EQ(problem<std::vector<int>>("{}"), "expected a list, found an object");
  EXPECT_EQ(problem<Player>("[]"), "expected an object, found a list");
}

TEST(JSONDecoder, NamesThePathToTheField) {
  EXPECT_EQ(problem<Team>(R"({"players":[{"name":"a","level":1},{"name":"b","level":"x"}]})"),
            "players[1].level: expected an integer, found text");
}

TEST(JSONDecoder, NamesThePathToAMissingField) {
  EXPECT_EQ(problem<Team>(R"({"players":[{"name":"a"}]})"), "players[0].level: is missing");
  EXPECT_EQ(problem<Team>("{}"), "players: is missing");
}

TEST(JSONDecoder, NamesThePathBehindAnEarlierListAsWell) {
  using Lists = std::map<std::string, std::vector<int>>;
  EXPECT_EQ(problem<Lists>(R"({"a":[1,2],"b":[3,null]})"), "b[1]: expected an integer, found null");
}

TEST(JSONDecoder, SaysThatTheTextIsNoJSON) {
  EXPECT_EQ(problem<int>(""), "the text is empty");
  EXPECT_EQ(problem<int>("1,2"), "the text goes on behind the value");
  EXPECT_EQ(problem<Team>(R"({"players":[{"name":"a" "level":1}]})").substr(0, 28),
            "players[0].name: not JSON: T");
}

TEST(JSONDecoder, ChecksTheTextBehindTheLastField) {
  EXPECT_FALSE(value<Player>(R"({"name":"a","level":1,"more":[1,}])"));
  EXPECT_FALSE(value<Player>(R"({"name":"a","level":1,"more":tru})"));
  EXPECT_FALSE(value<Player>(R"({"name":"a","level":1}})"));
}

TEST(JSONDecoder, ReportsThePlatformsErrorCode) {
  const auto error = JSONDecoder().decode<int>("x").error;
  EXPECT_EQ(error->domain(), "NSCocoaErrorDomain");
  EXPECT_EQ(error->code(), 4864);
}

TEST(JSONDecoder, FailsWhenAConversionThrows) {
  EXPECT_EQ(problem<std::vector<Even>>("[2,3]"), "[1]: is odd");
  EXPECT_EQ(value<Even>("4")->number, 4);
}

TEST(JSONDecoder, ReadsBytesAsText) {
  EXPECT_EQ(JSONDecoder().decode<int>(dataFromText("7")).value, 7);
}

TEST(JSONDecoder, ReadsNothingAfterAFailure) {
  std::vector<int> level = {5};
  JSONReader reader("[true, 2]");
  Decoder decoder(reader);
  int first = 1;
  int second = 1;
  decoder.beginList();
  ASSERT_TRUE(decoder.nextElement());
  decoder.value(first);
  EXPECT_FALSE(decoder.nextElement());
  decoder.value(second);
  EXPECT_EQ(second, 1);
  EXPECT_EQ(decoder.failure(), "[0]: expected an integer, found a boolean");
}

TEST(JSONDecoder, LeavesTheValueThatItFailedAtToNobody) {
  std::int64_t number = 1;
  std::string text = "as before";
  JSONReader reader("\"text\"");
  Decoder decoder(reader);
  decoder.integer(number);
  decoder.text(text);
  EXPECT_EQ(text, "as before");
}

TEST(JSONDecoder, LeavesTheNumberThatItFailedAtToNobody) {
  std::string text;
  std::int64_t number = 1;
  std::uint64_t unsignedNumber = 1;
  double floating = 1;
  JSONNumber any = std::int64_t{1};
  JSONReader reader("7");
  Decoder decoder(reader);
  decoder.text(text);
  decoder.integer(number);
  decoder.unsignedInteger(unsignedNumber);
  decoder.number(any);
  decoder.floating(floating, 100);
  EXPECT_EQ(any, JSONNumber(std::int64_t{1}));
  EXPECT_EQ(number, 1);
  EXPECT_EQ(unsignedNumber, 1U);
  EXPECT_EQ(floating, 1);
}

TEST(JSONDecoder, TakesNoNullAfterAFailure) {
  std::string text;
  JSONReader reader("null");
  Decoder decoder(reader);
  decoder.text(text);
  EXPECT_FALSE(decoder.takeNull());
}

}  // namespace
}  // namespace Foundation
