#include "platform/embedded/Foundation/URLLoading.hpp"

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <string_view>
#include <utility>

namespace Foundation {

namespace {

struct DownloadFolderChoice {
  std::mutex mutex;
  std::optional<std::string> path;
};

DownloadFolderChoice& downloadFolderChoice() {
  static auto& instance = *new DownloadFolderChoice;
  return instance;
}

std::atomic<std::int64_t> maximum = std::int64_t{1} << 30U;

std::optional<std::string> chosenFolder() {
  const std::lock_guard lock(downloadFolderChoice().mutex);
  return downloadFolderChoice().path;
}

// Absent unless the variable names a folder by its full path.
std::optional<std::string> folderIn(const char* variable) {
  const char* const value = std::getenv(variable);
  if (value == nullptr || *value != '/') return std::nullopt;
  return value;
}

}  // namespace

void setDownloadFolder(std::optional<std::string> path) {
  const std::lock_guard lock(downloadFolderChoice().mutex);
  downloadFolderChoice().path = std::move(path);
}

std::string downloadFolder() {
  if (auto folder = chosenFolder()) return *folder;
  if (auto folder = folderIn("TMPDIR")) return *folder;
  if (const auto cache = folderIn("XDG_CACHE_HOME")) return *cache + "/TQStoreKitLib";
  if (const auto home = folderIn("HOME")) return *home + "/.cache/TQStoreKitLib";
  return "/tmp";
}

void setMaximumDataLength(std::int64_t bytes) { maximum = bytes; }
std::int64_t maximumDataLength() { return maximum; }

}  // namespace Foundation
