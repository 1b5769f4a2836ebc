#include "TQStoreKitLib/TQNetworking/TQHttpHeaders.hpp"

#include <gtest/gtest.h>

#include <unordered_map>
#include <unordered_set>

namespace TQStoreKitLib {
namespace {

using Name = TQHttpHeaderName;

// --- names ---

TEST(TQHttpHeaderName, KeepsTheTextAsItIs) { EXPECT_EQ(Name(" x-É \n").name(), " x-É \n"); }

TEST(TQHttpHeaderName, OfAnotherLetterCaseIsAnotherName) {
  EXPECT_FALSE(Name("content-type") == Name::contentType());
  EXPECT_EQ(Name("Content-Type"), Name::contentType());
}

TEST(TQHttpHeaderName, PredefinedNamesAreSpelledAsServersExpectThem) {
  EXPECT_EQ(Name::accept().name(), "Accept");
  EXPECT_EQ(Name::acceptEncoding().name(), "Accept-Encoding");
  EXPECT_EQ(Name::authorization().name(), "Authorization");
  EXPECT_EQ(Name::contentEncoding().name(), "Content-Encoding");
  EXPECT_EQ(Name::contentLength().name(), "Content-Length");
  EXPECT_EQ(Name::contentType().name(), "Content-Type");
}

TEST(TQHttpHeaderName, PredefinedNamesAreMadeOnce) {
  EXPECT_EQ(&Name::accept(), &Name::accept());
  EXPECT_EQ(&Name::acceptEncoding(), &Name::acceptEncoding());
  EXPECT_EQ(&Name::authorization(), &Name::authorization());
  EXPECT_EQ(&Name::contentEncoding(), &Name::contentEncoding());
  EXPECT_EQ(&Name::contentLength(), &Name::contentLength());
  EXPECT_EQ(&Name::contentType(), &Name::contentType());
}

TEST(TQHttpHeaderName, HashIsThatOfTheText) {
  EXPECT_EQ(Name("Accept").hashValue(), std::hash<std::string>{}("Accept"));
}

TEST(TQHttpHeaderName, IsAKeyOfUnorderedContainers) {
  const std::unordered_map<Name, int, Name::Hash> map{{Name("Accept"), 1}, {Name("accept"), 2}};
  EXPECT_EQ(map.at(Name::accept()), 1);
}

// --- values ---

TEST(TQHeaderValue, SerialisesTypeAndSubtype) {
  EXPECT_EQ(TQHeaderValue("text", "plain", {}).serialize(), "text/plain");
}

TEST(TQHeaderValue, SerialisesEachParameterBehindASemicolon) {
  EXPECT_EQ(TQHeaderValue("a", "b", {{"z", "1"}, {"c", "2"}}).serialize(), "a/b; c=2; z=1");
}

TEST(TQHeaderValue, QuotesAndTrimsNothing) {
  EXPECT_EQ(TQHeaderValue(" a", "b ", {{" k", "v; w=\"x\""}}).serialize(), " a/b ;  k=v; w=\"x\"");
}

TEST(TQHeaderValue, SerialisesEmptyTextsAsASlash) {
  EXPECT_EQ(TQHeaderValue("", "", {}).serialize(), "/");
}

TEST(TQHeaderValue, JsonSaysItsCharset) {
  EXPECT_EQ(TQHeaderValue::json().type(), "application");
  EXPECT_EQ(TQHeaderValue::json().subType(), "json");
  EXPECT_EQ(TQHeaderValue::json().parameters(), (TQHeaderValue::Parameters{{"charset", "utf-8"}}));
  EXPECT_EQ(TQHeaderValue::json().serialize(), "application/json; charset=utf-8");
}

TEST(TQHeaderValue, JsonIsMadeOnce) { EXPECT_EQ(&TQHeaderValue::json(), &TQHeaderValue::json()); }

TEST(TQHeaderValue, EqualsOverAllThreeFields) {
  const TQHeaderValue value("a", "b", {{"c", "d"}});
  EXPECT_EQ(value, TQHeaderValue("a", "b", {{"c", "d"}}));
  EXPECT_FALSE(value == TQHeaderValue("x", "b", {{"c", "d"}}));
  EXPECT_FALSE(value == TQHeaderValue("a", "x", {{"c", "d"}}));
  EXPECT_FALSE(value == TQHeaderValue("a", "b", {{"c", "x"}}));
  EXPECT_FALSE(value == TQHeaderValue("a", "b", {}));
}

TEST(TQHeaderValue, HashesOverAllThreeFields) {
  const TQHeaderValue value("a", "b", {{"c", "d"}});
  EXPECT_EQ(value.hashValue(), TQHeaderValue("a", "b", {{"c", "d"}}).hashValue());
  const std::unordered_set<TQHeaderValue, TQHeaderValue::Hash> set{
      value, TQHeaderValue("x", "b", {{"c", "d"}}), TQHeaderValue("a", "x", {{"c", "d"}}),
      TQHeaderValue("a", "b", {{"x", "d"}}), TQHeaderValue("a", "b", {{"c", "x"}})};
  std::unordered_set<std::size_t> hashes;
  for (const auto& each : set) hashes.insert(each.hashValue());
  EXPECT_EQ(hashes.size(), 5U);
}

// --- one header ---

TEST(TQHttpHeader, KeepsNameAndText) {
  const TQHttpHeader header(Name("X-A"), std::string(" text "));
  EXPECT_EQ(header.name(), Name("X-A"));
  EXPECT_EQ(header.value(), " text ");
}

TEST(TQHttpHeader, SerialisesAStructuredValue) {
  EXPECT_EQ(TQHttpHeader(Name::contentType(), TQHeaderValue::json()).value(),
            "application/json; charset=utf-8");
}

// --- the set of headers ---

TEST(TQHttpHeaders, IsEmptyAtFirst) {
  EXPECT_TRUE(TQHttpHeaders().headers.empty());
  EXPECT_EQ(TQHttpHeaders()[Name::accept()], std::nullopt);
}

TEST(TQHttpHeaders, TakesAMapAsItIs) {
  const TQHttpHeaders::Map map{{Name("a"), "1"}, {Name("A"), "2"}};
  EXPECT_EQ(TQHttpHeaders(map).headers, map);
}

TEST(TQHttpHeaders, OfTwoHeadersInAListTheLaterStays) {
  const std::vector<TQHttpHeader> list{{Name::accept(), "A"}, {Name::accept(), "B"}};
  const TQHttpHeaders headers(list);
  EXPECT_EQ(headers.headers.size(), 1U);
  EXPECT_EQ(headers[Name::accept()], "B");
}

TEST(TQHttpHeaders, OfTwoHeadersInBracesTheLaterStays) {
  const TQHttpHeaders headers{{Name::accept(), "A"}, {Name::accept(), "B"}};
  EXPECT_EQ(headers.headers, (TQHttpHeaders::Map{{Name::accept(), "B"}}));
}

TEST(TQHttpHeaders, AddInsertsOrReplaces) {
  TQHttpHeaders headers;
  headers.add({Name::accept(), "A"});
  headers.add({Name("X"), "Y"});
  headers.add({Name::accept(), "B"});
  EXPECT_EQ(headers.headers, (TQHttpHeaders::Map{{Name::accept(), "B"}, {Name("X"), "Y"}}));
}

TEST(TQHttpHeaders, RemoveTakesTheNameOut) {
  TQHttpHeaders headers{{Name::accept(), "A"}, {Name("X"), "Y"}};
  headers.remove(Name::accept());
  EXPECT_EQ(headers.headers, (TQHttpHeaders::Map{{Name("X"), "Y"}}));
}

TEST(TQHttpHeaders, RemovingAnAbsentNameChangesNothing) {
  TQHttpHeaders headers{{Name::accept(), "A"}};
  headers.remove(Name("accept"));
  EXPECT_EQ(headers.headers, (TQHttpHeaders::Map{{Name::accept(), "A"}}));
}

TEST(TQHttpHeaders, LooksNamesUpAsTheyAreSpelled) {
  TQHttpHeaders headers;
  headers.add({Name("content-type"), "A"});
  EXPECT_EQ(headers[Name::contentType()], std::nullopt);
  EXPECT_EQ(headers[Name("content-type")], "A");
}

TEST(TQHttpHeaders, OfASumTheRightSideWins) {
  const TQHttpHeaders left{{Name::contentType(), "L"}, {Name("A"), "L"}};
  const TQHttpHeaders right{{Name::contentType(), "R"}, {Name("B"), "R"}};
  EXPECT_EQ((left + right).headers,
            (TQHttpHeaders::Map{{Name::contentType(), "R"}, {Name("A"), "L"}, {Name("B"), "R"}}));
}

TEST(TQHttpHeaders, ASumLeavesBothSidesAsTheyAre) {
  const TQHttpHeaders left{{Name("A"), "L"}};
  const TQHttpHeaders right{{Name("A"), "R"}};
  (void)(left + right);
  EXPECT_EQ(left[Name("A")], "L");
  EXPECT_EQ(right[Name("A")], "R");
}

TEST(TQHttpHeaders, CanBeChangedInPlace) {
  TQHttpHeaders headers{{Name("A"), "1"}};
  headers.headers[Name("A")] += "2";
  EXPECT_EQ(headers[Name("A")], "12");
}

}  // namespace
}  // namespace TQStoreKitLib
