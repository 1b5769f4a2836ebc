#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/Foundation/NSError.hpp"

namespace StoreKit {

/// One file that is copied in pieces.
///
/// Each step answers with an error when it fails; what was written by then is left there.
class FileInCopy {
 public:
  using Failure = std::optional<Foundation::NSError>;

  /// `length` is how long the file is said to be; one that turns out to have another length is an
  /// error.
  FileInCopy(std::filesystem::path from, std::filesystem::path to, std::int64_t length);
  FileInCopy(const FileInCopy&) = delete;
  FileInCopy& operator=(const FileInCopy&) = delete;
  ~FileInCopy();

  /// Opens both; nothing may be at the new place.
  [[nodiscard]] Failure open();
  /// Copies so many bytes; not more than are left.
  [[nodiscard]] Failure copy(std::int64_t count);
  /// Ends the copy when nothing is left.
  [[nodiscard]] Failure close();

  [[nodiscard]] std::int64_t left() const { return left_; }

 private:
  [[nodiscard]] Failure copyPortion(char* portion, std::size_t count);
  [[nodiscard]] Failure writeAll(const char* bytes, std::size_t count);
  [[nodiscard]] Failure checkLength() const;

  std::filesystem::path from_;
  std::filesystem::path to_;
  std::int64_t length_;
  std::int64_t left_;
  int source_ = -1;
  int copy_ = -1;
};

}  // namespace StoreKit
