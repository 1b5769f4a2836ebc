#include "platform/embedded/store/ledger/OwnerLock.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <utility>

#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace StoreKit::detail {

OwnerLock::OwnerLock(std::string ledgerPath, std::int64_t owner)
    : ledgerPath_(std::move(ledgerPath)), owner_(owner) {
  if (ledgerPath_ == ":memory:") return;
  lock();
  sweep();
}

// Another process may take the file for one that was left behind, in the moment before it is
// locked, and remove it: then there is a new one to lock.
void OwnerLock::lock() {
  const auto path = fileOf(owner_);
  for (;;) {
    file_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file_ < 0 || ::flock(file_, LOCK_EX) != 0) {
      throw Foundation::detail::SqliteError(SQLITE_CANTOPEN, path + ": " + std::strerror(errno));
    }
    struct stat locked{};
    struct stat there{};
    if (::fstat(file_, &locked) == 0 && ::stat(path.c_str(), &there) == 0 &&
        locked.st_ino == there.st_ino && locked.st_dev == there.st_dev) {
      return;
    }
    ::close(file_);
  }
}

void OwnerLock::sweep() const {
  namespace fs = std::filesystem;
  const auto prefix = fs::path(fileOf(0)).filename().string();
  const auto stem = prefix.substr(0, prefix.size() - 1);
  const auto folder = fs::path(ledgerPath_).parent_path();
  std::error_code error;
  for (const auto& file : fs::directory_iterator(folder.empty() ? "." : folder, error)) {
    const auto name = file.path().filename().string();
    if (name.starts_with(stem)) (void)isAlive(std::atoll(name.c_str() + stem.size()));
  }
}

OwnerLock::~OwnerLock() {
  if (file_ < 0) return;
  ::unlink(fileOf(owner_).c_str());
  ::close(file_);
}

std::string OwnerLock::fileOf(std::int64_t owner) const {
  return ledgerPath_ + "-owner-" + std::to_string(owner);
}

bool OwnerLock::isAlive(std::int64_t owner) const {
  if (owner == owner_) return true;
  if (ledgerPath_ == ":memory:") return false;
  const auto path = fileOf(owner);
  const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
  if (file < 0) return errno != ENOENT;
  const bool alive = ::flock(file, LOCK_EX | LOCK_NB) != 0;
  if (!alive) ::unlink(path.c_str());
  ::close(file);
  return alive;
}

}  // namespace StoreKit::detail
