#include "TQStoreKitLib/TQNetworking/TQRequest.hpp"

#include <string>

#include "platform/Foundation/JSONSerialization.hpp"

namespace TQStoreKitLib {

namespace {

constexpr Foundation::URLRequest::Seconds kTimeoutInterval(60);

// A server chooses the name: it must not lead out of the folder.
bool isFileName(const std::string& name) {
  constexpr std::string_view kNotInNames("/\0", 2);
  return !name.empty() && name != "." && name != ".." &&
         name.find_first_of(kNotInNames) == std::string::npos;
}

}  // namespace

TQRequest::TQRequest(Foundation::URL endpoint, TQHttpMethod method,
                     std::optional<Foundation::JSONValue> parameters, TQHttpHeaders headers,
                     std::vector<EncodePlugin> encodePlugins)
    : endpoint_(std::move(endpoint)),
      parameters_(std::move(parameters)),
      method_(method),
      headers_(std::move(headers)),
      encodePlugins_(std::move(encodePlugins)) {}

Foundation::URLRequest TQRequest::urlRequest() const {
  Foundation::URLRequest request(
      endpoint_, Foundation::URLRequest::CachePolicy::useProtocolCachePolicy, kTimeoutInterval);
  request.setHTTPMethod(std::string(rawValue(method_)));
  if (parameters_) request.setHTTPBody(Foundation::JSONSerialization::data(*parameters_).data);
  for (const auto& [name, value] : headers_.headers) request.setValue(value, name.name());
  const auto plugins = encodePlugins_;  // one of them may change the list
  for (const auto& plugin : plugins) {
    if (plugin) plugin(request);
  }
  return request;
}

TQRequest::Destination TQRequest::defaultDestination(const Foundation::URL& temporaryURL,
                                                     const Foundation::URLResponse& response) {
  const auto& url = response.url();
  auto name = url ? url->lastPathComponent() : std::string();
  if (!isFileName(name)) name = temporaryURL.lastPathComponent();
  return {temporaryURL.deletingLastPathComponent().appendingPathComponent(name),
          {TQDownloadOptions::removePreviousFile(),
           TQDownloadOptions::createIntermediateDirectories()}};
}

}  // namespace TQStoreKitLib
