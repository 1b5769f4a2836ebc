#include "TQStoreKitLib/TQNetworking/DownloadMover.hpp"

#include "platform/Foundation/FileManager.hpp"

namespace TQStoreKitLib::detail {

namespace {

using Foundation::FileManager;
using Foundation::URL;
using Outcome = std::optional<Foundation::NSError>;

FileManager& files() { return FileManager::defaultManager(); }

URL besides(const URL& temporaryURL) {
  return temporaryURL.deletingLastPathComponent().appendingPathComponent(
      temporaryURL.lastPathComponent() + ".kept");
}

// One file has many paths: by "//", "..", links. Its own is gone with it while it is moved aside.
Outcome compare(const URL& temporaryURL, const URL& url, bool& isTheSame) {
  isTheSame = url.path() == temporaryURL.path();
  if (isTheSame) return std::nullopt;
  const auto aside = besides(temporaryURL);
  if (auto error = files().moveItem(temporaryURL, aside)) return error;
  isTheSame = !files().fileExists(url.path());
  return files().moveItem(aside, temporaryURL);
}

// Puts a copy into the place of the temporary file, which alone is the session's to remove.
Outcome keepInPlace(const URL& temporaryURL) {
  const auto copy = besides(temporaryURL);
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
    if (files().kind(url.path()) == FileManager::Kind::file) {
      bool isTheSame = false;
      if (auto error = compare(temporaryURL, url, isTheSame)) return error;
      if (isTheSame) return keepInPlace(temporaryURL);
      if (auto error = files().removeItem(url)) return error;
    }
  }
  if (options.contains(TQDownloadOptions::createIntermediateDirectories())) {
    if (auto error = files().createDirectory(url.deletingLastPathComponent(), true)) return error;
  }
  return files().moveItem(temporaryURL, url);
}

}  // namespace TQStoreKitLib::detail
