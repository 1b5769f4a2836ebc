#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/NSError.hpp"

namespace StoreKit {

/// What is in a folder of hosted content. Paths are relative to it, and in alphabetical order.
struct ContentListing {
  struct File {
    std::filesystem::path path;
    std::int64_t length = 0;  ///< bytes
  };

  std::vector<std::filesystem::path> folders{};  ///< each after the one that it is in
  std::vector<File> files{};

  /// Bytes of all files.
  [[nodiscard]] std::int64_t length() const;
};

struct ContentReading {
  ContentListing listing{};
  /// Why the content cannot be used; the listing is empty then.
  std::optional<Foundation::NSError> error{};
};

/// Looks through `folder`. It may be a symbolic link itself, but content is made of files and
/// folders: a symbolic link in it, which could lead anywhere, is an error, and so is a pipe or a
/// device.
[[nodiscard]] ContentReading listContent(const std::string& folder);

/// The error for something that could not be read: in `NSCocoaErrorDomain`, with the path and the
/// system's own error beneath.
[[nodiscard]] Foundation::NSError contentReadError(std::error_code reason, const std::string& path);

}  // namespace StoreKit
