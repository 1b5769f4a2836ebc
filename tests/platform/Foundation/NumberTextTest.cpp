#include "platform/Foundation/NumberText.hpp"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "tests/fakes/TemporaryFolder.hpp"

namespace Foundation {
namespace {

using namespace std::string_view_literals;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(DoubleFromText, ReadsPlainNumbers) {
  EXPECT_EQ(doubleFromText("12"), 12);
  EXPECT_EQ(doubleFromText("-12.5"), -12.5);
  EXPECT_EQ(doubleFromText("+1"), 1);
  EXPECT_EQ(doubleFromText(".5"), 0.5);
  EXPECT_EQ(doubleFromText("5."), 5);
  EXPECT_EQ(doubleFromText("1.5e12"), 1.5e12);
  EXPECT_EQ(doubleFromText("1E-2"), 0.01);
}

TEST(DoubleFromText, KeepsTheSignOfZero) { EXPECT_TRUE(std::signbit(*doubleFromText("-0"))); }

TEST(DoubleFromText, ReadsHexadecimalNumbers) {
  EXPECT_EQ(doubleFromText("0x1p10"), 1024);
  EXPECT_EQ(doubleFromText("-0X.8p1"), -1);
  EXPECT_EQ(doubleFromText("0xff"), 255);
}

TEST(DoubleFromText, ReadsWhatIsNotFinite) {
  EXPECT_EQ(doubleFromText("inf"), kInfinity);
  EXPECT_EQ(doubleFromText("-Infinity"), -kInfinity);
  EXPECT_TRUE(std::isnan(doubleFromText("nan").value()));
  EXPECT_TRUE(std::isnan(doubleFromText("NAN(123)").value()));
}

TEST(DoubleFromText, GoesToTheEndsOfItsRange) {
  EXPECT_EQ(doubleFromText("1e400"), kInfinity);
  EXPECT_EQ(doubleFromText("-1e400"), -kInfinity);
  EXPECT_EQ(doubleFromText("1e-400"), 0);
  EXPECT_EQ(doubleFromText("5e-324"), 5e-324);
}

TEST(DoubleFromText, RefusesBlanksAtEitherEnd) {
  for (const auto text : {" 1", "1 ", "\t1", "\n1", "\v1", "\f1", "\r1", "1\n"}) {
    EXPECT_EQ(doubleFromText(text), std::nullopt) << text;
  }
}

TEST(DoubleFromText, RefusesLeftovers) {
  for (const auto text : {"", " ", "1s", "1,5", "0x", "--1", "e5", "1e", ".", "+", "1_000", "１"}) {
    EXPECT_EQ(doubleFromText(text), std::nullopt) << text;
  }
}

TEST(DoubleFromText, RefusesANulInside) {
  EXPECT_EQ(doubleFromText("1\0"sv), std::nullopt);
  EXPECT_EQ(doubleFromText("1\0002"sv), std::nullopt);
  EXPECT_EQ(doubleFromText("\0001"sv), std::nullopt);
}

TEST(DoubleFromText, ReadsAMegabyteOfDigits) {
  const std::string digits(1'000'000, '7');
  EXPECT_EQ(doubleFromText(digits), kInfinity);
  EXPECT_EQ(doubleFromText("0." + digits), 0.7777777777777778);
}

TEST(DoubleFromText, ReadsAPartOfALongerText) {
  EXPECT_EQ(doubleFromText(std::string_view("123456").substr(1, 2)), 23);
}

TEST(TextFromDouble, IsTheShortestThatReadsBack) {
  EXPECT_EQ(textFromDouble(0.1), "0.1");
  EXPECT_EQ(textFromDouble(3), "3");
  EXPECT_EQ(textFromDouble(-0.0), "-0");
  EXPECT_EQ(textFromDouble(1.0 / 3), "0.3333333333333333");
  EXPECT_EQ(textFromDouble(5e-324), "5e-324");
  EXPECT_EQ(textFromDouble(1e21), "1e+21");
  EXPECT_EQ(textFromDouble(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
}

TEST(TextFromDouble, NamesWhatIsNotFinite) {
  EXPECT_EQ(textFromDouble(kInfinity), "inf");
  EXPECT_EQ(textFromDouble(-kInfinity), "-inf");
  EXPECT_EQ(textFromDouble(std::numeric_limits<double>::quiet_NaN()), "nan");
}

// A locale whose decimal mark is a comma: the system's, or one that is made for the test.
class NumberTextInALocale : public testing::Test {
 protected:
  NumberTextInALocale() {
    if (std::setlocale(LC_ALL, kName) != nullptr) return;
    const auto make = "localedef -i de_DE -f UTF-8 " + folder.file(kName) + " >/dev/null 2>&1";
    if (std::system(make.c_str()) != 0) return;
    ::setenv("LOCPATH", folder.path().c_str(), 1);
    std::setlocale(LC_ALL, kName);
  }
  ~NumberTextInALocale() override { std::setlocale(LC_ALL, "C"); }

  static constexpr const char* kName = "de_DE.UTF-8";
  tests::TemporaryFolder folder;
};

TEST_F(NumberTextInALocale, TheMarkIsStillAPoint) {
  if (std::localeconv()->decimal_point != std::string(",")) GTEST_SKIP() << "no such locale here";
  EXPECT_EQ(doubleFromText("1.5"), 1.5);
  EXPECT_EQ(doubleFromText("1,5"), std::nullopt);
  EXPECT_EQ(textFromDouble(1.5), "1.5");
}

}  // namespace
}  // namespace Foundation
