#include "TQStoreKitLib/TQNetworking.hpp"

#include <gtest/gtest.h>

#include "tests/TQStoreKitLib/TQNetworking/Reply.hpp"

namespace TQStoreKitLib {
namespace {

using Foundation::URL;
using tests::address;

// Whatever is derived from the client and says its own endpoint.
class Derived : public TQNetworking {
 public:
  explicit Derived(std::optional<URL> own) : own_(std::move(own)) {}
  [[nodiscard]] std::optional<URL> endpoint() const override { return own_; }

 private:
  std::optional<URL> own_;
};

std::string pathAskedFor(const tests::HttpServer& server) {
  return server.waitForRequests(1) ? server.requests().front().target : "(nothing)";
}

TEST(TQNetworking, HasOneSharedInstance) {
  EXPECT_EQ(&TQNetworking::shared(), &TQNetworking::shared());
}

TEST(TQNetworking, HasNoEndpointAtFirst) {
  EXPECT_EQ(TQNetworking::shared().endpoint(), std::nullopt);
}

TEST(TQNetworking, DefaultHeadersAreForJSONBothWays) {
  EXPECT_EQ(
      TQNetworking::defaultHeaders().headers,
      (TQHttpHeaders::Map{{TQHttpHeaderName::accept(), "application/json; charset=utf-8"},
                          {TQHttpHeaderName::contentType(), "application/json; charset=utf-8"}}));
}

TEST(TQNetworking, DefaultHeadersStayAsTheyAreChanged) {
  TQNetworking::defaultHeaders().add({TQHttpHeaderName("X"), "y"});
  EXPECT_EQ(TQNetworking::defaultHeaders()[TQHttpHeaderName("X")], "y");
}

// --- where a request goes ---

TEST(TQNetworking, ARequestGoesToTheSharedEndpointWithoutOneOfItsOwn) {
  tests::HttpServer server;
  TQNetworking::shared().setEndpoint(address(server.url("/text")));
  TQNetworking::shared().requestData(std::nullopt, TQHttpMethod::get, std::nullopt, {}, nullptr);
  EXPECT_EQ(pathAskedFor(server), "/text");
}

TEST(TQNetworking, AnEndpointOfItsOwnCountsMoreThanTheSharedOne) {
  tests::HttpServer server;
  TQNetworking::shared().setEndpoint(address(server.url("/shared")));
  TQNetworking::shared().requestData(address(server.url("/text")), TQHttpMethod::get, std::nullopt,
                                     {}, nullptr);
  EXPECT_EQ(pathAskedFor(server), "/text");
}

TEST(TQNetworking, EndpointCanBeOverridden) {
  const Derived derived(address("http://example.com/"));
  const TQNetworking& networking = derived;
  EXPECT_EQ(networking.endpoint(), address("http://example.com/"));
}

TEST(TQNetworking, ADerivedClientSendsToTheSharedEndpointToo) {
  tests::HttpServer server;
  TQNetworking::shared().setEndpoint(address(server.url("/text")));
  Derived derived(address(server.url("/derived")));
  derived.requestData(std::nullopt, TQHttpMethod::get, std::nullopt, {}, nullptr);
  EXPECT_EQ(pathAskedFor(server), "/text");
}

// --- without any ---

const char* const kNoURL = "No url configured, please set `TQNetworking.shared.endpoint`";

TEST(TQNetworkingDeathTest, RequestDataWithoutEndpointStops) {
  EXPECT_DEATH(TQNetworking::shared().requestData(std::nullopt, TQHttpMethod::get, std::nullopt, {},
                                                  nullptr),
               kNoURL);
}

TEST(TQNetworkingDeathTest, RequestStringWithoutEndpointStops) {
  EXPECT_DEATH(TQNetworking::shared().requestString(std::nullopt, TQHttpMethod::get, std::nullopt,
                                                    {}, Foundation::NSUTF8StringEncoding, nullptr),
               kNoURL);
}

TEST(TQNetworkingDeathTest, RequestJsonWithoutEndpointStops) {
  EXPECT_DEATH(TQNetworking::shared().requestJson(std::nullopt, TQHttpMethod::get, std::nullopt, {},
                                                  nullptr),
               kNoURL);
}

TEST(TQNetworkingDeathTest, RequestDecodableWithoutEndpointStops) {
  EXPECT_DEATH(TQNetworking::shared().requestDecodable<int>(std::nullopt, TQHttpMethod::get,
                                                            std::nullopt, {}, nullptr),
               kNoURL);
}

}  // namespace
}  // namespace TQStoreKitLib
