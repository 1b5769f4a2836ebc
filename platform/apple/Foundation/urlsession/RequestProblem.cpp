#include "platform/apple/Foundation/urlsession/RequestProblem.hpp"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Foundation/URLError.hpp"

namespace Foundation {

namespace {

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

bool isTokenCharacter(char c) {
  constexpr std::string_view kOthers = "!#$%&'*+-.^_`|~0123456789";
  return isLetter(c) || kOthers.find(c) != std::string_view::npos;
}

bool isToken(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isTokenCharacter);
}

bool isFieldValue(std::string_view text) {
  constexpr std::string_view kNever("\r\n\0", 3);
  return text.find_first_of(kNever) == std::string_view::npos;
}

bool isLoadable(const URL& url) {
  auto scheme = url.scheme().value_or("");
  std::transform(scheme.begin(), scheme.end(), scheme.begin(),
                 [](char c) { return isLetter(c) ? static_cast<char>(c | 0x20) : c; });
  return scheme == "http" || scheme == "https";
}

NSError problem(NSURLErrorCode code, const URL& url, std::string description) {
  NSError::UserInfo userInfo;
  userInfo.emplace(NSLocalizedDescriptionKey, std::move(description));
  userInfo.emplace(kURLErrorFailingURLStringKey, url.absoluteString());
  return {std::string(NSURLErrorDomain), code, std::move(userInfo)};
}

}  // namespace

std::optional<NSError> problemOf(const URLRequest& request) {
  const auto& url = request.url();
  const auto text = "\"" + url.absoluteString() + "\"";
  if (!isLoadable(url)) {
    return problem(NSURLErrorUnsupportedURL, url, text + " is no address of the web.");
  }
  if (url.host().value_or("").empty()) {
    return problem(NSURLErrorBadURL, url, text + " names no host.");
  }
  if (!isToken(request.httpMethod())) {
    return problem(NSURLErrorBadURL, url,
                   "The request for " + text + " has a method that is none.");
  }
  for (const auto& [name, value] : request.allHTTPHeaderFields()) {
    if (isToken(name) && isFieldValue(value)) continue;
    return problem(NSURLErrorBadURL, url,
                   "The request for " + text + " has a header field that cannot be sent.");
  }
  return std::nullopt;
}

}  // namespace Foundation
