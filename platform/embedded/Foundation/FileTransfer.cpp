#include "platform/embedded/Foundation/FileTransfer.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/embedded/Foundation/FileCopy.hpp"
#include "platform/embedded/Foundation/SystemError.hpp"

namespace Foundation {

namespace fs = std::filesystem;

namespace {

// A folder beside the place that something is on its way to, thus in its file system; it goes away
// with what is still in it.
class WayStation {
 public:
  explicit WayStation(const fs::path& destination) {
    auto name = (destination.parent_path() / ".arriving-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) {
      error_ = lastSystemError();
    } else {
      folder_ = name;
    }
  }
  ~WayStation() {
    std::error_code ignored;
    if (!folder_.empty()) fs::remove_all(folder_, ignored);
  }
  WayStation(const WayStation&) = delete;
  WayStation& operator=(const WayStation&) = delete;

  [[nodiscard]] std::error_code error() const { return error_; }
  [[nodiscard]] fs::path place() const { return folder_ / "item"; }

 private:
  fs::path folder_;
  std::error_code error_;
};

bool isThere(const fs::path& path) {
  std::error_code error;
  return fs::exists(fs::symlink_status(path, error)) && !error;
}

// Whether `place` would be in that folder, at whatever depth.
bool isInside(const fs::path& place, const fs::path& folder) {
  std::error_code error;
  const auto inner = fs::weakly_canonical(place, error);
  const auto outer = fs::canonical(folder, error);
  const auto [end, differing] =
      std::mismatch(outer.begin(), outer.end(), inner.begin(), inner.end());
  return !error && end == outer.end();
}

bool isRegularFile(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(fs::symlink_status(path, ignored));
}

// A file gets its new name before it loses the old one, which fails when that name is taken. It is
// the only rename that replaces nothing on every system.
std::error_code relink(const fs::path& from, const fs::path& to) {
  if (::link(from.c_str(), to.c_str()) != 0) return lastSystemError();
  if (::unlink(from.c_str()) == 0) return {};
  const auto error = lastSystemError();
  ::unlink(to.c_str());
  return error;
}

// For what can't be linked: folders, symbolic links, and file systems without links.
std::error_code renameIfFree(const fs::path& from, const fs::path& to) {
  if (isThere(to)) return std::make_error_code(std::errc::file_exists);
  std::error_code error;
  fs::rename(from, to, error);
  return error;
}

bool hasNoLinks(std::error_code error) {
  return error == std::errc::operation_not_permitted ||
         error == std::errc::operation_not_supported ||
         error == std::errc::function_not_supported || error == std::errc::too_many_links;
}

std::error_code moveWithinFileSystem(const fs::path& from, const fs::path& to) {
  if (!isRegularFile(from)) return renameIfFree(from, to);
  const auto error = relink(from, to);
  return hasNoLinks(error) ? renameIfFree(from, to) : error;
}

// A file that can't be removed is left alone in its old place. Of a folder, part may be gone by
// then: its copy stays.
std::error_code removeOriginal(const fs::path& from, const fs::path& copy) {
  const bool isFile = isRegularFile(from);
  std::error_code error;
  std::error_code ignored;
  fs::remove_all(from, error);
  if (error && isFile) fs::remove(copy, ignored);
  return error;
}

}  // namespace

std::error_code copyToFreePlace(const fs::path& from, const fs::path& to) {
  if (isThere(to)) return std::make_error_code(std::errc::file_exists);
  if (isInside(to, from)) return std::make_error_code(std::errc::invalid_argument);
  const WayStation station(to);
  if (station.error()) return station.error();
  if (const auto failed = copyTree(from, station.place())) return failed;
  return moveWithinFileSystem(station.place(), to);
}

std::error_code moveToFreePlace(const fs::path& from, const fs::path& to) {
  const auto error = moveWithinFileSystem(from, to);
  if (error != std::errc::cross_device_link) return error;
  if (const auto failed = copyToFreePlace(from, to)) return failed;
  return removeOriginal(from, to);
}

}  // namespace Foundation
