#include "TQStoreKitLib/utilities/OptionalString.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace TQStoreKitLib {
namespace {

using namespace std::string_view_literals;

std::optional<double> seconds(std::optional<std::string_view> text) {
  const auto date = dateMs(text);
  return date ? std::optional<double>(date->timeIntervalSince1970()) : std::nullopt;
}

TEST(ValueOrEmpty, IsTheText) {
  EXPECT_EQ(valueOrEmpty(std::optional<std::string>(" a ")), " a ");
  EXPECT_EQ(valueOrEmpty("a\0b"sv), "a\0b"sv);
}

TEST(ValueOrEmpty, IsEmptyWhenThereIsNone) {
  EXPECT_EQ(valueOrEmpty(std::nullopt), "");
  EXPECT_EQ(valueOrEmpty(std::optional<std::string>()), "");
}

TEST(OptionalString, TakesWhateverConvertsToOptionalText) {
  const std::string text = "1";
  EXPECT_TRUE(valueBool("1"));
  EXPECT_TRUE(valueBool(text));
  EXPECT_TRUE(valueBool(std::string("1")));
  EXPECT_TRUE(valueBool(std::string_view(text)));
  EXPECT_TRUE(valueBool(std::optional<std::string>(text)));
  EXPECT_TRUE(valueBool(std::optional<std::string_view>(text)));
}

TEST(DateMs, CountsMillisecondsSince1970) {
  EXPECT_EQ(seconds("1500000000000"), 1500000000.0);
  EXPECT_EQ(seconds("0"), 0.0);
  EXPECT_EQ(seconds("-1000"), -1.0);
}

TEST(DateMs, KeepsMillisecondsAndTheirFractions) {
  EXPECT_EQ(seconds("1500000000123"), 1500000000123.0 / 1000.0);
  EXPECT_EQ(seconds("0.5"), 0.0005);
}

TEST(DateMs, ReadsEveryNotationOfANumber) {
  EXPECT_EQ(seconds("1.5e12"), 1500000000.0);
  EXPECT_EQ(seconds("+1"), 0.001);
  EXPECT_EQ(seconds(".5"), 0.0005);
  EXPECT_EQ(seconds("5."), 0.005);
  EXPECT_EQ(seconds("0x1p10"), 1.024);
}

TEST(DateMs, ReadsWhatIsNotFinite) {
  EXPECT_TRUE(std::isnan(*seconds("nan")));
  EXPECT_EQ(seconds("inf"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(seconds("1e400"), std::numeric_limits<double>::infinity());
}

TEST(DateMs, IsAbsentForWhatIsNoNumber) {
  EXPECT_EQ(seconds(std::nullopt), std::nullopt);
  for (const auto text : {""sv, " 1500000000000"sv, "1500000000000 "sv, "1500000000000ms"sv,
                          "1,5"sv, "1\0"sv, "\0"sv, "today"sv}) {
    EXPECT_EQ(seconds(text), std::nullopt) << text;
  }
}

TEST(ValueBool, IsTrueForFourWordsInAnyCase) {
  for (const auto text : {"1", "true", "TRUE", "True", "yes", "Yes", "YES", "ok", "oK", "OK"}) {
    EXPECT_TRUE(valueBool(text)) << text;
  }
}

TEST(ValueBool, IsFalseForEverythingElse) {
  EXPECT_FALSE(valueBool(std::nullopt));
  for (const auto text : {""sv, "0"sv, "false"sv, "no"sv, "y"sv, "on"sv, "2"sv, "t"sv, "1.0"sv,
                          "true1"sv, "okay"sv, "ok\0"sv, "１"sv}) {
    EXPECT_FALSE(valueBool(text)) << text;
  }
}

TEST(ValueBool, TrimsNoBlanks) {
  for (const auto text : {" yes", "yes ", "ok\n", "\t1"}) EXPECT_FALSE(valueBool(text)) << text;
}

TEST(ValueBool, LowersTheCaseAsUnicodeDoes) {
  EXPECT_TRUE(valueBool("O\u212A"));  // the Kelvin sign is a k
  EXPECT_FALSE(valueBool("İ"));
  EXPECT_FALSE(valueBool("yeß"));
}

TEST(ValueBool, IsFalseForWhatIsNoUTF8) { EXPECT_FALSE(valueBool("ok\xFF")); }

}  // namespace
}  // namespace TQStoreKitLib
