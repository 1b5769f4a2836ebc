#include "platform/Foundation/JSONSerialization.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <limits>

#include "platform/Foundation/JSONReader.hpp"

namespace Foundation {
namespace {

using List = JSONValue::List;
using Map = JSONValue::Map;

std::string written(const JSONValue& value) {
  const auto encoding = JSONSerialization::data(value);
  EXPECT_TRUE(encoding.data) << encoding.error->localizedDescription();
  return encoding.data ? std::string(textInData(*encoding.data)) : "";
}

std::string refusal(const JSONValue& value) {
  const auto encoding = JSONSerialization::data(value);
  EXPECT_FALSE(encoding.data);
  return encoding.error ? encoding.error->localizedDescription() : "";
}

JSONValue read(std::string_view text) {
  const auto reading = JSONSerialization::jsonObject(text);
  EXPECT_TRUE(reading.value) << reading.error->localizedDescription();
  return reading.value ? *reading.value : JSONValue();
}

bool isRefused(std::string_view text) {
  const auto reading = JSONSerialization::jsonObject(text);
  EXPECT_NE(reading.value.has_value(), reading.error.has_value());
  return !reading.value;
}

JSONValue nested(std::size_t depth) {
  JSONValue value = List();
  for (std::size_t i = 1; i < depth; ++i) {
    List outer;
    outer.push_back(std::move(value));
    value = std::move(outer);
  }
  return value;
}

std::string nestedText(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

// --- writing ---

TEST(JSONSerialization, WritesWithoutBlanks) {
  EXPECT_EQ(written(Map{{"a", 1}}), R"({"a":1})");
  EXPECT_EQ(written(List{1, "two", nullptr, true, false, 0.5}), R"([1,"two",null,true,false,0.5])");
}

TEST(JSONSerialization, WritesEmptyListsAndMaps) {
  EXPECT_EQ(written(List()), "[]");
  EXPECT_EQ(written(Map()), "{}");
}

TEST(JSONSerialization, WritesWhatIsNested) {
  EXPECT_EQ(written(Map{{"b", List{Map{{"c", List{}}}}}, {"a", Map{{"d", 1}}}}),
            R"({"a":{"d":1},"b":[{"c":[]}]})");
}

TEST(JSONSerialization, WritesIntegersToTheirLimits) {
  EXPECT_EQ(written(List{INT64_MIN, UINT64_MAX}), "[-9223372036854775808,18446744073709551615]");
}

TEST(JSONSerialization, EscapesTextAndKeys) {
  EXPECT_EQ(written(Map{{"a\"b", "c\n/"}}), R"({"a\"b":"c\n\/"})");
}

TEST(JSONSerialization, RefusesToWriteAnOutermostValueThatIsNeitherListNorMap) {
  const auto* const reason = "the outermost value is neither a list nor a map";
  EXPECT_EQ(refusal("text"), reason);
  EXPECT_EQ(refusal(1), reason);
  EXPECT_EQ(refusal(nullptr), reason);
}

TEST(JSONSerialization, RefusesToWriteNumbersThatAreNotFinite) {
  const auto nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(refusal(Map{{"a", List{1, nan}}}), "a[1]: nan is not a JSON number");
}

TEST(JSONSerialization, RefusesToWriteTextThatIsNotUTF8) {
  EXPECT_EQ(refusal(List{"\xFF"}), "[0]: the text is not UTF-8");
  EXPECT_EQ(refusal(Map{{"\xFF", 1}}).substr(3), "the text is not UTF-8");
}

TEST(JSONSerialization, WritesAsDeepAsItReadsAndNoDeeper) {
  EXPECT_EQ(written(nested(kDeepestJSON)), nestedText(kDeepestJSON));
  EXPECT_FALSE(refusal(nested(kDeepestJSON + 1)).empty());
}

TEST(JSONSerialization, ReportsThePlatformsCodeForWhatItCannotWrite) {
  const auto error = *JSONSerialization::data("text").error;
  EXPECT_EQ(error.domain(), "NSCocoaErrorDomain");
  EXPECT_EQ(error.code(), 3852);
}

// --- reading ---

TEST(JSONSerialization, ReadsEveryKindOfValue) {
  const auto value = read(R"( {"a": [1, -2.5, "x", true, false, null], "b": {}} )");
  EXPECT_EQ(value, JSONValue(Map{{"a", List{1, -2.5, "x", true, false, nullptr}}, {"b", Map()}}));
}

TEST(JSONSerialization, ReadsIntegersExactly) {
  EXPECT_EQ(read("[9007199254740993, -9223372036854775808, 18446744073709551615]"),
            JSONValue(List{9007199254740993, INT64_MIN, UINT64_MAX}));
}

TEST(JSONSerialization, ReadsANumberWithPointAsFloating) {
  EXPECT_EQ(read("[1.0, 1e2]"), JSONValue(List{1.0, 100.0}));
}

TEST(JSONSerialization, ReadsEscapesInTextAndKeys) {
  EXPECT_EQ(read(R"({"\u00e9\n": "\ud83d\ude00"})"), JSONValue(Map{{"é\n", "😀"}}));
}

TEST(JSONSerialization, OfTwoFieldsWithOneKeyTheLaterStays) {
  EXPECT_EQ(read(R"({"a": {"x": 1}, "a": {"y": 2}})"), JSONValue(Map{{"a", Map{{"y", 2}}}}));
}

TEST(JSONSerialization, ReadsBackWhatItWrote) {
  const JSONValue value =
      Map{{"a", List{1, UINT64_MAX, 0.1, "é/\"", nullptr, true}}, {"", Map{{"b", List()}}}};
  EXPECT_EQ(read(written(value)), value);
}

TEST(JSONSerialization, AFloatingNumberWithoutFractionReadsBackAsAnInteger) {
  EXPECT_EQ(read(written(List{3.0})), JSONValue(List{3}));
}

TEST(JSONSerialization, RefusesToReadAnOutermostValueThatIsNeitherListNorMap) {
  for (const auto* const text : {"1", "\"a\"", "true", "null", " 2.5 "}) {
    EXPECT_TRUE(isRefused(text)) << text;
  }
}

TEST(JSONSerialization, RefusesWhatIsNoJSON) {
  for (const auto* const text : {"", " ", "[", "{", "[1,]", "{\"a\"}", "[1] 2", "[01]", "[nan]",
                                 "{'a':1}", "[1]]", "// a\n[]", "[\"a]", "<html></html>"}) {
    EXPECT_TRUE(isRefused(text)) << text;
  }
}

TEST(JSONSerialization, RefusesEveryBeginningOfAText) {
  const std::string_view text = R"({"a":[1,{"b":"c"},null],"d":-2.5e3})";
  ASSERT_FALSE(isRefused(text));
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_TRUE(isRefused(text.substr(0, length))) << text.substr(0, length);
  }
}

TEST(JSONSerialization, RefusesBytesThatAreNotUTF8) {
  EXPECT_TRUE(isRefused("[\"\xFF\"]"));
  EXPECT_TRUE(isRefused("[\"\xC3\"]"));
  EXPECT_TRUE(isRefused("{\"\xED\xA0\x80\":1}"));
  EXPECT_TRUE(isRefused(std::string_view("\xFE\xFF\0[\0]", 6)));
}

TEST(JSONSerialization, ReadsAsDeepAsThePlatformDoesAndNoDeeper) {
  EXPECT_FALSE(isRefused(nestedText(kDeepestJSON)));
  EXPECT_TRUE(isRefused(nestedText(kDeepestJSON + 1)));
}

TEST(JSONSerialization, SurvivesAMillionLevels) {
  EXPECT_TRUE(isRefused(nestedText(1'000'000)));
  EXPECT_TRUE(isRefused(std::string(1'000'000, '[')));
}

// The pages are never touched, so they take no memory.
TEST(JSONSerialization, RefusesMoreThanAGigabyteWithoutLookingAtIt) {
  const auto length = kLongestJSON + 1;
  void* const pages = ::mmap(nullptr, length, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  ASSERT_NE(pages, MAP_FAILED);
  EXPECT_TRUE(isRefused({static_cast<const char*>(pages), length}));
  ::munmap(pages, length);
}

TEST(JSONSerialization, ReportsThePlatformsCodeForWhatItCannotRead) {
  const auto error = *JSONSerialization::jsonObject("[1,").error;
  EXPECT_EQ(error.domain(), "NSCocoaErrorDomain");
  EXPECT_EQ(error.code(), 3840);
  EXPECT_FALSE(error.localizedDescription().empty());
}

TEST(JSONSerialization, ReadsBytesAsText) {
  EXPECT_EQ(JSONSerialization::jsonObject(dataFromText("[1]")).value, JSONValue(List{1}));
}

}  // namespace
}  // namespace Foundation
