#include "platform/embedded/Foundation/urlsession/URLErrors.hpp"

#include <system_error>
#include <utility>

#include "platform/Foundation/FileManager.hpp"

namespace Foundation::detail {

namespace {

std::string schemeIn(const URL& url) { return url.scheme().value_or(""); }

std::string wordsFor(NSURLErrorCode code, const URL& url) {
  const auto host = hostName(url);
  switch (code) {
    case NSURLErrorCancelled:
      return "Loading from " + host + " was cancelled.";
    case NSURLErrorBadURL:
      return "\"" + url.absoluteString() + "\" is not an address that can be loaded.";
    case NSURLErrorTimedOut:
      return host + " took too long to answer.";
    case NSURLErrorUnsupportedURL:
      return "Addresses of the kind \"" + schemeIn(url) + "\" cannot be loaded, such as \"" +
             url.absoluteString() + "\".";
    case NSURLErrorCannotFindHost:
      return "The host " + host + " was not found.";
    case NSURLErrorCannotConnectToHost:
      return "Could not connect to " + host + ".";
    case NSURLErrorNetworkConnectionLost:
      return "The connection to " + host + " was lost.";
    case NSURLErrorHTTPTooManyRedirects:
      return "There were too many redirects, the last one to " + host + ".";
    case NSURLErrorNotConnectedToInternet:
      return host + " cannot be reached: there is no connection to the network.";
    case NSURLErrorRedirectToNonExistentLocation:
      return host + " redirected to something that is not an address.";
    case NSURLErrorCannotDecodeRawData:
      return "What " + host + " sent could not be decompressed.";
    case NSURLErrorCannotParseResponse:
      return "The answer of " + host + " was not understood.";
    case NSURLErrorDataLengthExceedsMaximum:
      return "The answer of " + host + " is too long.";
    case NSURLErrorSecureConnectionFailed:
      return "A secure connection to " + host + " could not be made.";
    case NSURLErrorServerCertificateHasBadDate:
      return "The certificate of " + host + " has expired.";
    case NSURLErrorServerCertificateUntrusted:
      return "The certificate of " + host + " is not trusted.";
    case NSURLErrorServerCertificateHasUnknownRoot:
      return "The certificate of " + host + " was issued by somebody unknown.";
    case NSURLErrorServerCertificateNotYetValid:
      return "The certificate of " + host + " is not valid yet.";
    case NSURLErrorClientCertificateRequired:
      return host + " asks for a certificate of its clients.";
    case NSURLErrorCannotCreateFile:
      return "The file for what comes from " + host + " could not be made.";
    case NSURLErrorCannotWriteToFile:
      return "What came from " + host + " could not be written to a file.";
    default:
      return "Loading from " + host + " failed.";
  }
}

}  // namespace

std::string hostName(const URL& url) {
  const auto host = url.host();
  return host && !host->empty() ? *host : "\"" + url.absoluteString() + "\"";
}

NSError urlErrorInWords(NSURLErrorCode code, const URL& url, std::string words,
                        const std::optional<NSError>& because) {
  NSError::UserInfo userInfo;
  userInfo.emplace(NSLocalizedDescriptionKey, std::move(words));
  userInfo.emplace(kURLErrorFailingURLStringKey, url.absoluteString());
  if (because) userInfo.emplace(NSUnderlyingErrorKey, *because);
  return {std::string(NSURLErrorDomain), code, std::move(userInfo)};
}

NSError urlError(NSURLErrorCode code, const URL& url, const std::optional<NSError>& because) {
  return urlErrorInWords(code, url, wordsFor(code, url), because);
}

NSError posixError(int number) {
  return NSError::withDescription(std::string(NSPOSIXErrorDomain), number,
                                  std::system_category().message(number));
}

}  // namespace Foundation::detail
