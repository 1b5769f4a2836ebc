#include "platform/Foundation/JSONReader.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace Foundation {
namespace {

using namespace std::string_view_literals;

// True when the whole text is JSON, as far as the reader can tell that by passing it.
bool isJSON(std::string_view text) {
  JSONReader reader(text);
  return reader.skip() && reader.isAtEnd();
}

JSONNumber numberIn(std::string_view text) {
  JSONReader reader(text);
  JSONNumber number;
  EXPECT_TRUE(reader.readNumber(number) && reader.isAtEnd()) << text << ": " << reader.problem();
  return number;
}

TEST(JSONReader, StandsAtTheOutermostValueFirst) {
  EXPECT_EQ(JSONReader("null").kind(), JSONKind::null);
  EXPECT_EQ(JSONReader(" true ").kind(), JSONKind::boolean);
  EXPECT_EQ(JSONReader("1").kind(), JSONKind::number);
  EXPECT_EQ(JSONReader("\"\"").kind(), JSONKind::text);
  EXPECT_EQ(JSONReader("[]").kind(), JSONKind::list);
  EXPECT_EQ(JSONReader("{}").kind(), JSONKind::object);
}

TEST(JSONReader, TellsIntegersFromOtherNumbers) {
  EXPECT_EQ(numberIn("7"), JSONNumber(std::int64_t{7}));
  EXPECT_EQ(numberIn("-9223372036854775808"), JSONNumber(INT64_MIN));
  EXPECT_EQ(numberIn("9223372036854775807"), JSONNumber(INT64_MAX));
  EXPECT_EQ(numberIn("9223372036854775808"), JSONNumber(std::uint64_t{1} << 63U));
  EXPECT_EQ(numberIn("18446744073709551615"), JSONNumber(UINT64_MAX));
  EXPECT_EQ(numberIn("18446744073709551616"), JSONNumber(0x1p64));
  EXPECT_EQ(numberIn("-9223372036854775809"), JSONNumber(-0x1p63));
  EXPECT_EQ(numberIn("7.0"), JSONNumber(7.0));
  EXPECT_EQ(numberIn("7e0"), JSONNumber(7.0));
}

TEST(JSONReader, LeavesAValueOfAnotherKindWhereItIs) {
  JSONReader reader("\"text\"");
  JSONNumber number;
  std::string text;
  EXPECT_FALSE(reader.readNumber(number));
  EXPECT_FALSE(reader.enterList());
  EXPECT_TRUE(reader.readText(text));
  EXPECT_EQ(text, "text");
}

TEST(JSONReader, WalksThroughAList) {
  JSONReader reader("[1, [2, 3], 4]");
  ASSERT_TRUE(reader.enterList());
  ASSERT_TRUE(reader.nextElement());
  ASSERT_TRUE(reader.skip());
  ASSERT_TRUE(reader.nextElement());
  ASSERT_TRUE(reader.enterList());
  EXPECT_TRUE(reader.nextElement());
  EXPECT_TRUE(reader.nextElement());
  EXPECT_FALSE(reader.nextElement());
  EXPECT_TRUE(reader.nextElement());
  EXPECT_FALSE(reader.nextElement());
  EXPECT_TRUE(reader.isAtEnd());
}

TEST(JSONReader, GivesTheFieldsOfAnObject) {
  JSONReader reader(R"({"a": 1, "\u0062": {"c": 2}, "": 3})");
  std::string keys;
  ASSERT_TRUE(reader.enterObject());
  while (reader.nextField()) keys += std::string(reader.key()) + ",";
  EXPECT_EQ(keys, "a,b,,");
  EXPECT_TRUE(reader.isAtEnd());
}

TEST(JSONReader, UnderstandsEscapes) {
  JSONReader reader(R"("\"\\\/\b\f\n\r\t\u0000\u00e9\ud83d\ude00")");
  std::string text;
  ASSERT_TRUE(reader.readText(text));
  EXPECT_EQ(text, "\"\\/\b\f\n\r\t\0é😀"sv);
}

TEST(JSONReader, AcceptsEmptyListsAndObjects) {
  EXPECT_TRUE(isJSON("[]"));
  EXPECT_TRUE(isJSON("{}"));
  EXPECT_TRUE(isJSON(R"([{},[],{"a":{}},[[]]])"));
}

TEST(JSONReader, RefusesWhatIsNoValue) {
  for (const auto text :
       {"", " ", "nul", "nulll", "tru", "truee", "falsy", "NaN", "x", "'a'", "/**/1"}) {
    EXPECT_FALSE(isJSON(text)) << text;
  }
}

TEST(JSONReader, RefusesWhatIsNoNumber) {
  for (const auto text : {"01", "+1", "1.", ".5", "-", "1e", "1e+", "0x10", "1a", "--1", "1.2.3"}) {
    EXPECT_FALSE(isJSON(text)) << text;
  }
}

TEST(JSONReader, RefusesANumberBeyondAllDoubles) { EXPECT_FALSE(isJSON("1e400")); }

TEST(JSONReader, RefusesWhatIsNoText) {
  for (const auto text : {"\"", "\"a", R"("\x")", R"("\u12")", R"("\ud800")", "\"\n\"", "\"\t\""}) {
    EXPECT_FALSE(isJSON(text)) << text;
  }
  EXPECT_FALSE(isJSON("\"a\0b\""sv));
}

TEST(JSONReader, PassesOverAByteOrderMarkBeforeTheText) {
  EXPECT_EQ(numberIn("\xEF\xBB\xBF"
                     "7"),
            JSONNumber(std::int64_t{7}));
  EXPECT_TRUE(isJSON("\xEF\xBB\xBF {\"a\": []}"));
}

TEST(JSONReader, RefusesAByteOrderMarkAnywhereElse) {
  EXPECT_FALSE(isJSON("\xEF\xBB\xBF"));
  EXPECT_FALSE(isJSON("\xEF\xBB\xBF\xEF\xBB\xBF[]"));
  EXPECT_FALSE(isJSON(" \xEF\xBB\xBF[]"));
  EXPECT_FALSE(isJSON("[]\xEF\xBB\xBF"));
  EXPECT_FALSE(isJSON("\xEF\xBB[]"));
  EXPECT_TRUE(isJSON("\"\xEF\xBB\xBF\"")) << "in a text it is a character like any other";
}

TEST(JSONReader, RefusesUTF16AndUTF32) {
  EXPECT_FALSE(isJSON("\xFF\xFE[\0]\0"sv));
  EXPECT_FALSE(isJSON("[\0]\0"sv));
  EXPECT_FALSE(isJSON("\0\0\0[\0\0\0]"sv));
}

TEST(JSONReader, RefusesInvalidUTF8) {
  EXPECT_FALSE(isJSON("\"\xFF\""));
  EXPECT_FALSE(isJSON("\"\xC0\x80\""));
  EXPECT_FALSE(isJSON("\"\xED\xA0\x80\""));
  EXPECT_FALSE(isJSON("[1]\x80"));
}

TEST(JSONReader, RefusesMisplacedMarks) {
  for (const auto text :
       {"[1,]", "[,1]", "[1 2]", "[1", "1]", "]", "[1]]", "{\"a\":1,}", "{\"a\"}", "{\"a\" 1}",
        "{1:2}", "{a:1}", "{\"a\":1", "{\"a\":}", "{,}", "[1}", "{]"}) {
    EXPECT_FALSE(isJSON(text)) << text;
  }
}

TEST(JSONReader, RefusesWhatStandsBehindTheValue) {
  for (const auto text : {"1 2", "1,2", "[] []", "[],[]", "{}{}", "null,", "1]", "[1],"}) {
    EXPECT_FALSE(isJSON(text)) << text;
  }
}

TEST(JSONReader, ChecksAlsoWhatNobodyReads) {
  JSONReader reader(R"({"a": [1, {"b": tru}], "c": 1})");
  ASSERT_TRUE(reader.enterObject());
  ASSERT_TRUE(reader.nextField());
  EXPECT_FALSE(reader.nextField());
  EXPECT_NE(reader.problem(), "");
}

TEST(JSONReader, ReadsNothingAfterAProblem) {
  JSONReader reader("[1 2]");
  JSONNumber number;
  ASSERT_TRUE(reader.enterList());
  ASSERT_TRUE(reader.nextElement());
  ASSERT_TRUE(reader.readNumber(number));
  EXPECT_FALSE(reader.nextElement());
  EXPECT_EQ(reader.kind(), std::nullopt);
  EXPECT_FALSE(reader.readNumber(number));
  EXPECT_FALSE(reader.isAtEnd());
}

TEST(JSONReader, ReadsNothingBehindTheEndEither) {
  JSONReader reader("1,2");
  JSONNumber number;
  ASSERT_TRUE(reader.readNumber(number));
  ASSERT_FALSE(reader.isAtEnd());
  EXPECT_FALSE(reader.readNumber(number));
}

TEST(JSONReader, ReadsAValueOnce) {
  JSONReader reader("1");
  JSONNumber number;
  ASSERT_TRUE(reader.readNumber(number));
  EXPECT_FALSE(reader.readNumber(number));
}

TEST(JSONReader, SaysThatThereIsAProblemWhereNoValueBegins) {
  JSONReader reader("x");
  EXPECT_EQ(reader.kind(), std::nullopt);
  EXPECT_NE(reader.problem(), "");
}

std::string nested(std::size_t depth, const std::string& open, const std::string& close) {
  std::string text;
  for (std::size_t i = 0; i < depth; ++i) text += open;
  text += "1";
  for (std::size_t i = 0; i < depth; ++i) text += close;
  return text;
}

TEST(JSONReader, GoesAsDeepAsThePlatformDoes) {
  EXPECT_TRUE(isJSON(nested(kDeepestJSON, "[", "]")));
  EXPECT_FALSE(isJSON(nested(kDeepestJSON + 1, "[", "]")));
  EXPECT_TRUE(isJSON(nested(kDeepestJSON, "{\"a\":", "}")));
  EXPECT_FALSE(isJSON(nested(kDeepestJSON + 1, "{\"a\":", "}")));
}

TEST(JSONReader, SurvivesAMillionLevels) {
  EXPECT_FALSE(isJSON(nested(1'000'000, "[", "]")));
  EXPECT_FALSE(isJSON(std::string(1'000'000, '[')));
  EXPECT_FALSE(isJSON(nested(1'000'000, "{\"a\":", "}")));
}

TEST(JSONReader, ReadsManyMegabytes) {
  const auto text = "[\"" + std::string(20'000'000, 'x') + "\"]";
  EXPECT_TRUE(isJSON(text));
}

TEST(JSONReader, RefusesEveryBeginningOfAText) {
  const std::string text = R"({"a":[1,-2.5e3,true,null,"x\u00e9\n"],"b":{"c":{}},"d":false})";
  ASSERT_TRUE(isJSON(text));
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_FALSE(isJSON(text.substr(0, length))) << length;
  }
}

TEST(JSONReader, SurvivesEveryChangeOfAByte) {
  const std::string text = R"({"a":[1,-2.5e3,true,null,"x\u00e9\n"],"b":{"c":{}}})";
  int accepted = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      auto changed = text;
      changed[at] = static_cast<char>(byte);
      accepted += isJSON(changed) ? 1 : 0;
    }
  }
  EXPECT_GT(accepted, static_cast<int>(text.size()));
}

}  // namespace
}  // namespace Foundation
