#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "platform/Foundation/Decimal.hpp"

namespace Foundation {
namespace {

Decimal decimal(std::string_view text) { return *Decimal::fromString(text); }

TEST(Decimal, OrdersByValue) {
  std::vector<Decimal> ascending;
  for (const auto text : {"-100", "-99.5", "-1.5", "-1", "-0.15", "-0.1", "0", "0.01", "0.1",
                          "0.15", "1", "1.5", "9", "10", "99.99", "100"}) {
    ascending.push_back(decimal(text));
  }
  for (std::size_t i = 0; i < ascending.size(); ++i) {
    for (std::size_t j = 0; j < ascending.size(); ++j) {
      EXPECT_EQ(ascending[i] < ascending[j], i < j)
          << ascending[i].toString() << " < " << ascending[j].toString();
    }
  }
}

TEST(Decimal, EqualValuesInDifferentSpellingsAreEqual) {
  EXPECT_EQ(decimal("1.50"), decimal("15e-1"));
  EXPECT_EQ(decimal("100"), decimal("1e2"));
  EXPECT_EQ(decimal("+0.10"), decimal(".1"));
}

TEST(Decimal, SignTellsValuesApart) {
  EXPECT_NE(decimal("1"), decimal("-1"));
  EXPECT_TRUE(decimal("-1").isNegative());
  EXPECT_FALSE(decimal("1").isNegative());
}

TEST(Decimal, ExponentTellsValuesApart) {
  EXPECT_NE(decimal("1"), decimal("10"));
  EXPECT_NE(decimal("0.1"), decimal("0.01"));
}

TEST(Decimal, OnlyZeroIsZero) {
  EXPECT_TRUE(Decimal().isZero());
  EXPECT_TRUE(decimal("0.00").isZero());
  EXPECT_FALSE(decimal("1e-100").isZero());
}

TEST(Decimal, EqualValuesHaveEqualHashes) {
  EXPECT_EQ(decimal("1.50").hash(), decimal("15e-1").hash());
  EXPECT_EQ(decimal("-0").hash(), Decimal().hash());
}

TEST(Decimal, HashTellsCloseValuesApart) {
  EXPECT_NE(decimal("1").hash(), decimal("-1").hash());
  EXPECT_NE(decimal("1").hash(), decimal("10").hash());
}

// A number of 1 to 38 digits with the point anywhere, half of them negative.
std::string anyNumber(std::mt19937& random) {
  std::string text(1 + random() % 38, '0');
  for (auto& digit : text) digit = static_cast<char>('0' + random() % 10);
  text.insert(random() % (text.size() + 1), 1, '.');
  return (random() % 2 != 0 ? "-" : "") + text + "e" + std::to_string(int(random() % 41) - 20);
}

TEST(Decimal, EveryValueComesBackFromItsText) {
  std::mt19937 random(38);
  for (int i = 0; i < 5000; ++i) {
    const auto text = anyNumber(random);
    const auto value = decimal(text);
    EXPECT_EQ(decimal(value.toString()), value) << text;
    EXPECT_EQ(decimal(value.toString()).toString(), value.toString()) << text;
  }
}

TEST(Decimal, OrderAgreesWithWholeNumbers) {
  std::mt19937 random(7);
  for (int i = 0; i < 5000; ++i) {
    const int a = int(random() % 2001) - 1000;
    const int b = int(random() % 2001) - 1000;
    EXPECT_EQ(Decimal(a) < Decimal(b), a < b) << a << " < " << b;
    EXPECT_EQ(Decimal(a) == Decimal(b), a == b) << a << " == " << b;
  }
}

}  // namespace
}  // namespace Foundation
