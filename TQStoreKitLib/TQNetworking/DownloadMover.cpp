#include "TQStoreKitLib/TQNetworking/DownloadMover.hpp"

#include "platform/Foundation/FileManager.hpp"

namespace TQStoreKitLib::detail {

namespace {

using Foundation::FileManager;
using Foundation::URL;
using Outcome = std::optional<Foundation::NSError>;

FileManager& files() { return FileManager::defaultManager(); }

// Puts a copy into the place of the temporary file, which alone is the session's to remove.
Outcome keepInPlace(const URL& temporaryURL) {
  const auto copy = temporaryURL.deletingLastPathComponent().appendingPathComponent(
      temporaryURL.lastPathComponent() + ".kept");
  if (auto error = files().copyItem(temporaryURL, copy)) return error;
  auto error = files().removeItem(temporaryURL);
  if (!error) error = files().moveItem(copy, temporaryURL);
  if (error) (void)files().removeItem(copy);
  return error;
}

}  // namespace

Outcome moveDownload(const URL& temporaryURL, const TQRequest::Destination& destination) {
  const auto& [url, options] = destination;
  if (options.contains(TQDownloadOptions::removePreviousFile())) {
    if (url.path() == temporaryURL.path()) return keepInPlace(temporaryURL);
    if (files().kind(url.path()) == FileManager::Kind::file) {
      if (auto error = files().removeItem(url)) return error;
    }
  }
  if (options.contains(TQDownloadOptions::createIntermediateDirectories())) {
    if (auto error = files().createDirectory(url.deletingLastPathComponent(), true)) return error;
  }
  return files().moveItem(temporaryURL, url);
}

}  // namespace TQStoreKitLib::detail
