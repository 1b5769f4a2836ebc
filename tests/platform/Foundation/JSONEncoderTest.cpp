#include "platform/Foundation/JSONEncoder.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "platform/Foundation/JSONReader.hpp"

namespace Foundation {
namespace {

using namespace std::string_literals;

// The text, or what went wrong.
template <class T>
std::string json(const T& value) {
  const auto encoding = JSONEncoder().encode(value);
  if (encoding.error) return "error: " + encoding.error->localizedDescription();
  return std::string(textInData(*encoding.data));
}

struct Item {
  std::string name;
  std::optional<double> score;
};
template <class Coder>
void codableFields(Coder& coder, Item& item) {
  coder("name", item.name)("score", item.score);
}

struct Node {
  std::vector<Node> children;
};
template <class Coder>
void codableFields(Coder& coder, Node& node) {
  coder("children", node.children);
}

struct Thrower {
  bool throwsSomethingElse = false;
};

}  // namespace

template <>
struct Codable<Thrower> {
  static void encode(Encoder&, const Thrower& thrower) {
    if (thrower.throwsSomethingElse) throw 1;
    throw std::runtime_error("no way");
  }
  static void decode(Decoder&, Thrower&) { throw std::runtime_error("no way"); }
};

namespace {

TEST(JSONEncoder, WritesPlainValuesAtTheTop) {
  EXPECT_EQ(json(true), "true");
  EXPECT_EQ(json(false), "false");
  EXPECT_EQ(json(12), "12");
  EXPECT_EQ(json("text"s), "\"text\"");
  EXPECT_EQ(json(std::optional<int>()), "null");
  EXPECT_EQ(json(std::optional<int>(5)), "5");
}

TEST(JSONEncoder, WritesIntegersOfAllWidths) {
  EXPECT_EQ(json(std::int8_t{-128}), "-128");
  EXPECT_EQ(json(std::uint8_t{255}), "255");
  EXPECT_EQ(json(INT64_MIN), "-9223372036854775808");
  EXPECT_EQ(json(UINT64_MAX), "18446744073709551615");
}

TEST(JSONEncoder, WritesTheShortestNumberThatReadsBack) {
  EXPECT_EQ(json(0.1), "0.1");
  EXPECT_EQ(json(3.0), "3");
  EXPECT_EQ(json(-0.0), "-0");
  EXPECT_EQ(json(1e21), "1e+21");
  EXPECT_EQ(json(0.5F), "0.5");
}

TEST(JSONEncoder, RefusesNumbersThatAreNotFinite) {
  EXPECT_EQ(json(std::numeric_limits<double>::infinity()), "error: inf is not a JSON number");
  EXPECT_EQ(json(std::numeric_limits<double>::quiet_NaN()), "error: nan is not a JSON number");
  EXPECT_EQ(json(-std::numeric_limits<float>::infinity()), "error: -inf is not a JSON number");
}

TEST(JSONEncoder, EscapesWhatThePlatformEscapes) {
  EXPECT_EQ(json("\"\\/\b\f\n\r\t"s), R"("\"\\\/\b\f\n\r\t")");
  EXPECT_EQ(json("\0\x01\x1f\x7f"s), "\"\\u0000\\u0001\\u001f\x7f\"");
  EXPECT_EQ(json("é😀"s), "\"é😀\"");
}

TEST(JSONEncoder, RefusesTextThatIsNotUTF8) {
  EXPECT_EQ(json("a\xFF"s), "error: the text is not UTF-8");
  EXPECT_EQ(json(std::map<std::string, int>{{"\xC0\x80", 1}}),
            "error: \xC0\x80: the text is not UTF-8");
}

TEST(JSONEncoder, WritesDatesAsSecondsSinceTheReferenceDate) {
  EXPECT_EQ(json(Date::sinceEpoch(978307200)), "0");
  EXPECT_EQ(json(Date::sinceEpoch(0)), "-978307200");
  EXPECT_EQ(json(Date::sinceEpoch(978307200.25)), "0.25");
}

TEST(JSONEncoder, WritesBytesAsBase64) {
  EXPECT_EQ(json(dataFromText("\xFB\xEF\xFF?")), R"("++\/\/Pw==")");
  EXPECT_EQ(json(Data()), "\"\"");
}

TEST(JSONEncoder, WritesLists) {
  EXPECT_EQ(json(std::vector<int>()), "[]");
  EXPECT_EQ(json(std::vector<int>{1, 2, 1}), "[1,2,1]");
  EXPECT_EQ(json(std::vector<bool>{true, false}), "[true,false]");
  EXPECT_EQ(json(std::vector<std::vector<int>>{{}, {1}, {2, 3}}), "[[],[1],[2,3]]");
  EXPECT_EQ(json(std::vector<std::optional<int>>{1, std::nullopt}), "[1,null]");
}

TEST(JSONEncoder, WritesMaps) {
  EXPECT_EQ(json(std::map<std::string, int>()), "{}");
  EXPECT_EQ(json(std::map<std::string, int>{{"b", 2}, {"a", 1}}), R"({"a":1,"b":2})");
  EXPECT_EQ(json(std::map<std::string, std::optional<int>>{{"a", std::nullopt}}), R"({"a":null})");
  EXPECT_EQ(json(std::unordered_map<std::string, bool>{{"x", true}}), R"({"x":true})");
}

TEST(JSONEncoder, WritesFieldsInTheOrderOfTheType) {
  EXPECT_EQ(json(Item{"a", 1.5}), R"({"name":"a","score":1.5})");
}

TEST(JSONEncoder, LeavesAnAbsentFieldOut) {
  EXPECT_EQ(json(Item{"a", std::nullopt}), R"({"name":"a"})");
}

TEST(JSONEncoder, NamesThePathToWhatItRefuses) {
  const std::map<std::string, std::vector<Item>> groups = {
      {"first", {{"a", 1}, {"b", std::numeric_limits<double>::quiet_NaN()}}}};
  EXPECT_EQ(json(groups), "error: first[1].score: nan is not a JSON number");
}

TEST(JSONEncoder, ReportsThePlatformsErrorCode) {
  const auto error = JSONEncoder().encode("\xFF"s).error;
  EXPECT_EQ(error->domain(), "NSCocoaErrorDomain");
  EXPECT_EQ(error->code(), 4866);
}

TEST(JSONEncoder, FailsWhenAConversionThrows) {
  EXPECT_EQ(json(std::vector<Thrower>(1)), "error: [0]: no way");
  EXPECT_EQ(json(Thrower{true}), "error: the conversion threw");
}

TEST(JSONEncoder, RefusesWhatNobodyCouldRead) {
  Node root;
  for (std::size_t depth = 2; depth < kDeepestJSON; depth += 2) {
    Node parent;
    parent.children.push_back(std::move(root));
    root = std::move(parent);
  }
  EXPECT_EQ(json(root).substr(0, 5), "{\"chi");
  Node parent;
  parent.children.push_back(std::move(root));
  EXPECT_NE(json(parent).find("lies too deep in lists and objects"), std::string::npos);
}

}  // namespace
}  // namespace Foundation
