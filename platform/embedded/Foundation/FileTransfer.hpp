#pragma once

#include <filesystem>
#include <system_error>

namespace Foundation {

/// Copies a file or a folder with everything in it to a place where nothing is. It appears there
/// complete, under another name first; takes the same memory for any size.
[[nodiscard]] std::error_code copyToFreePlace(const std::filesystem::path& from,
                                              const std::filesystem::path& to);

/// Moves a file or a folder to a place where nothing is, in whatever file system that place is.
[[nodiscard]] std::error_code moveToFreePlace(const std::filesystem::path& from,
                                              const std::filesystem::path& to);

}  // namespace Foundation
