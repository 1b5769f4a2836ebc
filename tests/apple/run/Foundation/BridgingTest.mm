#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "platform/Foundation/Bundle.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

NSString* platformText(const char16_t* units, NSUInteger length) {
  return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(units) length:length];
}

class TextBridging : public testing::TestWithParam<std::string> {};

TEST_P(TextBridging, LosesNothingThereAndBack) {
  EXPECT_EQ(textFrom(nativeText(GetParam())), GetParam());
}

INSTANTIATE_TEST_SUITE_P(All, TextBridging,
                         testing::Values("", "gems", "Ž ß 你好", "\U0001F48E", "\uFEFFmark",
                                         std::string("a\0b", 3), "e\u0301", "\uFFFF"));

TEST(TextBridging, MeansTheSameOnBothSides) {
  EXPECT_TRUE([nativeText("\U0001F48E") isEqual:platformText(u"\xD83D\xDC8E", 2)]);
  EXPECT_EQ(textFrom(platformText(u"\xD83D\xDC8E", 2)), "\U0001F48E");
}

TEST(TextBridging, MalformedBytesBecomeReplacements) {
  EXPECT_EQ(textFrom(nativeText("a\xFFz")), "a\uFFFDz");
}

TEST(TextBridging, UnpairedSurrogateBecomesAReplacement) {
  EXPECT_EQ(textFrom(platformText(u"a\xD83Dz", 3)), "a\uFFFDz");
}

TEST(TextBridging, TellsAbsentFromEmpty) {
  EXPECT_EQ(optionalTextFrom(nil), std::nullopt);
  EXPECT_EQ(optionalTextFrom(@""), "");
  EXPECT_EQ(nativeOptionalText(std::nullopt), nil);
  EXPECT_TRUE([nativeOptionalText("") isEqual:@""]);
}

TEST(AppleBundle, KeyWithoutATextComesBackAsItIsAlsoWhenItIsMalformed) {
  EXPECT_EQ(localizedString("\xFF"), "\xFF");
}

TEST(DataBridging, KeepsEveryByte) {
  const auto data = dataFromText(std::string_view("\0\xFF\x80 x", 5));
  EXPECT_EQ([nativeData(data) length], 5U);
  EXPECT_EQ(dataFrom(nativeData(data)), data);
}

TEST(DataBridging, NoneAndEmptyAreNoBytes) {
  EXPECT_THAT(dataFrom(nil), IsEmpty());
  EXPECT_THAT(dataFrom([NSData data]), IsEmpty());
  EXPECT_EQ([nativeData({}) length], 0U);
}

TEST(DateBridging, KeepsFractionsOfASecondWithinWhatADoubleHolds) {
  const auto date = dateFrom(nativeDate(Date::sinceEpoch(1'700'000'000.125)));
  EXPECT_EQ(date, Date::sinceEpoch(1'700'000'000.125));
}

TEST(DateBridging, KnowsTheTimeBeforeTheEpoch) {
  EXPECT_EQ(dateFrom(nativeDate(Date::sinceEpoch(-5))), Date::sinceEpoch(-5));
}

TEST(DateBridging, NoneIsAbsent) { EXPECT_EQ(dateFrom(nil), std::nullopt); }

class DecimalBridging : public testing::TestWithParam<const char*> {};

TEST_P(DecimalBridging, IsExactThereAndBack) {
  const auto decimal = Decimal::fromString(GetParam()).value();
  EXPECT_EQ(decimalFrom(nativeDecimal(decimal)), decimal);
}

INSTANTIATE_TEST_SUITE_P(All, DecimalBridging,
                         testing::Values("0", "1", "-1", "0.1", "0.99", "1234567.89",
                                         "-0.000000000001", "12345678901234567890.123456789",
                                         "99999999999999999999999999999999999999", "25e100"));

TEST(DecimalBridging, TrailingZerosOfThePlatformMeanNothing) {
  EXPECT_EQ(decimalFrom([NSDecimalNumber decimalNumberWithString:@"1.50"]),
            Decimal::fromString("1.5"));
}

TEST(DecimalBridging, WhatIsNoNumberIsAbsent) {
  EXPECT_EQ(decimalFrom([NSDecimalNumber notANumber]), std::nullopt);
  EXPECT_EQ(decimalFrom(nil), std::nullopt);
}

TEST(LocaleBridging, KeepsTheIdentifier) {
  EXPECT_EQ(localeFrom(nativeLocale(Locale("de_CH"))), Locale("de_CH"));
  EXPECT_EQ(localeFrom(nil), Locale());
}

TEST(NumberBridging, TellsTruthsFromNumbers) {
  EXPECT_EQ(numberFrom([NSNumber numberWithBool:YES]), Number(true));
  EXPECT_EQ(numberFrom([NSNumber numberWithBool:NO]), Number(false));
}

TEST(NumberBridging, KeepsIntegersWhole) {
  constexpr auto kLeast = std::numeric_limits<std::int64_t>::min();
  EXPECT_EQ(numberFrom([NSNumber numberWithLongLong:kLeast]), Number(kLeast));
  EXPECT_EQ(numberFrom([NSNumber numberWithLongLong:9'007'199'254'740'993]),
            Number(std::int64_t{9'007'199'254'740'993}));
}

TEST(NumberBridging, HasUnsignedOnlyForWhatNeedsIt) {
  constexpr auto kGreatest = std::numeric_limits<std::uint64_t>::max();
  EXPECT_EQ(numberFrom([NSNumber numberWithUnsignedLongLong:kGreatest]), Number(kGreatest));
  EXPECT_EQ(numberFrom([NSNumber numberWithUnsignedLongLong:5]), Number(std::int64_t{5}));
}

TEST(NumberBridging, KeepsFractions) {
  EXPECT_EQ(numberFrom([NSNumber numberWithDouble:0.1]), Number(0.1));
}

TEST(NumberBridging, LosesNothingThereAndBack) {
  for (const Number& number :
       {Number(true), Number(std::int64_t{-3}), Number(~std::uint64_t{0}), Number(1.25)}) {
    EXPECT_EQ(numberFrom(nativeNumber(number)), number);
  }
}

TEST(NumberBridging, DecimalIsANumberWhenItIsOneExactly) {
  EXPECT_EQ(numberFrom([NSDecimalNumber decimalNumberWithString:@"12"]), Number(std::int64_t{12}));
  EXPECT_EQ(numberFrom([NSDecimalNumber decimalNumberWithString:@"0.5"]), Number(0.5));
}

TEST(NumberBridging, NoneIsAbsent) { EXPECT_EQ(numberFrom(nil), std::nullopt); }

TEST(NativeHandle, HasTheEqualityAndTheHashOfItsObject) {
  const auto one = handleOn([NSString stringWithFormat:@"%@", @"gems"]);
  const auto other = handleOn(@"gems");
  EXPECT_TRUE(one->isEqual(*other));
  EXPECT_EQ(one->hash(), other->hash());
  EXPECT_FALSE(one->isEqual(*handleOn(@"crown")));
}

TEST(NativeHandle, KeepsItsObject) {
  auto* const object = [[NSObject alloc] init];
  auto handle = handleOn(object);
  EXPECT_EQ([object retainCount], 2U);
  EXPECT_EQ(nativeObject(handle), object);
  handle.reset();
  EXPECT_EQ([object retainCount], 1U);
  [object release];
}

TEST(NativeHandle, OnNothingIsNull) {
  EXPECT_EQ(handleOn(nil), nullptr);
  EXPECT_EQ(nativeObject(nullptr), nil);
}

TEST(ListBridging, KeepsTheOrder) {
  EXPECT_THAT(listFrom(@[ @"b", @"a" ], textFrom), ElementsAre("b", "a"));
  NSArray* const expected = @[ @"b", @"a" ];
  EXPECT_TRUE([nativeList(std::vector<std::string>{"b", "a"}, nativeText) isEqual:expected]);
  EXPECT_THAT(listFrom(nil, textFrom), IsEmpty());
}

TEST(ClassBridging, AsksWhatAnObjectIs) {
  EXPECT_NE(as<NSString>(@"text"), nil);
  EXPECT_EQ(as<NSNumber>(@"text"), nil);
  EXPECT_EQ(as<NSNumber>(nil), nil);
}

}  // namespace
}  // namespace Foundation
