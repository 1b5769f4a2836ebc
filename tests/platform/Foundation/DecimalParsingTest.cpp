#include <gtest/gtest.h>

#include <locale>

#include "platform/Foundation/Decimal.hpp"

namespace Foundation {
namespace {

using namespace std::string_view_literals;

// The number's plain notation, or "absent".
std::string read(std::string_view text) {
  const auto decimal = Decimal::fromString(text);
  return decimal ? decimal->toString() : "absent";
}

TEST(Decimal, ReadsWholeNumbers) {
  EXPECT_EQ(read("12"), "12");
  EXPECT_EQ(read("0"), "0");
  EXPECT_EQ(read("100"), "100");
}

TEST(Decimal, ReadsFractions) {
  EXPECT_EQ(read("0.99"), "0.99");
  EXPECT_EQ(read("1234567.89"), "1234567.89");
  EXPECT_EQ(read("0.001"), "0.001");
}

TEST(Decimal, ReadsSigns) {
  EXPECT_EQ(read("-0.99"), "-0.99");
  EXPECT_EQ(read("+7"), "7");
}

TEST(Decimal, ReadsPointAtEitherEnd) {
  EXPECT_EQ(read("+1."), "1");
  EXPECT_EQ(read(".5"), "0.5");
  EXPECT_EQ(read("-.5"), "-0.5");
}

TEST(Decimal, ReadsExponents) {
  EXPECT_EQ(read("1.25e3"), "1250");
  EXPECT_EQ(read("1.25E3"), "1250");
  EXPECT_EQ(read("1.25e+3"), "1250");
  EXPECT_EQ(read("1.25e-3"), "0.00125");
  EXPECT_EQ(read("5e0"), "5");
}

TEST(Decimal, ZerosAroundTheDigitsCarryNoMeaning) {
  EXPECT_EQ(read("007"), "7");
  EXPECT_EQ(read("1.50"), "1.5");
  EXPECT_EQ(read("0.000e5"), "0");
}

TEST(Decimal, NegativeZeroIsZero) {
  const auto zero = Decimal::fromString("-0.00");
  ASSERT_TRUE(zero);
  EXPECT_TRUE(zero->isZero());
  EXPECT_FALSE(zero->isNegative());
  EXPECT_EQ(*zero, Decimal());
  EXPECT_EQ(zero->toString(), "0");
}

TEST(Decimal, WithoutADigitIsAbsent) {
  for (const auto text : {"", "+", "-", ".", "-.", "e3", ".e3", "+e"}) {
    EXPECT_EQ(read(text), "absent") << text;
  }
}

TEST(Decimal, WithBlanksIsAbsent) {
  for (const auto text : {" 1", "1 ", "1\n", "\t1", "1 000", "- 1", " "}) {
    EXPECT_EQ(read(text), "absent") << text;
  }
}

TEST(Decimal, WithGarbageIsAbsent) {
  for (const auto text : {"abc", "1x", "0x10", "1,5", "1.2.3", "--1", "+-1", "$1", "1%", "NaN",
                          "inf", "1_000", "1'000", "١"}) {
    EXPECT_EQ(read(text), "absent") << text;
  }
}

TEST(Decimal, WithABrokenExponentIsAbsent) {
  for (const auto text : {"1e", "1e+", "1e-", "1e--3", "1e+-3", "1e3.5", "1e 3", "1e3x", "1ee3"}) {
    EXPECT_EQ(read(text), "absent") << text;
  }
}

TEST(Decimal, WithAZeroByteInsideIsAbsent) {
  EXPECT_EQ(read("1\0"sv), "absent");
  EXPECT_EQ(read("1\0002"sv), "absent");
  EXPECT_EQ(read("\0001"sv), "absent");
}

TEST(Decimal, HoldsThirtyEightDigits) {
  const std::string digits(38, '9');
  EXPECT_EQ(read(digits), digits);
  EXPECT_EQ(read("0." + digits), "0." + digits);
}

TEST(Decimal, WithThirtyNineDigitsIsAbsent) {
  EXPECT_EQ(read(std::string(39, '9')), "absent");
  EXPECT_EQ(read("0." + std::string(39, '9')), "absent");
}

TEST(Decimal, ZerosDoNotCountAsDigits) {
  EXPECT_EQ(read("1" + std::string(60, '0')), "1" + std::string(60, '0'));
  EXPECT_EQ(read(std::string(60, '0') + "1"), "1");
  EXPECT_EQ(read("0." + std::string(60, '0') + "1"), "0." + std::string(60, '0') + "1");
}

TEST(Decimal, GreatestExponentIsHundredTwentySeven) {
  const std::string digits(38, '9');
  EXPECT_EQ(read(digits + "e127"), digits + std::string(127, '0'));
  EXPECT_EQ(read(digits + "e128"), "absent");
  EXPECT_EQ(read("1e164"), "1" + std::string(164, '0'));
  EXPECT_EQ(read("1e165"), "absent");
}

TEST(Decimal, LeastExponentIsMinusHundredTwentyEight) {
  EXPECT_EQ(read("1e-128"), "0." + std::string(127, '0') + "1");
  EXPECT_EQ(read("1e-129"), "absent");
  EXPECT_EQ(read("1.5e-127"), "0." + std::string(126, '0') + "15");
  EXPECT_EQ(read("1.5e-128"), "absent");
}

TEST(Decimal, WithAnExponentThatNoIntegerHoldsIsAbsent) {
  EXPECT_EQ(read("1e99999999999999999999"), "absent");
  EXPECT_EQ(read("1e-99999999999999999999"), "absent");
  EXPECT_EQ(read("1e2147483647"), "absent");
  EXPECT_EQ(read("1e-2147483647"), "absent");
}

TEST(Decimal, ZeroFitsWithAnyExponent) {
  EXPECT_EQ(read("0e2147483647"), "0");
  EXPECT_EQ(read("0e99999999999"), "0");
}

TEST(Decimal, PointIsAPointWhateverTheLocale) {
  struct Comma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };
  const auto before = std::locale::global(std::locale(std::locale::classic(), new Comma));
  const auto whole = read("1234.5");
  const auto comma = read("1,5");
  std::locale::global(before);
  EXPECT_EQ(whole, "1234.5");
  EXPECT_EQ(comma, "absent");
}

TEST(Decimal, ConvertsEveryInt) {
  EXPECT_EQ(Decimal(0).toString(), "0");
  EXPECT_EQ(Decimal(1200).toString(), "1200");
  EXPECT_EQ(Decimal(std::numeric_limits<int>::min()).toString(), "-2147483648");
  EXPECT_EQ(Decimal(std::numeric_limits<int>::max()).toString(), "2147483647");
}

}  // namespace
}  // namespace Foundation
