#pragma once

#include <sys/types.h>

#include <optional>
#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/Foundation/URL.hpp"

namespace Foundation {

/// A downloaded file that goes away with this object, unless somebody moved it. What stands in its
/// place by then and is another file stays.
class DownloadedFile {
 public:
  /// Moves the file at `path` beside itself: the platform removes what is at that path, whatever it
  /// is by then.
  explicit DownloadedFile(const std::string& path);
  ~DownloadedFile();
  DownloadedFile(const DownloadedFile&) = delete;
  DownloadedFile& operator=(const DownloadedFile&) = delete;

  [[nodiscard]] URL url() const { return URL::fileURLWithPath(path_); }
  /// Why the file could not be moved; there is none then.
  [[nodiscard]] const std::optional<NSError>& error() const { return error_; }

 private:
  std::string path_;
  std::optional<NSError> error_;
  dev_t device_ = 0;
  ino_t number_ = 0;
};

}  // namespace Foundation
