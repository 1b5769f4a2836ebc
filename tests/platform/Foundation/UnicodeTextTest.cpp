#include "platform/Foundation/UnicodeText.hpp"

#include <gtest/gtest.h>

#include "platform/embedded/Foundation/EmulatedSystem.hpp"

namespace Foundation {
namespace {

using namespace std::string_view_literals;

TEST(UTF8, AcceptsOneToFourBytes) {
  EXPECT_TRUE(isUTF8(""));
  EXPECT_TRUE(isUTF8("a\x7F"));
  EXPECT_TRUE(isUTF8("\xC2\x80\xDF\xBF"));
  EXPECT_TRUE(isUTF8("\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF"));
  EXPECT_TRUE(isUTF8("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"));
  EXPECT_TRUE(isUTF8("a\0b"sv));
}

TEST(UTF8, RefusesStrayContinuations) {
  EXPECT_FALSE(isUTF8("\x80"));
  EXPECT_FALSE(isUTF8("a\xBF"));
}

TEST(UTF8, RefusesWhatIsCutOff) {
  EXPECT_FALSE(isUTF8("\xC2"));
  EXPECT_FALSE(isUTF8("\xE2\x82"));
  EXPECT_FALSE(isUTF8("\xF0\x9F\x98"));
  EXPECT_FALSE(
      isUTF8("\xC2"
             "a"));
  EXPECT_FALSE(
      isUTF8("\xE2\x82"
             "a"));
}

TEST(UTF8, RefusesOverlongForms) {
  EXPECT_FALSE(isUTF8("\xC0\x80"));
  EXPECT_FALSE(isUTF8("\xC1\xBF"));
  EXPECT_FALSE(isUTF8("\xE0\x9F\xBF"));
  EXPECT_FALSE(isUTF8("\xF0\x8F\xBF\xBF"));
}

TEST(UTF8, RefusesSurrogatesAndWhatIsBeyondUnicode) {
  EXPECT_FALSE(isUTF8("\xED\xA0\x80"));
  EXPECT_FALSE(isUTF8("\xF4\x90\x80\x80"));
  EXPECT_FALSE(isUTF8("\xF5\x80\x80\x80"));
  EXPECT_FALSE(isUTF8("\xFF"));
}

TEST(LowerCase, CoversAllScripts) {
  EXPECT_EQ(lowercased("ABC xyz 1"), "abc xyz 1");
  EXPECT_EQ(lowercased("ÀÉÎ"), "àéî");
  EXPECT_EQ(lowercased("ДОМ"), "дом");
  EXPECT_EQ(lowercased("ß"), "ß");
  EXPECT_EQ(lowercased("ẞ"), "ß");
}

TEST(LowerCase, OfOneCharacterMayBeTwo) { EXPECT_EQ(lowercased("İ"), "i\u0307"); }

TEST(LowerCase, OfTheKelvinSignIsK) { EXPECT_EQ(lowercased("\u212A"), "k"); }

TEST(LowerCase, DependsOnTheContext) { EXPECT_EQ(lowercased("ΟΔΟΣ"), "οδος"); }

TEST(LowerCase, KnowsNoLanguage) {
  setCurrentLocale(Locale("tr_TR"));
  EXPECT_EQ(lowercased("TITLE"), "title");
  setCurrentLocale(std::nullopt);
}

TEST(LowerCase, KeepsANul) { EXPECT_EQ(lowercased("A\0B"sv), "a\0b"sv); }

TEST(LowerCase, ReplacesWhatIsNoUTF8) { EXPECT_EQ(lowercased("A\xFF"), "a\uFFFD"); }

}  // namespace
}  // namespace Foundation
