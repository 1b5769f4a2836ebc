#pragma once

#include <curl/curl.h>

#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/URL.hpp"

namespace Foundation::detail {

/// How libcurl said that a transfer has failed.
struct CurlFailure {
  CURLcode code = CURLE_OK;
  long systemError = 0;       ///< CURLINFO_OS_ERRNO
  long certificateError = 0;  ///< CURLINFO_SSL_VERIFYRESULT, one of OpenSSL's X509_V_ERR numbers
  long proxyStatus = 0;       ///< CURLINFO_HTTP_CONNECTCODE, 0 without a proxy's tunnel
  std::string text;           ///< what its error buffer says
};

/// The platform's error for it. `networkIsUp`: whether the machine has any network but the loopback,
/// which tells a host that is not known from a missing network.
[[nodiscard]] NSError transferError(const CurlFailure& failure, const URL& url, bool networkIsUp);

/// True when an interface other than the loopback is up and has an address.
[[nodiscard]] bool networkIsUp();

}  // namespace Foundation::detail
