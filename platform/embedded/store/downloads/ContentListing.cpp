#include "platform/embedded/store/downloads/ContentListing.hpp"

#include <algorithm>

#include "platform/Foundation/FileManager.hpp"
#include "platform/Foundation/JSONEncoder.hpp"
#include "platform/embedded/Foundation/FileError.hpp"

namespace StoreKit {

namespace {

namespace fs = std::filesystem;
using Foundation::NSError;
using Failure = std::optional<NSError>;

std::int64_t codeOfReading(std::error_code reason) {
  if (reason == std::errc::no_such_file_or_directory) return Foundation::NSFileReadNoSuchFileError;
  if (reason == std::errc::permission_denied) return Foundation::NSFileReadNoPermissionError;
  return Foundation::NSFileReadUnknownError;
}

NSError unusable(const fs::path& path, bool isLink) {
  return NSError::withDescription(
      std::string(Foundation::NSCocoaErrorDomain), Foundation::NSFileReadUnknownError,
      "“" + path.string() + "” is " + (isLink ? "a symbolic link" : "neither a file nor a folder") +
          ": hosted content is made of files and folders.");
}

Failure addTo(ContentListing& listing, const fs::directory_entry& item, const fs::path& folder) {
  std::error_code error;
  const auto type = item.symlink_status(error).type();
  auto path = item.path().lexically_relative(folder);
  if (!error && type == fs::file_type::regular) {
    const auto length = fs::file_size(item.path(), error);
    if (!error) listing.files.push_back({std::move(path), static_cast<std::int64_t>(length)});
  } else if (!error && type == fs::file_type::directory) {
    listing.folders.push_back(std::move(path));
  } else if (!error) {
    return unusable(item.path(), type == fs::file_type::symlink);
  }
  if (error) return contentReadError(error, item.path().string());
  return std::nullopt;
}

void sort(ContentListing& listing) {
  std::sort(listing.folders.begin(), listing.folders.end());
  std::sort(listing.files.begin(), listing.files.end(),
            [](const auto& a, const auto& b) { return a.path < b.path; });
}

}  // namespace

std::int64_t ContentListing::length() const {
  std::int64_t sum = 0;
  for (const auto& file : files) sum += file.length;
  return sum;
}

NSError contentReadError(std::error_code reason, const std::string& path) {
  const auto error = Foundation::fileError(reason, "“" + path + "” can’t be read", path);
  return {error.domain(), codeOfReading(reason), error.userInfo()};
}

ContentReading listContent(const std::string& folder) {
  ContentListing listing;
  std::error_code error;
  fs::recursive_directory_iterator item(folder, error);
  while (!error && item != fs::recursive_directory_iterator()) {
    if (auto failure = addTo(listing, *item, folder)) return {.error = std::move(failure)};
    item.increment(error);
  }
  if (error) return {.error = contentReadError(error, folder)};
  sort(listing);
  return {.listing = std::move(listing)};
}

}  // namespace StoreKit
