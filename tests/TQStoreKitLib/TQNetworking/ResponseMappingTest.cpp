#include "TQStoreKitLib/TQNetworking/ResponseMapping.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace TQStoreKitLib {
namespace {

using Foundation::Data;
using Foundation::JSONValue;
using Raw = TQResponse<Data>;

struct Player {
  std::string name;
  int level = 0;
};
template <class Coder>
void codableFields(Coder& coder, Player& player) {
  coder("name", player.name)("level", player.level);
}

Raw body(std::string_view text) { return {.data = Foundation::dataFromText(text)}; }

Raw failure() {
  return {.error = TQNWError::common(Foundation::NSError("NSURLErrorDomain", -1001))};
}

TQResponse<Player> player(const Raw& raw) {
  return detail::objectFrom<Player>(raw, Foundation::JSONDecoder());
}

template <class T>
void expectCase(const TQResponse<T>& response, TQNWError::Case expected) {
  EXPECT_FALSE(response.data);
  ASSERT_TRUE(response.error);
  EXPECT_EQ(response.error->tag(), expected) << response.error->message();
}

TEST(ResponseMapping, HandsATransportErrorOn) {
  expectCase(detail::textFrom(failure(), Foundation::NSUTF8StringEncoding),
             TQNWError::Case::common);
  expectCase(detail::jsonFrom(failure()), TQNWError::Case::common);
  expectCase(player(failure()), TQNWError::Case::common);
}

TEST(ResponseMapping, AnErrorCountsMoreThanABody) {
  auto raw = body("{}");
  raw.error = failure().error;
  expectCase(detail::jsonFrom(raw), TQNWError::Case::common);
}

TEST(ResponseMapping, WithoutBodyThereIsNoData) {
  expectCase(detail::textFrom({}, Foundation::NSUTF8StringEncoding), TQNWError::Case::noData);
  expectCase(detail::jsonFrom({}), TQNWError::Case::noData);
  expectCase(player({}), TQNWError::Case::noData);
}

TEST(ResponseMapping, ReadsTextInItsEncoding) {
  const auto response = detail::textFrom(body("\xE9"), Foundation::NSISOLatin1StringEncoding);
  EXPECT_EQ(response.data, "é");
  EXPECT_FALSE(response.error);
}

TEST(ResponseMapping, AnEmptyBodyIsTheEmptyText) {
  EXPECT_EQ(detail::textFrom(body(""), Foundation::NSUTF8StringEncoding).data, "");
}

TEST(ResponseMapping, TextThatDoesNotDecodeNamesTheEncoding) {
  const auto response = detail::textFrom(body("\xE9"), Foundation::NSASCIIStringEncoding);
  expectCase(response, TQNWError::Case::stringEncodingFailed);
  EXPECT_EQ(response.error->asStringEncodingFailed()->encoding, Foundation::NSASCIIStringEncoding);
  EXPECT_EQ(response.error->message(), "String encoding failed: Western (ASCII)");
}

TEST(ResponseMapping, ReadsJSON) {
  const auto response = detail::jsonFrom(body(R"({"a":[1]})"));
  EXPECT_EQ(response.data, JSONValue(JSONValue::Map{{"a", JSONValue::List{1}}}));
  EXPECT_FALSE(response.error);
}

TEST(ResponseMapping, WhatIsNoJSONSaysWhy) {
  for (const auto* const text : {"", "{", "1", "null", "\"a\"", "<html>"}) {
    expectCase(detail::jsonFrom(body(text)), TQNWError::Case::jsonDecodeFailed);
  }
}

TEST(ResponseMapping, DecodesAnObject) {
  const auto response = player(body(R"({"level":3,"name":"Ada","more":[]})"));
  ASSERT_TRUE(response.data);
  EXPECT_EQ(response.data->name, "Ada");
  EXPECT_EQ(response.data->level, 3);
  EXPECT_FALSE(response.error);
}

TEST(ResponseMapping, DecodesAnyCodableType) {
  const auto response = detail::objectFrom<std::vector<int>>(body("[1,2]"), {});
  EXPECT_EQ(response.data, (std::vector<int>{1, 2}));
}

TEST(ResponseMapping, WhatIsNoSuchObjectSaysWhereAndWhy) {
  const auto response = player(body(R"({"name":"Ada","level":"three"})"));
  expectCase(response, TQNWError::Case::objectDecodeFailed);
  EXPECT_EQ(response.error->message(), "level: expected an integer, found text");
}

}  // namespace
}  // namespace TQStoreKitLib
