#include "platform/Foundation/StringEncoding.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace Foundation {
namespace {

using namespace std::string_view_literals;

struct Sample {
  NSStringEncoding encoding;
  std::uint64_t number;
  std::string_view name;
  std::string_view bytes;
  std::string_view text;
};

// Every encoding with a text that no other reads alike.
const std::vector<Sample>& samples() {
  static const std::vector<Sample> list{
      {NSASCIIStringEncoding, 1, "Western (ASCII)", "plain~", "plain~"},
      {NSJapaneseEUCStringEncoding, 3, "Japanese (EUC)", "\xC6\xFC\xCB\xDC", "日本"},
      {NSUTF8StringEncoding, 4, "Unicode (UTF-8)", "\xE6\x97\xA5\xF0\x9F\x98\x80", "日😀"},
      {NSISOLatin1StringEncoding, 5, "Western (ISO Latin 1)", "caf\xE9\xA4", "café¤"},
      {NSShiftJISStringEncoding, 8, "Japanese (Windows, DOS)", "\x93\xFA\x96\x7B\\", "日本\\"},
      {NSISOLatin2StringEncoding, 9, "Central European (ISO Latin 2)", "\xB1\xB6", "ąś"},
      {NSUTF16StringEncoding, 10, "Unicode (UTF-16)", "\0a\x65\xE5"sv, "a日"},
      {NSWindowsCP1251StringEncoding, 11, "Cyrillic (Windows)", "\xCC\xE8\xF0", "Мир"},
      {NSWindowsCP1252StringEncoding, 12, "Western (Windows Latin 1)", "\x80\xE9", "€é"},
      {NSWindowsCP1253StringEncoding, 13, "Greek (Windows)", "\xC1\xF9", "Αω"},
      {NSWindowsCP1254StringEncoding, 14, "Turkish (Windows Latin 5)", "\xDE\xFD", "Şı"},
      {NSWindowsCP1250StringEncoding, 15, "Central European (Windows Latin 2)", "\xB9\x9C", "ąś"},
      {NSISO2022JPStringEncoding, 21, "Japanese (ISO 2022-JP)", "\x1B$BF|K\\\x1B(B!", "日本!"},
      {NSMacOSRomanStringEncoding, 30, "Western (Mac OS Roman)", "caf\x8E\xDB", "café€"},
      {NSUTF16BigEndianStringEncoding, 0x90000100, "Unicode (UTF-16BE)", "\xD8\x3D\xDE\x00"sv,
       "😀"},
      {NSUTF16LittleEndianStringEncoding, 0x94000100, "Unicode (UTF-16LE)", "\x3D\xD8\x00\xDE"sv,
       "😀"},
      {NSUTF32StringEncoding, 0x8c000100, "Unicode (UTF-32)", "\0\x01\xF6\x00"sv, "😀"},
      {NSUTF32BigEndianStringEncoding, 0x98000100, "Unicode (UTF-32BE)", "\0\0\0a\0\x01\xF6\x00"sv,
       "a😀"},
      {NSUTF32LittleEndianStringEncoding, 0x9c000100, "Unicode (UTF-32LE)",
       "a\0\0\0\x00\xF6\x01\0"sv, "a😀"},
  };
  return list;
}

std::optional<std::string> decoded(std::string_view bytes, NSStringEncoding encoding) {
  return decodeText(dataFromText(bytes), encoding);
}

TEST(StringEncoding, HasThePlatformsNumbers) {
  for (const auto& sample : samples()) {
    EXPECT_EQ(static_cast<std::uint64_t>(sample.encoding), sample.number) << sample.name;
  }
  EXPECT_EQ(NSUnicodeStringEncoding, NSUTF16StringEncoding);
}

TEST(StringEncoding, HasThePlatformsNames) {
  for (const auto& sample : samples()) EXPECT_EQ(localizedName(sample.encoding), sample.name);
}

TEST(StringEncoding, OfAnUnknownNumberIsCalledByIt) {
  EXPECT_EQ(localizedName(static_cast<NSStringEncoding>(12345)), "12345");
}

TEST(StringEncoding, DecodesASampleOfEach) {
  for (const auto& sample : samples()) {
    EXPECT_EQ(decoded(sample.bytes, sample.encoding), sample.text) << sample.name;
  }
}

TEST(StringEncoding, DecodesNoBytesAsTheEmptyText) {
  for (const auto& sample : samples()) EXPECT_EQ(decoded("", sample.encoding), "") << sample.name;
}

TEST(StringEncoding, ByteOrderMarkDecidesAndIsNotPartOfTheText) {
  EXPECT_EQ(decoded("\xFE\xFF\0a"sv, NSUTF16StringEncoding), "a");
  EXPECT_EQ(decoded("\xFF\xFE"
                    "a\0"sv,
                    NSUTF16StringEncoding),
            "a");
  EXPECT_EQ(decoded("\0\0\xFE\xFF\0\0\0a"sv, NSUTF32StringEncoding), "a");
  EXPECT_EQ(decoded("\xFF\xFE\0\0"
                    "a\0\0\0"sv,
                    NSUTF32StringEncoding),
            "a");
}

TEST(StringEncoding, MarkBeforeUTF8IsNotPartOfTheText) {
  EXPECT_EQ(decoded("\xEF\xBB\xBF"
                    "a",
                    NSUTF8StringEncoding),
            "a");
}

TEST(StringEncoding, KeepsNulCharacters) {
  EXPECT_EQ(decoded("a\0b"sv, NSUTF8StringEncoding), "a\0b"sv);
  EXPECT_EQ(decoded("a\0b"sv, NSISOLatin1StringEncoding), "a\0b"sv);
}

TEST(StringEncoding, AByteThatTheEncodingLacksMakesTheTextAbsent) {
  EXPECT_EQ(decoded("a\xE9", NSASCIIStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("a\xE9 b", NSUTF8StringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\xFF\xFF", NSJapaneseEUCStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\x93\xFF", NSShiftJISStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("a\x93\xFA", NSISO2022JPStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\x1B$Z", NSISO2022JPStringEncoding), std::nullopt);
}

TEST(StringEncoding, ACharacterCutOffAtTheEndMakesTheTextAbsent) {
  EXPECT_EQ(decoded("a\xE6\x97", NSUTF8StringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\0a\x65"sv, NSUTF16StringEncoding), std::nullopt);
  EXPECT_EQ(decoded("a\0\0"sv, NSUTF32LittleEndianStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\x93", NSShiftJISStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\xC6", NSJapaneseEUCStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\x1B$BF", NSISO2022JPStringEncoding), std::nullopt);
}

TEST(StringEncoding, AHalfPairOfSurrogatesMakesTheTextAbsent) {
  EXPECT_EQ(decoded("\xD8\x3D\0a"sv, NSUTF16BigEndianStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\xD8\x3D"sv, NSUTF16BigEndianStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\xDE\x00"sv, NSUTF16BigEndianStringEncoding), std::nullopt);
  EXPECT_EQ(decoded("\0\0\xD8\x3D"sv, NSUTF32BigEndianStringEncoding), std::nullopt);
}

TEST(StringEncoding, ANumberBeyondUnicodeMakesTheTextAbsent) {
  EXPECT_EQ(decoded("\0\x11\0\0"sv, NSUTF32BigEndianStringEncoding), std::nullopt);
}

TEST(StringEncoding, AnUnknownEncodingMakesTheTextAbsent) {
  EXPECT_EQ(decoded("a", static_cast<NSStringEncoding>(12345)), std::nullopt);
}

// Long enough for many rounds through the converter's buffers, with a character of two units and
// of four bytes across every border.
TEST(StringEncoding, DecodesLongText) {
  std::string bytes(2, '\0');
  std::string text(1, '\0');
  for (int i = 0; i < 100'000; ++i) {
    bytes += "\x3D\xD8\x00\xDE"sv;
    text += "😀";
  }
  EXPECT_TRUE(decoded(bytes, NSUTF16LittleEndianStringEncoding) == text);
}

TEST(StringEncoding, AnErrorBehindALongTextMakesItAbsent) {
  EXPECT_EQ(decoded(std::string(100'000, 'a') + "\xE9", NSASCIIStringEncoding), std::nullopt);
}

}  // namespace
}  // namespace Foundation
