#include "platform/embedded/Foundation/urlsession/CurlRequest.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "platform/embedded/Foundation/urlsession/Redirect.hpp"
#include "platform/embedded/Foundation/urlsession/URLErrors.hpp"

namespace Foundation::detail {

namespace {

bool isTokenCharacter(char c) {
  constexpr std::string_view kOthers = "!#$%&'*+-.^_`|~";
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
         kOthers.find(c) != std::string_view::npos;
}

bool isToken(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), isTokenCharacter);
}

bool isFieldValue(std::string_view text) {
  constexpr std::string_view kNever("\r\n\0", 3);
  return text.find_first_of(kNever) == std::string_view::npos;
}

// How long the message is and where it ends is said by who sends it: a wrong word here would make
// the server take one message for two.
bool isOurs(const std::string& name) {
  constexpr std::array<std::string_view, 4> kOurs = {"Content-Length", "Transfer-Encoding",
                                                     "Connection", "Cookie"};
  return std::any_of(kOurs.begin(), kOurs.end(),
                     [&](std::string_view ours) { return isSameASCIIText(ours, name); });
}

const char* variable(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : nullptr;
}

bool namesAProxy() {
  constexpr std::array kVariables = {"http_proxy", "https_proxy", "HTTPS_PROXY", "all_proxy",
                                     "ALL_PROXY"};
  return std::any_of(kVariables.begin(), kVariables.end(),
                     [](const char* name) { return variable(name) != nullptr; });
}

// A method with a body, or one of which servers expect a length.
bool sendsBody(const URLRequest& request) {
  const auto& method = request.httpMethod();
  return request.httpBody() || method == "POST" || method == "PUT" || method == "PATCH";
}

void applyBody(const URLRequest& request, CURL* easy) {
  const void* bytes = "";
  std::size_t size = 0;
  if (const auto& body = request.httpBody(); body && !body->empty()) {
    bytes = body->data();
    size = body->size();
  }
  curl_easy_setopt(easy, CURLOPT_POST, 1L);
  curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(size));
  curl_easy_setopt(easy, CURLOPT_POSTFIELDS, bytes);
}

// From whatever the handle was used for before: a GET takes back the other methods.
void applyMethod(const URLRequest& request, CURL* easy) {
  const auto& method = request.httpMethod();
  curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
  const bool sends = sendsBody(request);
  if (method == "HEAD") {
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
  } else if (sends) {
    applyBody(request, easy);
  }
  const bool isUsual = method == "HEAD" || method == (sends ? "POST" : "GET");
  curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, isUsual ? nullptr : method.c_str());
}

}  // namespace

std::optional<NSError> problemOf(const URLRequest& request) {
  const auto& url = request.url();
  if (!isLoadable(url)) return urlError(NSURLErrorUnsupportedURL, url);
  if (!namesAHost(url)) return urlError(NSURLErrorBadURL, url);
  if (!isToken(request.httpMethod())) {
    return urlErrorInWords(NSURLErrorBadURL, url,
                           "The request for " + hostName(url) + " has a method that is none.");
  }
  for (const auto& [name, value] : request.allHTTPHeaderFields()) {
    if (isToken(name) && isFieldValue(value)) continue;
    return urlErrorInWords(
        NSURLErrorBadURL, url,
        "The request for " + hostName(url) + " has a header field that cannot be sent.");
  }
  return std::nullopt;
}

CurlRequest::List CurlRequest::fieldList(const URLRequest& request) {
  List list;
  const auto add = [&list](const std::string& line) {
    auto* const first = curl_slist_append(list.get(), line.c_str());
    if (!list) list.reset(first);
  };
  for (const auto& [name, value] : request.allHTTPHeaderFields()) {
    if (isOurs(name)) continue;
    auto line = name;
    line += value.empty() ? ";" : ": ";
    add(line += value);
  }
  if (!sendsBody(request)) return list;
  add("Expect:");
  if (!request.value("Content-Type")) add("Content-Type:");
  return list;
}

void CurlRequest::apply(const URLRequest& request, CURL* easy) {
  curl_easy_setopt(easy, CURLOPT_URL, request.url().absoluteString().c_str());
  applyMethod(request, easy);
  // A second transfer waits to hear whether it can share the connection of the first.
  curl_easy_setopt(easy, CURLOPT_PIPEWAIT, isSecure(request.url()) ? 1L : 0L);
  const auto cookie = request.value("Cookie");
  curl_easy_setopt(easy, CURLOPT_COOKIE, cookie ? cookie->c_str() : nullptr);
  auto fields = fieldList(request);
  curl_easy_setopt(easy, CURLOPT_HTTPHEADER, fields.get());
  fields_ = std::move(fields);
}

void applyCommonOptions(CURL* easy, CURLSH* share) {
  constexpr long kNever = 24L * 60 * 60 * 365;  // our own clock ends what takes too long
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(easy, CURLOPT_QUICK_EXIT,
                   1L);  // do not wait for a name server to drop a transfer
  curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT, kNever);
  curl_easy_setopt(easy, CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(easy, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
  curl_easy_setopt(easy, CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
  curl_easy_setopt(easy, CURLOPT_SHARE, share);
  curl_easy_setopt(easy, CURLOPT_COOKIEFILE, "");  // cookies are kept, in the share
  curl_easy_setopt(easy, CURLOPT_TCP_KEEPALIVE, 1L);
  curl_easy_setopt(easy, CURLOPT_USERAGENT, "TQStoreKitLib");
  if (!namesAProxy()) curl_easy_setopt(easy, CURLOPT_NOPROXY, "*");  // else it looks each time
  const char* const bundle = variable("CURL_CA_BUNDLE");
  const char* const roots = bundle != nullptr ? bundle : variable("SSL_CERT_FILE");
  if (roots != nullptr) curl_easy_setopt(easy, CURLOPT_CAINFO, roots);
  if (const char* const folder = variable("SSL_CERT_DIR")) {
    curl_easy_setopt(easy, CURLOPT_CAPATH, folder);
  }
}

}  // namespace Foundation::detail
