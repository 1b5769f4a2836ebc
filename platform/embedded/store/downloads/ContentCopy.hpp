#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>

#include "platform/Foundation/NSError.hpp"
#include "platform/embedded/store/downloads/ContentListing.hpp"
#include "platform/embedded/store/downloads/FileInCopy.hpp"

namespace StoreKit {

/// Hosted content on its way to a folder of its own, under a name that nobody looks for. It gets
/// its proper name when it is whole; when the object goes away before that, so does the folder.
///
/// After an error there is nothing more to be had from it.
class ContentCopy {
 public:
  using Failure = FileInCopy::Failure;

  /// Of what is listed in the folder `from`, to a new folder in `into`, which is made when it is
  /// missing.
  ContentCopy(std::filesystem::path from, ContentListing listing, std::filesystem::path into);
  ContentCopy(const ContentCopy&) = delete;
  ContentCopy& operator=(const ContentCopy&) = delete;
  ~ContentCopy();

  /// Copies at most `most` bytes, of one file, and the empty files behind it.
  [[nodiscard]] Failure copy(std::int64_t most);

  [[nodiscard]] bool isWhole() const { return begun_ && !file_; }
  [[nodiscard]] std::int64_t length() const { return length_; }
  [[nodiscard]] std::int64_t copied() const { return copied_; }

  struct Arrival {
    std::filesystem::path folder{};  ///< it holds "Contents"
    Failure error{};
  };
  /// Gives the whole content its proper name.
  [[nodiscard]] Arrival arrive();

 private:
  [[nodiscard]] Failure begin();
  [[nodiscard]] Failure makeFolders() const;
  [[nodiscard]] Failure openNext();
  [[nodiscard]] std::filesystem::path contents() const { return folder_ / "Contents"; }

  std::filesystem::path from_;
  ContentListing listing_;
  std::filesystem::path into_;
  std::filesystem::path folder_{};  // under its first name; empty when there is none
  std::int64_t length_;
  std::int64_t copied_ = 0;
  bool begun_ = false;
  std::size_t next_ = 0;
  std::unique_ptr<FileInCopy> file_{};  // the one under way
};

}  // namespace StoreKit
