#include "platform/embedded/store/downloads/ContentCopy.hpp"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "platform/embedded/Foundation/FileError.hpp"
#include "platform/embedded/Foundation/SystemError.hpp"

namespace StoreKit {

namespace {

namespace fs = std::filesystem;
using Failure = ContentCopy::Failure;

constexpr std::string_view kFirstName = ".arriving-XXXXXX";
constexpr std::string_view kProperName = "content-";

Foundation::NSError cannotMake(const fs::path& folder, std::error_code reason) {
  return Foundation::fileError(reason, "“" + folder.string() + "” can’t be made", folder.string());
}

}  // namespace

ContentCopy::ContentCopy(fs::path from, ContentListing listing, fs::path into)
    : from_(std::move(from)),
      listing_(std::move(listing)),
      into_(std::move(into)),
      length_(listing_.length()) {}

ContentCopy::~ContentCopy() {
  file_.reset();
  std::error_code ignored;
  if (!folder_.empty()) fs::remove_all(folder_, ignored);
}

Failure ContentCopy::copy(std::int64_t most) {
  if (!begun_) {
    if (auto failure = begin()) return failure;
  }
  if (!file_) return std::nullopt;
  const auto count = std::min(most, file_->left());
  if (auto failure = file_->copy(count)) return failure;
  copied_ += count;
  return file_->left() == 0 ? openNext() : std::nullopt;
}

Failure ContentCopy::begin() {
  std::error_code error;
  fs::create_directories(into_, error);
  auto name = (into_ / kFirstName).string();
  if (!error && ::mkdtemp(name.data()) == nullptr) error = Foundation::lastSystemError();
  if (error) return cannotMake(into_, error);
  folder_ = name;
  if (auto failure = makeFolders()) return failure;
  begun_ = true;
  return openNext();
}

Failure ContentCopy::makeFolders() const {
  std::error_code error;
  fs::create_directory(contents(), error);
  for (const auto& folder : listing_.folders) {
    if (!error) fs::create_directory(contents() / folder, error);
  }
  if (error) return cannotMake(contents(), error);
  return std::nullopt;
}

// Ends the file under way, and stops at the next one that has bytes.
Failure ContentCopy::openNext() {
  for (;;) {
    if (const auto ended = std::exchange(file_, nullptr)) {
      if (auto failure = ended->close()) return failure;
    }
    if (next_ == listing_.files.size()) return std::nullopt;
    const auto& file = listing_.files[next_++];
    file_ = std::make_unique<FileInCopy>(from_ / file.path, contents() / file.path, file.length);
    if (auto failure = file_->open()) return failure;
    if (file_->left() > 0) return std::nullopt;
  }
}

ContentCopy::Arrival ContentCopy::arrive() {
  const auto suffix = folder_.filename().string().substr(kFirstName.size() - 6);
  auto proper = into_ / (std::string(kProperName) + suffix);
  std::error_code error;
  fs::rename(folder_, proper, error);
  if (error) return {.error = cannotMake(proper, error)};
  folder_.clear();
  return {.folder = std::move(proper)};
}

}  // namespace StoreKit
