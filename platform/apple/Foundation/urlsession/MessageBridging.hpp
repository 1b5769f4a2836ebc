#pragma once

#import <Foundation/Foundation.h>

#include "platform/Foundation/URLRequest.hpp"
#include "platform/Foundation/URLResponse.hpp"

namespace Foundation {

/// Nil for an address that the platform does not read.
[[nodiscard]] NSURLRequest* nativeRequest(const URLRequest& request);

/// Null for nil.
[[nodiscard]] URLResponsePtr responseFrom(NSURLResponse* response);

/// True when HTTP gives that answer to that request no body, not even an empty one.
[[nodiscard]] bool hasNoBody(const URLRequest& request, const URLResponsePtr& response);

}  // namespace Foundation
