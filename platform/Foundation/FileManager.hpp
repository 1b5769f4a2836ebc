#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/URL.hpp"

namespace Foundation {

/// User-info key of the path that could not be worked on; its value is a `std::string`.
inline constexpr std::string_view kFilePathErrorKey = "NSFilePath";
/// The domain of the system's own errors, with `errno` as the code: what lies beneath a file error.
inline constexpr std::string_view NSPOSIXErrorDomain = "NSPOSIXErrorDomain";

/// The codes of `NSCocoaErrorDomain` that file operations have. The platform may send others.
enum NSFileErrorCode : std::int64_t {
  NSFileNoSuchFileError = 4,
  NSFileReadUnknownError = 256,
  NSFileReadNoPermissionError = 257,
  NSFileReadInvalidFileNameError = 258,
  NSFileReadNoSuchFileError = 260,
  NSFileReadUnsupportedSchemeError = 262,
  NSFileWriteUnknownError = 512,
  NSFileWriteNoPermissionError = 513,
  NSFileWriteInvalidFileNameError = 514,
  NSFileWriteFileExistsError = 516,
  NSFileWriteUnsupportedSchemeError = 518,
  NSFileWriteOutOfSpaceError = 640,
  NSFileWriteVolumeReadOnlyError = 642,
};

/// Works on the files of the system.
///
/// Addresses are file URLs; another one is an error. Each operation answers with nothing when it
/// went well, else with an error in `NSCocoaErrorDomain` that names the path and has the system's
/// own error beneath.
/// Thread: any, several at the same time; a call may take long and waits for the disk.
class FileManager {
 public:
  enum class Kind { nothing, file, folder };

  FileManager(const FileManager&) = delete;
  FileManager& operator=(const FileManager&) = delete;

  /// The process's one file manager; made on first use, never destroyed.
  [[nodiscard]] static FileManager& defaultManager();

  /// What is at `path`. Symbolic links are followed; one that leads nowhere is nothing.
  [[nodiscard]] Kind kind(std::string_view path) const;
  [[nodiscard]] bool fileExists(std::string_view path) const { return kind(path) != Kind::nothing; }

  /// Removes a file, a symbolic link (not what it leads to), or a folder with everything in it.
  [[nodiscard]] std::optional<NSError> removeItem(const URL& url);

  /// Makes a folder. With `withIntermediateDirectories` those above it are made too, and one that
  /// is there already is fine; without, both are errors.
  [[nodiscard]] std::optional<NSError> createDirectory(const URL& url,
                                                       bool withIntermediateDirectories);

  /// Copies a file or a folder with everything in it. As for `moveItem`, nothing may be at `to`,
  /// and nothing is left there when it fails. Takes the same memory for any size.
  [[nodiscard]] std::optional<NSError> copyItem(const URL& from, const URL& to);

  /// Moves a file or a folder, also to another file system. Whatever is at `to`, a folder too, is
  /// an error and stays as it is. When it fails, what was to be moved is still in its place, and
  /// nothing new at `to`; only of a folder that went to another file system and can't be removed
  /// from the old one, the copy stays as well.
  [[nodiscard]] std::optional<NSError> moveItem(const URL& from, const URL& to);

 private:
  FileManager() = default;
  ~FileManager() = default;
};

}  // namespace Foundation
