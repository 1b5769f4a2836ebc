#include "platform/embedded/Foundation/urlsession/Redirect.hpp"

#include <strings.h>

#include <algorithm>
#include <utility>

namespace Foundation::detail {

namespace {

constexpr std::string_view kBeforeAuthority = "://";

// "HTTP://Host:80" of "HTTP://User@Host:80/path?query".
std::string origin(const URL& url) {
  std::string site(siteOf(url));
  const auto start = site.find(kBeforeAuthority);
  const auto user = site.rfind('@');
  if (start == std::string::npos || user == std::string::npos) return site;
  const auto authority = start + kBeforeAuthority.size();
  return site.erase(authority, user + 1 - authority);
}

bool hasScheme(const URL& url, std::string_view schemeAndColon) {
  const std::string_view text = url.absoluteString();
  return isSameASCIIText(text.substr(0, schemeAndColon.size()), schemeAndColon);
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

std::string_view siteOf(const URL& url) {
  const std::string_view text = url.absoluteString();
  const auto start = text.find(kBeforeAuthority);
  if (start == std::string_view::npos) return text;
  const auto* const end = std::find_if(text.begin() + start + kBeforeAuthority.size(), text.end(),
                                       [](char c) { return c == '/' || c == '?' || c == '#'; });
  return {text.begin(), end};
}

bool namesAHost(const URL& url) {
  const auto site = siteOf(url);
  return site.find(kBeforeAuthority) != std::string_view::npos && !site.ends_with(kBeforeAuthority);
}

bool isLoadable(const URL& url) { return hasScheme(url, "http:") || isSecure(url); }
bool isSecure(const URL& url) { return hasScheme(url, "https:"); }

bool isSameASCIIText(std::string_view one, std::string_view other) {
  return one.size() == other.size() && ::strncasecmp(one.data(), other.data(), one.size()) == 0;
}

}  // namespace Foundation::detail
