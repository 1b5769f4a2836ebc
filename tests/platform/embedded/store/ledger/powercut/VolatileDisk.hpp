#pragma once

#include <string>

#include "tests/platform/embedded/store/ledger/powercut/DiskRecorder.hpp"
#include "tests/platform/embedded/store/ledger/powercut/VolatileFile.hpp"

namespace tests {

/// The files of a ledger that outlive the machine. The memory that programs share does not.
struct LedgerFiles {
  Content database{};
  Content journal{};
  Content log{};

  /// Those of the ledger `path`, or of none.
  [[nodiscard]] static LedgerFiles read(const std::string& path);
  /// Replaces what there is at `path`.
  void write(const std::string& path) const;
};

/// The disk that has these files, and loses what was not synced when the power goes.
class VolatileDisk {
 public:
  /// All of `files` is on the disk.
  explicit VolatileDisk(LedgerFiles files);

  void apply(const DiskOperation& operation);

  /// What a power cut may leave, now.
  [[nodiscard]] LedgerFiles afterPowerCut(Dice& dice) const;

 private:
  [[nodiscard]] VolatileFile& at(WatchedDisk::File file);
  void syncFolder();

  VolatileFile database_;
  VolatileFile journal_;
  VolatileFile log_;
};

}  // namespace tests
