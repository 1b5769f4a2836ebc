#include "platform/embedded/Foundation/urlsession/TemporaryFile.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

namespace Foundation::detail {

TemporaryFile::~TemporaryFile() { remove(); }

void TemporaryFile::remove() {
  struct stat now{};
  const bool isThere = exists() && ::lstat(path_.c_str(), &now) == 0;
  if (isThere && now.st_dev == device_ && now.st_ino == number_) ::unlink(path_.c_str());
  if (file_ >= 0) ::close(std::exchange(file_, -1));
  path_.clear();
}

int TemporaryFile::create(const std::string& folder) {
  std::error_code ignored;  // the file cannot be made then either, and says why
  std::filesystem::create_directories(folder, ignored);
  std::string path = folder + "/download-XXXXXX.tmp";
  file_ = ::mkostemps(path.data(), 4, O_CLOEXEC);
  if (file_ < 0) return errno;
  path_ = std::move(path);
  struct stat made{};
  if (::fstat(file_, &made) != 0) return errno;
  device_ = made.st_dev;
  number_ = made.st_ino;
  return 0;
}

int TemporaryFile::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::write(file_, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return 0;
}

}  // namespace Foundation::detail
