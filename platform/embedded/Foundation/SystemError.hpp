#pragma once

#include <cerrno>
#include <system_error>

namespace Foundation {

/// Why the last call to the system failed, by `errno`.
[[nodiscard]] inline std::error_code lastSystemError() { return {errno, std::generic_category()}; }

}  // namespace Foundation
