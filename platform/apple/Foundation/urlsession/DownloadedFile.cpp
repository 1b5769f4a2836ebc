#include "platform/apple/Foundation/urlsession/DownloadedFile.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

#include "platform/Foundation/FileManager.hpp"
#include "platform/Foundation/URLError.hpp"

namespace Foundation {

namespace {

NSError cannotMove(const NSError& reason) {
  NSError::UserInfo userInfo;
  userInfo.emplace(NSLocalizedDescriptionKey,
                   "The downloaded file could not be kept: " + reason.localizedDescription());
  userInfo.emplace(NSUnderlyingErrorKey, reason);
  return {std::string(NSURLErrorDomain), NSURLErrorCannotMoveFile, std::move(userInfo)};
}

}  // namespace

DownloadedFile::DownloadedFile(const std::string& path) : path_(path + ".download") {
  const auto reason = FileManager::defaultManager().moveItem(URL::fileURLWithPath(path), url());
  if (reason) error_ = cannotMove(*reason);
  struct stat made = {};
  if (error_ || ::lstat(path_.c_str(), &made) != 0) return;
  device_ = made.st_dev;
  number_ = made.st_ino;
}

DownloadedFile::~DownloadedFile() {
  struct stat now = {};
  if (error_ || ::lstat(path_.c_str(), &now) != 0) return;
  if (now.st_dev == device_ && now.st_ino == number_) ::unlink(path_.c_str());
}

}  // namespace Foundation
