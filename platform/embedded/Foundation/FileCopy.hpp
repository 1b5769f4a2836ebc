#pragma once

#include <filesystem>
#include <system_error>

namespace Foundation {

/// Copies a file, a symbolic link or a folder with everything in it, to a place where nothing is.
/// Files keep their permissions and the time of their last change. What was copied before a failure
/// is still there. Takes the same memory for any size.
[[nodiscard]] std::error_code copyTree(const std::filesystem::path& from,
                                       const std::filesystem::path& to);

}  // namespace Foundation
