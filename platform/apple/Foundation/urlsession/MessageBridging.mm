#include "platform/apple/Foundation/urlsession/MessageBridging.hpp"

#include <utility>

#include "platform/Foundation/UnicodeText.hpp"
#include "platform/apple/Foundation/Bridging.hpp"

namespace Foundation {

namespace {

HTTPHeaderFields fieldsFrom(NSDictionary* native) {
  HTTPHeaderFields fields;
  for (id key in native) {
    auto* const name = as<NSString>(key);
    auto* const value = as<NSString>([native objectForKey:key]);
    if (name != nil && value != nil) fields.emplace(textFrom(name), textFrom(value));
  }
  return fields;
}

URLResponse::Contents contentsFrom(NSURLResponse* response) {
  URLResponse::Contents contents;
  contents.url = URL::withString(textFrom([[response URL] absoluteString]));
  contents.mimeType = optionalTextFrom([response MIMEType]);
  if (contents.mimeType) contents.mimeType = lowercased(*contents.mimeType);
  contents.expectedContentLength = [response expectedContentLength];
  contents.textEncodingName = optionalTextFrom([response textEncodingName]);
  return contents;
}

// The length that the server said is then that of the compressed body.
bool isCompressed(const HTTPHeaderFields& fields) {
  const auto encoding = fields.find("Content-Encoding");
  return encoding != fields.end() && lowercased(encoding->second) != "identity";
}

}  // namespace

NSURLRequest* nativeRequest(const URLRequest& request) {
  NSURL* const url = [NSURL URLWithString:nativeText(request.url().absoluteString())];
  if (url == nil) return nil;
  const auto policy = static_cast<NSURLRequestCachePolicy>(request.cachePolicy());
  NSMutableURLRequest* const native =
      [[[NSMutableURLRequest alloc] initWithURL:url
                                    cachePolicy:policy
                                timeoutInterval:request.timeoutInterval().count()] autorelease];
  [native setHTTPMethod:nativeText(request.httpMethod())];
  if (request.httpBody()) [native setHTTPBody:nativeData(*request.httpBody())];
  for (const auto& [name, value] : request.allHTTPHeaderFields()) {
    [native setValue:nativeText(value) forHTTPHeaderField:nativeText(name)];
  }
  return native;
}

URLResponsePtr responseFrom(NSURLResponse* response) {
  if (response == nil) return nullptr;
  auto contents = contentsFrom(response);
  auto* const http = as<NSHTTPURLResponse>(response);
  if (http == nil) return std::make_shared<const URLResponse>(std::move(contents));
  auto fields = fieldsFrom([http allHeaderFields]);
  if (isCompressed(fields)) contents.expectedContentLength = kUnknownLength;
  return std::make_shared<const HTTPURLResponse>(std::move(contents), [http statusCode],
                                                 std::move(fields));
}

bool hasNoBody(const URLRequest& request, const URLResponsePtr& response) {
  constexpr std::int64_t kNoContent = 204;
  constexpr std::int64_t kNotModified = 304;
  const auto http = httpResponse(response);
  if (!http) return false;
  return request.httpMethod() == "HEAD" || http->statusCode() == kNoContent ||
         http->statusCode() == kNotModified;
}

}  // namespace Foundation
