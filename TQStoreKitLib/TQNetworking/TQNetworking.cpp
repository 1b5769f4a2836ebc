#include "TQStoreKitLib/TQNetworking/TQNetworking.hpp"

#include "TQStoreKitLib/TQNetworking/DownloadMover.hpp"
#include "TQStoreKitLib/TQNetworking/TQProgressDownload.hpp"
#include "platform/Dispatch/MainQueue.hpp"
#include "platform/Foundation/Print.hpp"

namespace TQStoreKitLib {

namespace {

using Foundation::Data;
using Foundation::NSError;
using Foundation::URL;
using Foundation::URLResponsePtr;

URL addressFor(std::optional<URL> endpoint) {
  if (!endpoint) endpoint = TQNetworking::shared().endpoint();
  if (endpoint) return *std::move(endpoint);
  Foundation::fatalError("No url configured, please set `TQNetworking.shared.endpoint`");
}

std::optional<Foundation::JSONValue> bodyFrom(TQNetworking::Parameters parameters) {
  if (!parameters) return std::nullopt;
  return Foundation::JSONValue(*std::move(parameters));
}

// What a download has come to, on its way to the main queue.
struct Outcome {
  std::optional<URL> place;
  URLResponsePtr response;
  std::optional<NSError> error;
};

Outcome settle(const std::optional<URL>& temporaryURL, URLResponsePtr response,
               std::optional<NSError> error, const TQNetworking::DestinationChoice& destination) {
  if (!temporaryURL || !response) return {std::nullopt, std::move(response), std::move(error)};
  const auto chosen = destination(*temporaryURL, *response);
  if (auto failure = detail::moveDownload(*temporaryURL, chosen)) {
    return {std::nullopt, std::move(response), std::move(failure)};
  }
  return {chosen.destinationURL, std::move(response), std::nullopt};
}

// The completion goes along: what it holds is let go on the main queue, too.
void report(Outcome outcome, TQNetworking::DownloadCompletion completion) {
  Dispatch::mainQueue().async([outcome = std::move(outcome), completion = std::move(completion)] {
    completion(outcome.place, outcome.response, outcome.error);
  });
}

}  // namespace

TQNetworking& TQNetworking::shared() {
  struct Shared final : TQNetworking {};
  static auto& networking = *new Shared;
  return networking;
}

TQHttpHeaders& TQNetworking::defaultHeaders() {
  static auto& headers = *new TQHttpHeaders{
      {TQHttpHeaderName::accept(), TQHeaderValue::json()},
      {TQHttpHeaderName::contentType(), TQHeaderValue::json()},
  };
  return headers;
}

TQNetworking::DataTask TQNetworking::requestData(std::optional<URL> endpoint, TQHttpMethod method,
                                                 Parameters parameters, TQHttpHeaders headers,
                                                 Completion<Data> completionHandler) {
  const TQRequest request(addressFor(std::move(endpoint)), method, bodyFrom(std::move(parameters)),
                          std::move(headers), {});
  auto task = Foundation::URLSession::shared().dataTask(
      request.urlRequest(), [completion = std::move(completionHandler)](
                                std::optional<Data> bytes, const URLResponsePtr& /*response*/,
                                const std::optional<NSError>& error) {
        if (completion) completion({std::move(bytes), tqnwError(error)});
      });
  task->resume();
  return task;
}

TQNetworking::DataTask TQNetworking::requestString(std::optional<URL> endpoint, TQHttpMethod method,
                                                   Parameters parameters, TQHttpHeaders headers,
                                                   Foundation::NSStringEncoding encoding,
                                                   Completion<std::string> completionHandler) {
  Completion<Data> handler;
  if (completionHandler) {
    handler = [encoding, completion = std::move(completionHandler)](const TQResponse<Data>& raw) {
      completion(detail::textFrom(raw, encoding));
    };
  }
  return requestData(std::move(endpoint), method, std::move(parameters), std::move(headers),
                     std::move(handler));
}

TQNetworking::DataTask TQNetworking::requestJson(
    std::optional<URL> endpoint, TQHttpMethod method, Parameters parameters, TQHttpHeaders headers,
    Completion<Foundation::JSONValue> completionHandler) {
  Completion<Data> handler;
  if (completionHandler) {
    handler = [completion = std::move(completionHandler)](const TQResponse<Data>& raw) {
      completion(detail::jsonFrom(raw));
    };
  }
  return requestData(std::move(endpoint), method, std::move(parameters), std::move(headers),
                     std::move(handler));
}

TQNetworking::DownloadTask TQNetworking::download(URL url, Progress progress,
                                                  DestinationChoice destination,
                                                  DownloadCompletion completionHandler) {
  if (!destination) destination = &TQRequest::defaultDestination;
  const auto session = Foundation::URLSession::withDelegate(
      std::make_shared<TQProgressDownload>(std::move(progress)));
  auto task = session->downloadTask(
      std::move(url),
      [destination = std::move(destination), completion = std::move(completionHandler)](
          const std::optional<URL>& temporaryURL, URLResponsePtr response,
          std::optional<NSError> error) mutable {
        auto outcome = settle(temporaryURL, std::move(response), std::move(error), destination);
        if (completion) report(std::move(outcome), std::move(completion));
      });
  task->resume();
  return task;
}

}  // namespace TQStoreKitLib
