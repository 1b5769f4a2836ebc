#pragma once

#include <optional>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/URLRequest.hpp"

namespace Foundation {

/// Why no HTTP message can say `request`. The platform would send some of these, changed or not,
/// and load other kinds of address.
[[nodiscard]] std::optional<NSError> problemOf(const URLRequest& request);

}  // namespace Foundation
