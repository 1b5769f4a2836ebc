#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/URLRequest.hpp"

namespace Foundation::detail {

/// True for the statuses that send a client elsewhere.
[[nodiscard]] bool isRedirect(int status);

/// The request that follows `request` to `location` after an answer with this status.
///
/// 303 turns every method but HEAD into a GET without a body, 301 and 302 a POST; otherwise method
/// and body stay. What identifies the user (Authorization, Cookie) is not told to another origin.
[[nodiscard]] URLRequest redirected(const URLRequest& request, int status, URL location);

/// True when the addresses have the same scheme, host and port, as they are written.
[[nodiscard]] bool isSameOrigin(const URL& one, const URL& other);

/// The address up to its path: "http://host:80".
[[nodiscard]] std::string_view siteOf(const URL& url);

/// False without a host, as in "http:///goods", where libcurl would take "goods" for one.
[[nodiscard]] bool namesAHost(const URL& url);

/// True for "http" and "https".
[[nodiscard]] bool isLoadable(const URL& url);
/// True for "https".
[[nodiscard]] bool isSecure(const URL& url);

/// Whether the texts differ at most in the case of ASCII letters.
[[nodiscard]] bool isSameASCIIText(std::string_view one, std::string_view other);

}  // namespace Foundation::detail
