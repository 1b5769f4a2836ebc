#include "TQStoreKitLib/TQNetworking/TQRequest.hpp"

#include <gtest/gtest.h>

#include <limits>

#include "tests/fakes/OnDestruction.hpp"

namespace TQStoreKitLib {
namespace {

using Foundation::JSONValue;
using Foundation::URL;
using Foundation::URLRequest;

URL endpoint() { return *URL::withString("https://example.com/scores?page=2#top"); }

TQRequest aRequest(TQHttpMethod method, std::optional<JSONValue> parameters = std::nullopt,
                   TQHttpHeaders headers = {}) {
  return {endpoint(), method, std::move(parameters), std::move(headers), {}};
}

std::optional<std::string> bodyOf(const TQRequest& request) {
  const auto made = request.urlRequest();
  if (!made.httpBody()) return std::nullopt;
  return std::string(Foundation::textInData(*made.httpBody()));
}

// --- methods ---

TEST(TQHttpMethod, HasTheTextThatIsSent) {
  EXPECT_EQ(rawValue(TQHttpMethod::post), "POST");
  EXPECT_EQ(rawValue(TQHttpMethod::get), "GET");
}

TEST(TQHttpMethod, IsMadeFromExactlyThatText) {
  EXPECT_EQ(httpMethodFromRawValue("POST"), TQHttpMethod::post);
  EXPECT_EQ(httpMethodFromRawValue("GET"), TQHttpMethod::get);
  for (const auto* const text : {"get", "Post", "PUT", "", "GET ", "HEAD"}) {
    EXPECT_EQ(httpMethodFromRawValue(text), std::nullopt) << text;
  }
}

// --- what is stored ---

TEST(TQRequest, StoresWhatItIsGiven) {
  const TQHttpHeaders headers{{TQHttpHeaderName::accept(), "a"}};
  const TQRequest request(endpoint(), TQHttpMethod::post, JSONValue(7), headers,
                          {[](URLRequest&) {}, nullptr});
  EXPECT_EQ(request.endpoint(), endpoint());
  EXPECT_EQ(request.method(), TQHttpMethod::post);
  EXPECT_EQ(request.parameters(), JSONValue(7));
  EXPECT_EQ(request.headers().headers, headers.headers);
  EXPECT_EQ(request.encodePlugins().size(), 2U);
}

// --- the platform's request ---

TEST(TQRequest, GoesToTheEndpointAsItIs) {
  const auto made = aRequest(TQHttpMethod::get, JSONValue::Map{{"a", 1}}).urlRequest();
  EXPECT_EQ(made.url().absoluteString(), "https://example.com/scores?page=2#top");
}

TEST(TQRequest, HasTheDefaultCachePolicyAndAMinutesTimeOut) {
  const auto made = aRequest(TQHttpMethod::get).urlRequest();
  EXPECT_EQ(static_cast<int>(made.cachePolicy()), 0);
  EXPECT_EQ(made.timeoutInterval().count(), 60.0);
}

TEST(TQRequest, SaysItsMethod) {
  EXPECT_EQ(aRequest(TQHttpMethod::get).urlRequest().httpMethod(), "GET");
  EXPECT_EQ(aRequest(TQHttpMethod::post).urlRequest().httpMethod(), "POST");
}

TEST(TQRequest, SendsParametersAsTheBodyForBothMethods) {
  const JSONValue parameters = JSONValue::Map{{"a", 1}};
  EXPECT_EQ(bodyOf(aRequest(TQHttpMethod::get, parameters)), R"({"a":1})");
  EXPECT_EQ(bodyOf(aRequest(TQHttpMethod::post, parameters)), R"({"a":1})");
}

TEST(TQRequest, SendsAListAsTheBodyToo) {
  EXPECT_EQ(bodyOf(aRequest(TQHttpMethod::post, JSONValue::List{1, "b"})), R"([1,"b"])");
}

TEST(TQRequest, HasNoBodyWithoutParameters) {
  EXPECT_EQ(bodyOf(aRequest(TQHttpMethod::post)), std::nullopt);
}

TEST(TQRequest, AddsNoHeaderByItself) {
  const auto made = aRequest(TQHttpMethod::post, JSONValue::Map{{"a", 1}}).urlRequest();
  EXPECT_TRUE(made.allHTTPHeaderFields().empty());
}

TEST(TQRequest, SetsEachHeader) {
  const TQHttpHeaders headers{{TQHttpHeaderName::accept(), "a"}, {TQHttpHeaderName("X-Y"), "z"}};
  const auto made = aRequest(TQHttpMethod::get, std::nullopt, headers).urlRequest();
  EXPECT_EQ(made.allHTTPHeaderFields(),
            (Foundation::HTTPHeaderFields{{"Accept", "a"}, {"X-Y", "z"}}));
}

TEST(TQRequest, OfHeadersThatDifferInLetterCaseTheLastIsSent) {
  const TQHttpHeaders headers{{TQHttpHeaderName("accept"), "b"}, {TQHttpHeaderName("Accept"), "a"}};
  const auto made = aRequest(TQHttpMethod::get, std::nullopt, headers).urlRequest();
  EXPECT_EQ(made.allHTTPHeaderFields().size(), 1U);
  EXPECT_EQ(made.value("Accept"), "b");
}

TEST(TQRequest, HeadersCanBeChangedBeforehand) {
  auto request = aRequest(TQHttpMethod::get);
  request.headers().add({TQHttpHeaderName::accept(), "a"});
  EXPECT_EQ(request.urlRequest().value("Accept"), "a");
}

// --- parameters that are no JSON ---

void expectNoBodyAndAllElseAsEver(const JSONValue& parameters) {
  auto request = aRequest(TQHttpMethod::post, parameters, {{TQHttpHeaderName::accept(), "a"}});
  request.addEncodePlugin([](URLRequest& made) { made.setValue("c", "B"); });
  const auto made = request.urlRequest();
  EXPECT_EQ(made.httpBody(), std::nullopt);
  EXPECT_EQ(made.httpMethod(), "POST");
  EXPECT_EQ(made.value("Accept"), "a");
  EXPECT_EQ(made.value("B"), "c");
}

TEST(TQRequest, ANumberThatIsNotFiniteCostsTheBodyAndNothingElse) {
  expectNoBodyAndAllElseAsEver(JSONValue::Map{{"a", std::numeric_limits<double>::infinity()}});
}

TEST(TQRequest, TextThatIsNotUTF8CostsTheBodyAndNothingElse) {
  expectNoBodyAndAllElseAsEver(JSONValue::List{"\xFF"});
}

TEST(TQRequest, AnOutermostValueThatIsNeitherMapNorListCostsTheBodyAndNothingElse) {
  expectNoBodyAndAllElseAsEver("text");
  expectNoBodyAndAllElseAsEver(nullptr);
}

// --- encode plugins ---

TEST(TQRequest, PluginsRunInTheirOrderEachOnWhatThoseBeforeMade) {
  auto request = aRequest(TQHttpMethod::get);
  request.addEncodePlugin([](URLRequest& made) { made.setValue("A", "Order"); });
  request.addEncodePlugin(
      [](URLRequest& made) { made.setValue(*made.value("Order") + "B", "Order"); });
  EXPECT_EQ(request.urlRequest().value("Order"), "AB");
}

TEST(TQRequest, PluginsOfTheInitialiserRunBeforeThoseThatAreAdded) {
  TQRequest request(endpoint(), TQHttpMethod::get, std::nullopt, {},
                    {[](URLRequest& made) { made.setHTTPMethod("PUT"); }});
  request.addEncodePlugin([](URLRequest& made) { made.setHTTPMethod(made.httpMethod() + "!"); });
  EXPECT_EQ(request.urlRequest().httpMethod(), "PUT!");
}

TEST(TQRequest, PluginsSeeMethodBodyAndHeaders) {
  auto request =
      aRequest(TQHttpMethod::post, JSONValue::Map{{"a", 1}}, {{TQHttpHeaderName::accept(), "a"}});
  bool hasAll = false;
  request.addEncodePlugin([&hasAll](URLRequest& made) {
    hasAll = made.httpMethod() == "POST" && made.httpBody() && made.value("Accept") == "a";
  });
  (void)request.urlRequest();
  EXPECT_TRUE(hasAll);
}

TEST(TQRequest, PluginsMayChangeEverything) {
  auto request = aRequest(TQHttpMethod::get);
  request.addEncodePlugin([](URLRequest& made) { made.setURL(URL::fileURLWithPath("/")); });
  EXPECT_EQ(request.urlRequest().url(), URL::fileURLWithPath("/"));
}

TEST(TQRequest, AnEmptyPluginIsPassedOver) {
  auto request = aRequest(TQHttpMethod::get);
  request.addEncodePlugin(nullptr);
  request.addEncodePlugin([](URLRequest& made) { made.setHTTPMethod("PUT"); });
  EXPECT_EQ(request.urlRequest().httpMethod(), "PUT");
}

TEST(TQRequest, APluginMayEmptyTheListThatItIsIn) {
  auto request = aRequest(TQHttpMethod::get);
  bool isGone = false;
  bool ranInTime = false;
  request.addEncodePlugin([&request](URLRequest&) { request.encodePlugins().clear(); });
  request.addEncodePlugin([&, witness = tests::onDestruction([&isGone] { isGone = true; })](
                              URLRequest&) { ranInTime = !isGone; });
  (void)request.urlRequest();
  EXPECT_TRUE(ranInTime);
  EXPECT_TRUE(isGone);
}

}  // namespace
}  // namespace TQStoreKitLib
