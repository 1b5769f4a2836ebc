#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "tests/platform/embedded/store/ledger/WatchedDisk.hpp"

namespace tests {

/// One thing that SQLite has asked of the disk.
struct DiskOperation {
  WatchedDisk::Operation operation{};
  WatchedDisk::File file{};
  std::size_t at = 0;  ///< where a write begins; the size to which a file is cut
  std::string bytes{};
  bool syncsFolder = false;
};

using DiskOperations = std::vector<DiskOperation>;

/// Writes down everything that SQLite asks of the disk in the files of a ledger, in order. Only one
/// ledger may be open meanwhile. Nothing waits for the real disk from its beginning on.
///
/// Thread: the one that everything happens on.
class DiskRecorder {
 public:
  DiskRecorder() {
    WatchedDisk::doNotWait();
    WatchedDisk::installForRequests([this](const WatchedDisk::Request& request) { note(request); });
  }
  ~DiskRecorder() { WatchedDisk::install(nullptr); }
  DiskRecorder(const DiskRecorder&) = delete;
  DiskRecorder& operator=(const DiskRecorder&) = delete;

  /// How many operations there were.
  [[nodiscard]] std::size_t count() const { return operations_.size(); }
  [[nodiscard]] const DiskOperations& operations() const { return operations_; }

 private:
  void note(const WatchedDisk::Request& request) {
    if (request.file == WatchedDisk::File::other) return;
    operations_.push_back({.operation = request.operation,
                           .file = request.file,
                           .at = static_cast<std::size_t>(request.at),
                           .bytes = std::string(request.bytes),
                           .syncsFolder = request.syncsFolder});
  }

  DiskOperations operations_;
};

}  // namespace tests
