#include "platform/Foundation/FileManager.hpp"

#include <filesystem>

#include "platform/embedded/Foundation/FileError.hpp"
#include "platform/embedded/Foundation/FileTransfer.hpp"

namespace Foundation {

namespace fs = std::filesystem;

namespace {

using Outcome = std::optional<NSError>;

std::string inQuotes(const std::string& path) { return "“" + path + "”"; }

// Why the system could not even be asked about that address: it is no file's, or names a path that
// would end early.
std::error_code unusable(const URL& url) {
  if (!url.isFileURL()) return std::make_error_code(std::errc::wrong_protocol_type);
  const auto path = url.path();
  const bool isUsable = !path.empty() && path.find('\0') == std::string::npos;
  return isUsable ? std::error_code() : std::make_error_code(std::errc::invalid_argument);
}

std::string nameOf(const URL& url) { return url.isFileURL() ? url.path() : url.absoluteString(); }

template <class Work>
Outcome transfer(const URL& from, const URL& to, const char* verb, const Work& work) {
  auto error = unusable(from);
  const auto& toBlame = error ? from : to;
  if (!error) error = unusable(to);
  if (!error) error = work(fs::path(from.path()), fs::path(to.path()));
  if (!error) return std::nullopt;
  const auto what = inQuotes(nameOf(from)) + " can’t be " + verb + " to " + inQuotes(nameOf(to));
  return fileError(error, what, nameOf(toBlame));
}

template <class Work>
Outcome change(const URL& url, const char* verb, const Work& work) {
  auto error = unusable(url);
  if (!error) error = work(fs::path(url.path()));
  if (!error) return std::nullopt;
  return fileError(error, inQuotes(nameOf(url)) + " can’t be " + verb, nameOf(url));
}

std::error_code removeAll(const fs::path& path) {
  std::error_code error;
  if (fs::remove_all(path, error) == 0 && !error) {
    error = std::make_error_code(std::errc::no_such_file_or_directory);
  }
  return error;
}

// Something else in the folder's place is what is in the way, however the system puts it.
std::error_code createFolders(const fs::path& path) {
  std::error_code error;
  std::error_code ignored;
  fs::create_directories(path, error);
  const bool isTaken = error && fs::exists(fs::symlink_status(path, ignored));
  return isTaken ? std::make_error_code(std::errc::file_exists) : error;
}

std::error_code createFolder(const fs::path& path) {
  std::error_code error;
  if (!fs::create_directory(path, error) && !error) {
    error = std::make_error_code(std::errc::file_exists);
  }
  return error;
}

}  // namespace

FileManager& FileManager::defaultManager() {
  static auto& manager = *new FileManager;
  return manager;
}

FileManager::Kind FileManager::kind(std::string_view path) const {
  if (path.find('\0') != std::string_view::npos) return Kind::nothing;
  std::error_code error;
  const auto status = fs::status(fs::path(path), error);
  if (error) return Kind::nothing;
  return fs::is_directory(status) ? Kind::folder : Kind::file;
}

Outcome FileManager::removeItem(const URL& url) { return change(url, "removed", removeAll); }

Outcome FileManager::createDirectory(const URL& url, bool withIntermediateDirectories) {
  return change(url, "created", withIntermediateDirectories ? createFolders : createFolder);
}

Outcome FileManager::copyItem(const URL& from, const URL& to) {
  return transfer(from, to, "copied", copyToFreePlace);
}

Outcome FileManager::moveItem(const URL& from, const URL& to) {
  return transfer(from, to, "moved", moveToFreePlace);
}

}  // namespace Foundation
