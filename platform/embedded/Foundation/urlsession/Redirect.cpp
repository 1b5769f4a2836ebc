#include "platform/embedded/Foundation/urlsession/Redirect.hpp"

#include <strings.h>

#include <algorithm>
#include <utility>

namespace Foundation::detail {

namespace {

// "HTTP://Host:80" of "HTTP://User@Host:80/path?query".
std::string origin(const URL& url) {
  const auto& text = url.absoluteString();
  const auto start = text.find("://");
  if (start == std::string::npos) return text;
  auto authority = text.substr(start + 3);
  authority.resize(std::min(authority.find_first_of("/?#"), authority.size()));
  const auto user = authority.rfind('@');
  if (user != std::string::npos) authority.erase(0, user + 1);
  return text.substr(0, start + 3) + authority;
}

bool turnsIntoGet(int status, const std::string& method) {
  if (status == 303) return method != "HEAD";
  return (status == 301 || status == 302) && method == "POST";
}

}  // namespace

bool isRedirect(int status) {
  return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

URLRequest redirected(const URLRequest& request, int status, URL location) {
  auto next = request;
  if (turnsIntoGet(status, request.httpMethod())) {
    next.setHTTPMethod("GET");
    next.setHTTPBody(std::nullopt);
    next.setValue(std::nullopt, "Content-Type");
  }
  if (!isSameOrigin(request.url(), location)) {
    next.setValue(std::nullopt, "Authorization");
    next.setValue(std::nullopt, "Cookie");
  }
  next.setURL(std::move(location));
  return next;
}

bool isSameOrigin(const URL& one, const URL& other) {
  return isSameASCIIText(origin(one), origin(other));
}

bool isLoadable(const URL& url) {
  const auto scheme = url.scheme();
  return scheme && (isSameASCIIText(*scheme, "http") || isSameASCIIText(*scheme, "https"));
}

bool isSecure(const URL& url) { return isSameASCIIText(url.scheme().value_or(""), "https"); }

bool isSameASCIIText(std::string_view one, std::string_view other) {
  return one.size() == other.size() && ::strncasecmp(one.data(), other.data(), one.size()) == 0;
}

}  // namespace Foundation::detail
