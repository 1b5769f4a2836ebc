#include "platform/embedded/Foundation/urlsession/TransferError.hpp"

#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>

#include <cerrno>
#include <memory>

#include "platform/embedded/Foundation/urlsession/URLErrors.hpp"

namespace Foundation::detail {

namespace {

NSError curlError(const CurlFailure& failure) {
  return NSError::withDescription(
      "libcurl", failure.code,
      failure.text.empty() ? curl_easy_strerror(failure.code) : failure.text);
}

// OpenSSL's numbers, which are part of its interface; its headers are not needed for them.
enum CertificateError : long {
  kGood = 0,
  kUnspecified = 1,  // what libcurl leaves there when the certificate names another host
  kNoIssuer = 2,
  kNotYetValid = 9,
  kExpired = 10,
  kSelfSigned = 18,
  kSelfSignedInChain = 19,
  kNoLocalIssuer = 20,
  kNoWayToVerify = 21,
};

NSURLErrorCode certificateCode(long error) {
  switch (error) {
    case kExpired:
      return NSURLErrorServerCertificateHasBadDate;
    case kNotYetValid:
      return NSURLErrorServerCertificateNotYetValid;
    case kNoIssuer:
    case kSelfSignedInChain:
    case kNoLocalIssuer:
    case kNoWayToVerify:
      return NSURLErrorServerCertificateHasUnknownRoot;
    default:
      return NSURLErrorServerCertificateUntrusted;
  }
}

NSError certificateError(const CurlFailure& failure, const URL& url) {
  const auto host = hostName(url);
  const auto because = curlError(failure);
  if (failure.certificateError == kGood || failure.certificateError == kUnspecified) {
    return urlErrorInWords(NSURLErrorServerCertificateUntrusted, url,
                           "The certificate that " + host + " showed is for another host.",
                           because);
  }
  if (failure.certificateError == kSelfSigned) {
    return urlErrorInWords(NSURLErrorServerCertificateUntrusted, url,
                           "The certificate of " + host + " is signed by nobody but itself.",
                           because);
  }
  return urlError(certificateCode(failure.certificateError), url, because);
}

bool networkIsMissing(long systemError) {
  return systemError == ENETUNREACH || systemError == ENETDOWN;
}

// With TLS 1.3 a server asks for the certificate when the connection stands already.
bool wantsClientCertificate(const CurlFailure& failure) {
  return failure.code == CURLE_SSL_CLIENTCERT ||
         failure.text.find("certificate required") != std::string::npos;
}

bool isRefusedByProxy(const CurlFailure& failure) {
  return failure.code == CURLE_RECV_ERROR && failure.proxyStatus != 0 &&
         failure.proxyStatus / 100 != 2;
}

NSURLErrorCode codeFor(const CurlFailure& failure, bool networkIsUp) {
  if (isRefusedByProxy(failure)) return NSURLErrorCannotConnectToHost;
  switch (failure.code) {
    case CURLE_URL_MALFORMAT:
      return NSURLErrorBadURL;
    case CURLE_OPERATION_TIMEDOUT:
      return NSURLErrorTimedOut;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return networkIsUp ? NSURLErrorCannotFindHost : NSURLErrorNotConnectedToInternet;
    case CURLE_COULDNT_CONNECT:
    case CURLE_PROXY:
      return networkIsMissing(failure.systemError) ? NSURLErrorNotConnectedToInternet
                                                   : NSURLErrorCannotConnectToHost;
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
      return NSURLErrorNetworkConnectionLost;
    case CURLE_UNSUPPORTED_PROTOCOL:  // its word for a server that answers without HTTP's first line
    case CURLE_WEIRD_SERVER_REPLY:
      return NSURLErrorCannotParseResponse;
    case CURLE_BAD_CONTENT_ENCODING:
      return NSURLErrorCannotDecodeRawData;
    case CURLE_OUT_OF_MEMORY:
    case CURLE_FILESIZE_EXCEEDED:
      return NSURLErrorDataLengthExceedsMaximum;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ENGINE_INITFAILED:
      return NSURLErrorSecureConnectionFailed;
    default:
      return NSURLErrorUnknown;
  }
}

}  // namespace

NSError transferError(const CurlFailure& failure, const URL& url, bool networkIsUp) {
  if (failure.code == CURLE_PEER_FAILED_VERIFICATION) return certificateError(failure, url);
  const auto code = wantsClientCertificate(failure) ? NSURLErrorClientCertificateRequired
                                                    : codeFor(failure, networkIsUp);
  return urlError(code, url, curlError(failure));
}

bool networkIsUp() {
  ifaddrs* list = nullptr;
  if (::getifaddrs(&list) != 0) return true;
  const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> owner(list, ::freeifaddrs);
  for (const auto* entry = list; entry != nullptr; entry = entry->ifa_next) {
    if (entry->ifa_addr == nullptr || (entry->ifa_flags & IFF_LOOPBACK) != 0) continue;
    const bool isUp = (entry->ifa_flags & IFF_UP) != 0 && (entry->ifa_flags & IFF_RUNNING) != 0;
    const auto family = entry->ifa_addr->sa_family;
    if (isUp && (family == AF_INET || family == AF_INET6)) return true;
  }
  return false;
}

}  // namespace Foundation::detail
