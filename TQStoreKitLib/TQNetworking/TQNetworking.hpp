#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "TQStoreKitLib/TQNetworking/ResponseMapping.hpp"
#include "TQStoreKitLib/TQNetworking/TQRequest.hpp"
#include "TQStoreKitLib/TQNetworking/TQResponse.hpp"
#include "platform/Foundation/JSONDecoder.hpp"
#include "platform/Foundation/URLSession.hpp"

namespace TQStoreKitLib {

/// A small HTTP client: sends a request and hands back bytes, text, JSON or a decoded value, and
/// downloads files.
///
///     auto& networking = TQNetworking::shared();
///     networking.setEndpoint(Foundation::URL::withString("https://example.com/scores"));
///     networking.requestDecodable<Scores>(
///         std::nullopt, TQHttpMethod::post, Foundation::JSONValue::Map{{"level", 3}},
///         TQNetworking::defaultHeaders(),
///         [](TQResponse<Scores> response) {
///           Dispatch::mainQueue().async([response] { show(response.data, response.error); });
///         });
///
/// A request goes to the address that is passed, else to the endpoint of `shared`, of whatever
/// instance it is asked. Without both the program stops: it was never told where to go. Parameters
/// are the JSON body, for a GET too. Headers are sent as they are passed, `defaultHeaders` only by
/// whoever passes them.
///
/// Any answer is a success, whatever its HTTP status. A completion runs exactly once, never inside
/// the call, on the queue of the platform's shared session, in the background: hop to the main queue
/// (platform/Dispatch/MainQueue.hpp) to touch what belongs there. An empty one is not called, and
/// nothing is converted for it.
/// Thread: requests and downloads, any; they return at once. `endpoint` and `defaultHeaders` have no
/// lock: set them before there are requests on other threads.
class TQNetworking {
 public:
  using Parameters = std::optional<Foundation::JSONValue::Map>;
  using DataTask = std::shared_ptr<Foundation::URLSessionDataTask>;
  using DownloadTask = std::shared_ptr<Foundation::URLSessionDownloadTask>;
  template <class T>
  using Completion = std::function<void(TQResponse<T> response)>;

  /// Bytes just written, bytes written so far, bytes that will come; the last one negative when the
  /// server didn't say.
  using Progress = std::function<void(std::int64_t, std::int64_t, std::int64_t)>;
  /// Chooses the place for a download that lies in a temporary file. `TQRequest::defaultDestination`
  /// is one.
  using DestinationChoice = std::function<TQRequest::Destination(
      const Foundation::URL& temporaryURL, const Foundation::URLResponse& response)>;
  /// Where the file is; the answer, if one came; why there is no file.
  using DownloadCompletion =
      std::function<void(std::optional<Foundation::URL>, Foundation::URLResponsePtr,
                         std::optional<Foundation::NSError>)>;

  /// The one instance; made on first use, never destroyed.
  [[nodiscard]] static TQNetworking& shared();
  TQNetworking(const TQNetworking&) = delete;
  TQNetworking& operator=(const TQNetworking&) = delete;
  virtual ~TQNetworking() = default;

  /// Headers for JSON both ways ("Accept" and "Content-Type"), to pass to a request and to change.
  [[nodiscard]] static TQHttpHeaders& defaultHeaders();

  /// Where requests without an address of their own go, on `shared`; absent at first.
  [[nodiscard]] virtual std::optional<Foundation::URL> endpoint() const { return endpoint_; }
  virtual void setEndpoint(std::optional<Foundation::URL> endpoint) {
    endpoint_ = std::move(endpoint);
  }

  /// What `requestDecodable` decodes with; asked, and copied, when the request is made.
  [[nodiscard]] virtual const Foundation::JSONDecoder& responseDecoder() const {
    return responseDecoder_;
  }

  // Each returns the task, started; never null.

  /// The bytes as they came. An answer without a body has neither data nor error.
  DataTask requestData(std::optional<Foundation::URL> endpoint, TQHttpMethod method,
                       Parameters parameters, TQHttpHeaders headers,
                       Completion<Foundation::Data> completionHandler);

  /// The bytes as text, in UTF-8. Fails with `noData` without a body, with `stringEncodingFailed`
  /// when it is no text in that encoding.
  DataTask requestString(std::optional<Foundation::URL> endpoint, TQHttpMethod method,
                         Parameters parameters, TQHttpHeaders headers,
                         Foundation::NSStringEncoding encoding,
                         Completion<std::string> completionHandler);

  /// The bytes as JSON, a map or a list. Fails with `noData` without a body, with `jsonDecodeFailed`
  /// when it is none.
  DataTask requestJson(std::optional<Foundation::URL> endpoint, TQHttpMethod method,
                       Parameters parameters, TQHttpHeaders headers,
                       Completion<Foundation::JSONValue> completionHandler);

  /// The bytes as a value of a codable type (see Codable.hpp), read from their JSON. Fails with
  /// `noData` without a body, with `objectDecodeFailed` when it is none.
  template <Foundation::CodableType T>
  DataTask requestDecodable(std::optional<Foundation::URL> endpoint, TQHttpMethod method,
                            Parameters parameters, TQHttpHeaders headers,
                            Completion<T> completionHandler) {
    Completion<Foundation::Data> handler;
    if (completionHandler) {
      handler = [decoder = responseDecoder(), completion = std::move(completionHandler)](
                    const TQResponse<Foundation::Data>& raw) {
        completion(detail::objectFrom<T>(raw, decoder));
      };
    }
    return requestData(std::move(endpoint), method, std::move(parameters), std::move(headers),
                       std::move(handler));
  }

  /// Downloads a file to the place that `destination` chooses, in a session of its own.
  ///
  /// `progress` runs on that session's queue for each portion that was written, `destination` on the
  /// same queue when all of it is there; an empty one is `TQRequest::defaultDestination`. Then, as
  /// the options say, a previous file is removed and folders are made, and the file is moved. See
  /// `TQDownloadOptions`: without `removePreviousFile` nothing is ever replaced, and a folder never
  /// is.
  ///
  /// `completionHandler` runs exactly once, later, on the main queue: with the destination, or with
  /// an error and no place, the platform's or the file system's. An empty one is not called.
  ///
  /// Returns the task, started; never null.
  DownloadTask download(Foundation::URL url, Progress progress, DestinationChoice destination,
                        DownloadCompletion completionHandler);

 protected:
  /// For classes that derive from this one; there is no other instance of it than `shared`.
  TQNetworking() = default;

 private:
  std::optional<Foundation::URL> endpoint_;
  Foundation::JSONDecoder responseDecoder_;
};

}  // namespace TQStoreKitLib
