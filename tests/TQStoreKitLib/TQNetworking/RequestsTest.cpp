#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "platform/Foundation/URLError.hpp"
#include "tests/TQStoreKitLib/TQNetworking/Reply.hpp"

namespace TQStoreKitLib {
namespace {

using Foundation::Data;
using Foundation::JSONValue;
using Foundation::URLSessionTask;
using tests::address;
using tests::Reply;

struct Player {
  std::string name;
  int level = 0;
};
template <class Coder>
void codableFields(Coder& coder, Player& player) {
  coder("name", player.name)("level", player.level);
}

// A client of one's own, which says when it is asked for its decoder.
class CountingClient : public TQNetworking {
 public:
  explicit CountingClient(int& asked) : asked_(asked) {}
  [[nodiscard]] const Foundation::JSONDecoder& responseDecoder() const override {
    ++asked_;
    return TQNetworking::responseDecoder();
  }

 private:
  int& asked_;
};

class Requests : public testing::Test {
 protected:
  [[nodiscard]] Foundation::URL url(const std::string& target) const {
    return address(server_.url(target));
  }
  void answerWith(int status, const std::string& body) {
    server_.answer("/mine",
                   [status, body](::tests::Exchange& exchange) { exchange.respond(status, body); });
  }
  [[nodiscard]] static TQNetworking& networking() { return TQNetworking::shared(); }

  TQResponse<Data> data(const std::string& target) {
    Reply<Data> reply;
    networking().requestData(url(target), TQHttpMethod::get, std::nullopt, {}, reply.handler());
    return reply.wait();
  }
  TQResponse<std::string> text(const std::string& target, Foundation::NSStringEncoding encoding) {
    Reply<std::string> reply;
    networking().requestString(url(target), TQHttpMethod::get, std::nullopt, {}, encoding,
                               reply.handler());
    return reply.wait();
  }
  TQResponse<JSONValue> json(const std::string& target) {
    Reply<JSONValue> reply;
    networking().requestJson(url(target), TQHttpMethod::get, std::nullopt, {}, reply.handler());
    return reply.wait();
  }
  TQResponse<Player> player(const std::string& target) {
    Reply<Player> reply;
    networking().requestDecodable<Player>(url(target), TQHttpMethod::get, std::nullopt, {},
                                          reply.handler());
    return reply.wait();
  }
  // What the server saw of a request.
  nlohmann::json echo(TQHttpMethod method, TQNetworking::Parameters parameters,
                      TQHttpHeaders headers) {
    Reply<Data> reply;
    networking().requestData(url("/echo"), method, std::move(parameters), std::move(headers),
                             reply.handler());
    const auto response = reply.wait();
    return nlohmann::json::parse(response.data ? Foundation::textInData(*response.data) : "null");
  }

  tests::HttpServer server_;
};

std::string textIn(const TQResponse<Data>& response) {
  return response.data ? std::string(Foundation::textInData(*response.data)) : "(none)";
}

// --- what is sent ---

TEST_F(Requests, APostSendsMethodBodyAndHeaders) {
  const auto seen = echo(TQHttpMethod::post, JSONValue::Map{{"level", 3}},
                         {{TQHttpHeaderName("X-Game"), "chess"}});
  EXPECT_EQ(seen["method"], "POST");
  EXPECT_EQ(seen["body"], R"({"level":3})");
  EXPECT_EQ(seen["headers"]["x-game"], "chess");
}

TEST_F(Requests, AGetSendsItsParametersAsTheBodyToo) {
  const auto seen = echo(TQHttpMethod::get, JSONValue::Map{{"a", 1}}, {});
  EXPECT_EQ(seen["method"], "GET");
  EXPECT_EQ(seen["target"], "/echo");
  EXPECT_EQ(seen["body"], R"({"a":1})");
}

TEST_F(Requests, DefaultHeadersAreSentOnlyByWhoeverPassesThem) {
  const std::string json = "application/json; charset=utf-8";
  const auto without = echo(TQHttpMethod::get, std::nullopt, {});
  EXPECT_NE(without["headers"].value("accept", ""), json);
  const auto with = echo(TQHttpMethod::get, std::nullopt, TQNetworking::defaultHeaders());
  EXPECT_EQ(with["headers"]["accept"], json);
  EXPECT_EQ(with["headers"]["content-type"], json);
}

TEST_F(Requests, ParametersThatAreNoJSONAreSentAsNoBody) {
  const auto nan = std::numeric_limits<double>::quiet_NaN();
  const auto seen =
      echo(TQHttpMethod::post, JSONValue::Map{{"a", nan}}, {{TQHttpHeaderName("X-Game"), "chess"}});
  EXPECT_EQ(seen["method"], "POST");
  EXPECT_EQ(seen["body"], "");
  EXPECT_EQ(seen["headers"]["x-game"], "chess");
}

// --- bytes ---

TEST_F(Requests, DataIsTheBytesOfTheBody) {
  const auto response = data("/text");
  EXPECT_EQ(textIn(response), "The quick brown fox jumps over the lazy dog.");
  EXPECT_FALSE(response.error);
}

TEST_F(Requests, DataOfAnyStatusIsASuccess) {
  answerWith(500, "broken");
  EXPECT_EQ(textIn(data("/mine")), "broken");
}

TEST_F(Requests, DataOfAnAnswerWithoutBodyHasNeitherDataNorError) {
  const auto response = data("/status/204");
  EXPECT_FALSE(response.data);
  EXPECT_FALSE(response.error);
}

TEST_F(Requests, ATransportErrorIsCommonWithThePlatformsOwn) {
  const auto response = data("/hang-up");
  EXPECT_FALSE(response.data);
  ASSERT_TRUE(response.error && response.error->asCommon());
  const auto& error = response.error->asCommon()->error;
  EXPECT_EQ(error.domain(), Foundation::NSURLErrorDomain);
  EXPECT_EQ(error.code(), Foundation::NSURLErrorNetworkConnectionLost);
  EXPECT_EQ(response.error->message(), error.localizedDescription());
}

// --- text ---

TEST_F(Requests, StringIsTheBodyInItsEncoding) {
  answerWith(200, "caf\xE9");
  EXPECT_EQ(text("/mine", Foundation::NSISOLatin1StringEncoding).data, "café");
}

TEST_F(Requests, StringThatDoesNotDecodeCarriesTheEncoding) {
  answerWith(200, "caf\xE9");
  const auto response = text("/mine", Foundation::NSUTF8StringEncoding);
  EXPECT_FALSE(response.data);
  ASSERT_TRUE(response.error && response.error->asStringEncodingFailed());
  EXPECT_EQ(response.error->asStringEncodingFailed()->encoding, Foundation::NSUTF8StringEncoding);
  EXPECT_EQ(response.error->message(), "String encoding failed: Unicode (UTF-8)");
}

TEST_F(Requests, StringOfAnAnswerWithoutBodyIsNoData) {
  const auto response = text("/status/204", Foundation::NSUTF8StringEncoding);
  ASSERT_TRUE(response.error);
  EXPECT_EQ(response.error->message(), "No Data");
}

TEST_F(Requests, StringHandsATransportErrorOn) {
  const auto response = text("/hang-up", Foundation::NSUTF8StringEncoding);
  EXPECT_TRUE(response.error && response.error->asCommon());
}

// --- JSON ---

TEST_F(Requests, JsonOfAnyStatusIsASuccess) {
  answerWith(500, R"({"reason":"broken"})");
  const auto response = json("/mine");
  EXPECT_EQ(response.data, JSONValue(JSONValue::Map{{"reason", "broken"}}));
  EXPECT_FALSE(response.error);
}

TEST_F(Requests, JsonThatIsNoneSaysWhy) {
  const auto response = json("/text");
  EXPECT_FALSE(response.data);
  EXPECT_TRUE(response.error && response.error->asJsonDecodeFailed());
}

TEST_F(Requests, JsonOfAnAnswerWithoutBodyIsNoData) {
  const auto response = json("/status/204");
  ASSERT_TRUE(response.error);
  EXPECT_EQ(response.error->tag(), TQNWError::Case::noData);
}

TEST_F(Requests, JsonOfAnEmptyBodyIsNoJSON) {
  const auto response = json("/empty");
  EXPECT_TRUE(response.error && response.error->asJsonDecodeFailed());
}

TEST_F(Requests, JsonHandsATransportErrorOn) {
  const auto response = json("/hang-up");
  EXPECT_TRUE(response.error && response.error->asCommon());
}

// --- objects ---

TEST_F(Requests, DecodableIsTheValueThatTheBodySays) {
  answerWith(404, R"({"name":"Ada","level":3})");
  const auto response = player("/mine");
  ASSERT_TRUE(response.data);
  EXPECT_EQ(response.data->name, "Ada");
  EXPECT_EQ(response.data->level, 3);
  EXPECT_FALSE(response.error);
}

TEST_F(Requests, DecodableThatIsNoneSaysWhereAndWhy) {
  answerWith(200, R"({"name":"Ada"})");
  const auto response = player("/mine");
  EXPECT_FALSE(response.data);
  ASSERT_TRUE(response.error && response.error->asObjectDecodeFailed());
}

TEST_F(Requests, DecodableOfAnAnswerWithoutBodyIsNoData) {
  const auto response = player("/status/204");
  ASSERT_TRUE(response.error);
  EXPECT_EQ(response.error->tag(), TQNWError::Case::noData);
}

TEST_F(Requests, DecodableHandsATransportErrorOn) {
  const auto response = player("/hang-up");
  EXPECT_TRUE(response.error && response.error->asCommon());
}

TEST_F(Requests, DecodableAsksTheInstanceForItsDecoder) {
  int asked = 0;
  CountingClient client(asked);
  Reply<int> reply;
  client.requestDecodable<int>(url("/text"), TQHttpMethod::get, std::nullopt, {}, reply.handler());
  (void)reply.wait();
  EXPECT_EQ(asked, 1);
}

TEST_F(Requests, DecodableOutlivesTheClientThatItWasAskedOf) {
  answerWith(200, "7");
  int asked = 0;
  Reply<int> reply;
  {
    CountingClient client(asked);
    client.requestDecodable<int>(url("/mine"), TQHttpMethod::get, std::nullopt, {},
                                 reply.handler());
  }
  EXPECT_EQ(reply.wait().data, 7);
}

// --- tasks and completions ---

TEST_F(Requests, ATaskIsStartedWhenItIsReturned) {
  const auto task =
      networking().requestData(url("/wait"), TQHttpMethod::get, std::nullopt, {}, nullptr);
  ASSERT_NE(task, nullptr);
  EXPECT_EQ(task->state(), URLSessionTask::State::running);
  EXPECT_TRUE(server_.waitForRequests(1));
  server_.openGate("answer");
}

TEST_F(Requests, EveryOperationSendsWithoutACompletion) {
  networking().requestData(url("/text"), TQHttpMethod::get, std::nullopt, {}, nullptr);
  networking().requestString(url("/text"), TQHttpMethod::get, std::nullopt, {},
                             Foundation::NSUTF8StringEncoding, nullptr);
  networking().requestJson(url("/text"), TQHttpMethod::get, std::nullopt, {}, nullptr);
  networking().requestDecodable<int>(url("/text"), TQHttpMethod::get, std::nullopt, {}, nullptr);
  EXPECT_TRUE(server_.waitForRequests(4));
  tests::waitForAllBefore(server_);
}

TEST_F(Requests, ACompletionComesInTheBackground) {
  Reply<Data> reply;
  networking().requestData(url("/text"), TQHttpMethod::get, std::nullopt, {}, reply.handler());
  (void)reply.wait();
  EXPECT_NE(reply.thread(), std::this_thread::get_id());
}

TEST_F(Requests, ACompletionComesOnce) {
  Reply<Data> reply;
  networking().requestData(url("/text"), TQHttpMethod::get, std::nullopt, {}, reply.handler());
  (void)reply.wait();
  tests::waitForAllBefore(server_);
  EXPECT_EQ(reply.count(), 1U);
}

TEST_F(Requests, ACancelledRequestCompletesOnceWithThePlatformsError) {
  Reply<JSONValue> reply;
  const auto task =
      networking().requestJson(url("/wait"), TQHttpMethod::get, std::nullopt, {}, reply.handler());
  ASSERT_TRUE(server_.waitForRequests(1));
  task->cancel();
  const auto response = reply.wait();
  ASSERT_TRUE(response.error && response.error->asCommon());
  EXPECT_EQ(response.error->asCommon()->error.code(), Foundation::NSURLErrorCancelled);
  server_.openGate("answer");
  tests::waitForAllBefore(server_);
  EXPECT_EQ(reply.count(), 1U);
}

TEST_F(Requests, ACompletionMaySendTheNextRequest) {
  Reply<Data> second;
  networking().requestData(url("/text"), TQHttpMethod::get, std::nullopt, {},
                           [&](const TQResponse<Data>&) {
                             networking().requestData(url("/empty"), TQHttpMethod::get,
                                                      std::nullopt, {}, second.handler());
                           });
  EXPECT_EQ(textIn(second.wait()), "");
}

}  // namespace
}  // namespace TQStoreKitLib
