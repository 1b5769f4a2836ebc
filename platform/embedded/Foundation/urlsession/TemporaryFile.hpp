#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>

namespace Foundation::detail {

/// A file of our own in the download folder, removed with the object unless it was moved away. What
/// stands in its place by then and is another file stays.
///
/// Thread: one at a time.
class TemporaryFile {
 public:
  TemporaryFile() = default;
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /// Makes the file, and its folder when there is none. Answers with `errno`, or 0 when it is there.
  [[nodiscard]] int create(const std::string& folder);
  /// Adds to the file; answers with `errno`, or 0 when all of it is written.
  [[nodiscard]] int write(std::string_view bytes);

  /// Removes the file now.
  void remove();

  [[nodiscard]] bool exists() const { return !path_.empty(); }
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  int file_ = -1;  // open to the end: meanwhile no other file can have the same number
  std::string path_;
  dev_t device_ = 0;
  ino_t number_ = 0;
};

}  // namespace Foundation::detail
