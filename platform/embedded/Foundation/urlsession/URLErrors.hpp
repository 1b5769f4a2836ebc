#pragma once

#include <optional>
#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/URL.hpp"
#include "platform/Foundation/URLError.hpp"

namespace Foundation::detail {

/// The host as people know it; the address itself, in quotes, when it has none.
[[nodiscard]] std::string hostName(const URL& url);

/// An error in `NSURLErrorDomain` that says in plain words what happened with the address' host.
/// `because` is what the system or the network library says, if anything: the underlying error.
[[nodiscard]] NSError urlError(NSURLErrorCode code, const URL& url,
                               const std::optional<NSError>& because = std::nullopt);

/// The same with `words` of one's own instead of those that belong to the code.
[[nodiscard]] NSError urlErrorInWords(NSURLErrorCode code, const URL& url, std::string words,
                                      const std::optional<NSError>& because = std::nullopt);

/// What the system calls `number`.
[[nodiscard]] NSError posixError(int number);

}  // namespace Foundation::detail
