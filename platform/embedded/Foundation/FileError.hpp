#pragma once

#include <string>
#include <string_view>
#include <system_error>

#include "platform/Foundation/NSError.hpp"

namespace Foundation {

/// The platform's error for a file operation that the system refused: `what` says what was tried,
/// as in "“a” can’t be removed"; `path` is the one to blame.
[[nodiscard]] NSError fileError(std::error_code reason, std::string_view what, std::string path);

}  // namespace Foundation
