#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "TQStoreKitLib/TQNetworking/TQDownloadOptions.hpp"
#include "TQStoreKitLib/TQNetworking/TQHttpHeaders.hpp"
#include "TQStoreKitLib/TQNetworking/TQHttpMethod.hpp"
#include "platform/Foundation/JSONValue.hpp"
#include "platform/Foundation/URL.hpp"
#include "platform/Foundation/URLRequest.hpp"
#include "platform/Foundation/URLResponse.hpp"

namespace TQStoreKitLib {

/// One HTTP call before it is sent: what the platform's request is made from.
///
///     TQRequest request(url, TQHttpMethod::post, JSONValue::Map{{"level", 3}}, headers, {});
///     request.addEncodePlugin([](Foundation::URLRequest& made) { sign(made); });
///     Foundation::URLRequest made = request.urlRequest();
///
/// Thread: a plain value.
class TQRequest {
 public:
  using TQDownloadOptions = TQStoreKitLib::TQDownloadOptions;

  /// Changes the finished platform request. Runs inside `urlRequest`; an empty one is passed over.
  using EncodePlugin = std::function<void(Foundation::URLRequest& request)>;

  /// Where a download goes, and what may be done for it.
  struct Destination {
    /// A file URL.
    Foundation::URL destinationURL;
    TQDownloadOptions options;
  };

  /// Stores all five as they are. `parameters` is what the platform's JSON serialiser takes: a map
  /// or a list, with whatever in it.
  TQRequest(Foundation::URL endpoint, TQHttpMethod method,
            std::optional<Foundation::JSONValue> parameters, TQHttpHeaders headers,
            std::vector<EncodePlugin> encodePlugins);

  [[nodiscard]] const Foundation::URL& endpoint() const { return endpoint_; }
  [[nodiscard]] const std::optional<Foundation::JSONValue>& parameters() const {
    return parameters_;
  }
  [[nodiscard]] TQHttpMethod method() const { return method_; }
  [[nodiscard]] const TQHttpHeaders& headers() const { return headers_; }
  [[nodiscard]] TQHttpHeaders& headers() { return headers_; }
  [[nodiscard]] const std::vector<EncodePlugin>& encodePlugins() const { return encodePlugins_; }
  [[nodiscard]] std::vector<EncodePlugin>& encodePlugins() { return encodePlugins_; }

  /// Appends a plugin: it runs after those that are there.
  void addEncodePlugin(EncodePlugin plugin) { encodePlugins_.push_back(std::move(plugin)); }

  /// Makes the platform's request: for `endpoint`, with the default cache policy and a time-out of
  /// 60 seconds; then the method; the parameters as its JSON body, for a GET too; each of the
  /// headers, in the order of their names, where of two that differ in letter case only the last
  /// one stays; then the plugins, one after another, each on what those before it made.
  ///
  /// Nothing is added: no query, no "Content-Type". Never fails: without parameters, or with some
  /// that are no JSON (the outermost value neither map nor list, a number that is not finite, text
  /// that is not UTF-8), there is no body, and all else is as ever.
  [[nodiscard]] Foundation::URLRequest urlRequest() const;

  /// The usual destination of a download: the folder of the temporary file, under the last path
  /// component of the response's URL, with both options. Without that URL, or when it has no file
  /// name to give ("/", "..", a text with slashes of its own), the temporary file's name.
  ///
  /// The file stays there until the application removes it, and takes the place of an earlier one
  /// of its name. Off the phone the folder is the one that TMPDIR names, else TQStoreKitLib in the
  /// user's cache folder (`downloadFolder` in platform/embedded/Foundation/URLLoading.hpp).
  [[nodiscard]] static Destination defaultDestination(const Foundation::URL& temporaryURL,
                                                      const Foundation::URLResponse& response);

 private:
  Foundation::URL endpoint_;
  std::optional<Foundation::JSONValue> parameters_;
  TQHttpMethod method_;
  TQHttpHeaders headers_;
  std::vector<EncodePlugin> encodePlugins_;
};

}  // namespace TQStoreKitLib
