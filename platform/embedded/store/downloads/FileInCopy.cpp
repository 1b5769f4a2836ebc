#include "platform/embedded/store/downloads/FileInCopy.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>
#include <vector>

#include "platform/Foundation/FileManager.hpp"
#include "platform/Foundation/JSONEncoder.hpp"
#include "platform/embedded/Foundation/FileError.hpp"
#include "platform/embedded/Foundation/SystemError.hpp"
#include "platform/embedded/store/downloads/ContentListing.hpp"

namespace StoreKit {

namespace {

using Failure = FileInCopy::Failure;

constexpr std::int64_t kPortion = std::int64_t{64} * 1024;
constexpr mode_t kPermissions = S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH;

Foundation::NSError readError(const std::filesystem::path& path) {
  return contentReadError(Foundation::lastSystemError(), path.string());
}

Foundation::NSError writeError(const std::filesystem::path& path) {
  const auto reason = Foundation::lastSystemError();
  return Foundation::fileError(reason, "“" + path.string() + "” can’t be written", path.string());
}

Foundation::NSError changed(const std::filesystem::path& path) {
  return Foundation::NSError::withDescription(
      std::string(Foundation::NSCocoaErrorDomain), Foundation::NSFileReadUnknownError,
      "“" + path.string() + "” was changed while it was downloaded.");
}

}  // namespace

FileInCopy::FileInCopy(std::filesystem::path from, std::filesystem::path to, std::int64_t length)
    : from_(std::move(from)), to_(std::move(to)), length_(length), left_(length) {}

FileInCopy::~FileInCopy() {
  if (source_ >= 0) ::close(source_);
  if (copy_ >= 0) ::close(copy_);
}

// What took the place of a file meanwhile is not waited for, and a link there is not followed.
Failure FileInCopy::open() {
  source_ = ::open(from_.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
  if (source_ < 0) return readError(from_);
  if (auto failure = checkLength()) return failure;
  copy_ = ::open(to_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kPermissions);
  if (copy_ < 0) return writeError(to_);
  return std::nullopt;
}

Failure FileInCopy::copy(std::int64_t count) {
  std::vector<char> portion(static_cast<std::size_t>(std::min(count, kPortion)));
  while (count > 0) {
    const auto next = std::min(count, kPortion);
    if (auto failure = copyPortion(portion.data(), static_cast<std::size_t>(next))) return failure;
    count -= next;
    left_ -= next;
  }
  return std::nullopt;
}

Failure FileInCopy::copyPortion(char* portion, std::size_t count) {
  while (count > 0) {
    const auto got = ::read(source_, portion, count);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return readError(from_);
    if (got == 0) return changed(from_);
    if (auto failure = writeAll(portion, static_cast<std::size_t>(got))) return failure;
    count -= static_cast<std::size_t>(got);
  }
  return std::nullopt;
}

Failure FileInCopy::writeAll(const char* bytes, std::size_t count) {
  while (count > 0) {
    const auto written = ::write(copy_, bytes, count);
    if (written < 0 && errno != EINTR) return writeError(to_);
    if (written <= 0) continue;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return std::nullopt;
}

Failure FileInCopy::checkLength() const {
  struct stat now{};
  if (::fstat(source_, &now) != 0) return readError(from_);
  if (!S_ISREG(now.st_mode) || now.st_size != length_) return changed(from_);
  return std::nullopt;
}

// Some file systems say only here that there was no room.
Failure FileInCopy::close() {
  if (auto failure = checkLength()) return failure;
  if (::close(std::exchange(copy_, -1)) != 0) return writeError(to_);
  return std::nullopt;
}

}  // namespace StoreKit
