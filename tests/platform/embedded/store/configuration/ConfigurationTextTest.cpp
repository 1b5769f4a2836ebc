#include <gtest/gtest.h>

#include "tests/platform/embedded/store/configuration/ConfigurationTexts.hpp"

namespace StoreKit::tests {
namespace {

std::string repeated(std::string_view part, std::size_t count) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) result += part;
  return result;
}

TEST(ConfigurationText, OfBlanksAloneIsRefusedAsEmpty) {
  EXPECT_TRUE(isRefusedWith(parse(" \t\r\n"), "", "is empty"));
}

TEST(ConfigurationText, OfAByteOrderMarkAloneIsRefusedAsEmpty) {
  EXPECT_TRUE(isRefusedWith(parse("\xEF\xBB\xBF\n"), "", "is empty"));
}

TEST(ConfigurationText, ByteOrderMarkIsSkipped) {
  EXPECT_TRUE(isReadWith(parse("\xEF\xBB\xBF" + textWithProduct("")), ""));
}

TEST(ConfigurationText, WithAnotherTopLevelThanAnObjectIsRefused) {
  EXPECT_TRUE(isRefusedWith(parse("[]"), "", "expected an object, found a list"));
  EXPECT_TRUE(isRefusedWith(parse("7"), "", "expected an object, found a number"));
  EXPECT_TRUE(isRefusedWith(parse("null"), "", "expected an object, found null"));
}

TEST(ConfigurationText, TruncatedOneIsRefusedWhereItEnds) {
  EXPECT_TRUE(isRefusedWith(parse("{\n  \"products\": ["), "line 2, column 15",
                            "is not JSON: the text ends too early"));
}

TEST(ConfigurationText, ErrorIsPlacedByLineAndColumn) {
  EXPECT_TRUE(isRefusedWith(parse("{\r\n  \"products\" : [ ],\r\n  \"a\" 7\r\n}"),
                            "line 3, column 7",
                            "is not JSON: unexpected number literal; expected ':'"));
}

TEST(ConfigurationText, ColumnsAreCountedInCharacters) {
  EXPECT_EQ(parse(R"({"ä¥" 7})").problems.at(0).place, "line 1, column 7");
}

TEST(ConfigurationText, ErrorAtALineEndIsPlacedInThatLine) {
  EXPECT_EQ(parse("{\"a\n\": 1}").problems.at(0).place, "line 1, column 4");
}

TEST(ConfigurationText, CommentsAreRefused) {
  EXPECT_FALSE(parse("{} // shop").configuration);
  EXPECT_FALSE(parse("{ /* shop */ }").configuration);
}

TEST(ConfigurationText, TrailingCommasAreRefused) {
  EXPECT_FALSE(parse(R"({"products": [],})").configuration);
  EXPECT_FALSE(parse(R"({"products": [{},]})").configuration);
}

TEST(ConfigurationText, AnythingAfterTheObjectIsRefused) {
  EXPECT_FALSE(parse("{}}").configuration);
  EXPECT_FALSE(parse("{} {}").configuration);
  EXPECT_FALSE(parse(std::string_view("{}\0garbage", 10)).configuration);
}

TEST(ConfigurationText, ZeroByteIsRefused) {
  EXPECT_TRUE(isRefusedWith(parse(std::string_view("{\n\0}", 4)), "line 2, column 1",
                            "is not UTF-8 text: there is a zero byte"));
}

TEST(ConfigurationText, InvalidUtf8IsRefused) {
  EXPECT_TRUE(isRefusedWith(parse("{\"a\": \"\xC3\x28\"}"), "line 1, column 9",
                            "is not JSON: invalid string: ill-formed UTF-8 byte"));
}

TEST(ConfigurationText, LoneSurrogateIsRefused) {
  EXPECT_FALSE(parse(R"({"a": "\ud800"})").configuration);
}

TEST(ConfigurationText, DeepNestingIsRefusedEvenInWhatIsNotRead) {
  const auto text = R"({"x":)" + repeated("[", 128) + repeated("]", 128) + "}";
  EXPECT_TRUE(isRefusedWith(parse(text), "", "is nested deeper than 128 levels"));
}

TEST(ConfigurationText, NestingUpToTheLimitIsRead) {
  const auto text = R"({"x":)" + repeated("[", 127) + repeated("]", 127) + "}";
  EXPECT_TRUE(isReadWith(parse(text), ""));
}

TEST(ConfigurationText, SixtyMegabytesOfBracketsAreRefused) {
  EXPECT_TRUE(
      isRefusedWith(parse(std::string(60'000'000, '[')), "", "is nested deeper than 128 levels"));
}

TEST(ConfigurationText, MoreValuesThanTheLimitAreRefused) {
  EXPECT_TRUE(isRefusedWith(parse(R"({"x":[)" + repeated("0,", 4'000'000) + "0]}"), "",
                            "holds more than 4000000 values"));
}

TEST(ConfigurationText, UnknownKeysAreIgnoredAtEveryLevel) {
  const auto reading = parse(R"({"a":1,"products":[{"b":[{}],"productID":"gems","type":)"
                             R"("Consumable","displayPrice":"1","localizations":[{"c":null,)"
                             R"("locale":"ja"}]}],"settings":{"d":{}},"version":"9.9"})");
  EXPECT_TRUE(isReadWith(reading, ""));
}

TEST(ConfigurationText, RepeatedKeyKeepsTheFirstAndIsReported) {
  const auto reading = parse(R"({"products":[{"productID":"a","type":"Consumable",)"
                             R"("displayPrice":"1","displayPrice":"2","displayPrice":"3"}]})");
  ASSERT_EQ(reading.problems.size(), 1U);
  EXPECT_EQ(reading.problems[0].description(),
            "shop.storekit: /products/0: has the key \"displayPrice\" more than once; the first "
            "one counts");
  EXPECT_EQ(reading.configuration->products.at(0).displayPrice, Foundation::Decimal(1));
}

TEST(ConfigurationText, ProblemsAreInTheOrderOfTheFile) {
  const auto reading = parse(R"({"settings":{"_timeRate":14},"nonRenewingSubscriptions":[{}],)"
                             R"("products":[{}]})");
  EXPECT_EQ(problemsOf(reading),
            "/settings/_timeRate: 14 is no time rate; read as 0, real time\n"
            "/nonRenewingSubscriptions/0: has no productID; left out\n"
            "/products/0: has no productID; left out\n");
}

TEST(ConfigurationText, LongTextsAreShortenedInMessages) {
  const auto reading = parse(textWithProduct(R"("displayPrice":")" + repeated("é", 1000) + "\","));
  EXPECT_EQ(problemsOf(reading), "/products/0/displayPrice: the price \"" + repeated("é", 30) +
                                     "...\" has no number; left out\n");
}

TEST(ConfigurationText, ControlCharactersDoNotReachMessages) {
  const auto reading = parse(textWithProduct(R"("displayPrice":"\u001b[2J\n",)"));
  EXPECT_EQ(problemsOf(reading).find('\x1b'), std::string::npos);
}

TEST(ConfigurationText, PointerEscapesTheKeysThatNeedIt) {
  const auto reading = parse(R"({"a/b~c":[{"productID":"x"}]})");
  EXPECT_EQ(reading.problems.at(0).place, "/a~1b~0c");
}

}  // namespace
}  // namespace StoreKit::tests
