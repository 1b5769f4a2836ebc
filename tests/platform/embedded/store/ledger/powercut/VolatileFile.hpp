#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "tests/platform/embedded/store/ledger/powercut/Dice.hpp"

namespace tests {

/// What a file holds; absent when there is none of that name.
using Content = std::optional<std::string>;

/// A file, and what a power cut would leave of it: all that was synced, and any of the changes
/// since.
///
/// A change that was kept may have come before one that was lost; a write may be there in some of
/// its sectors and not in others, with zeros for what is missing at the end of a file.
class VolatileFile {
 public:
  /// Everything in `synced` is on the disk.
  explicit VolatileFile(Content synced = std::nullopt) : synced_(std::move(synced)) {}

  /// Makes the file when there is none.
  void create();
  void write(std::size_t at, std::string bytes);
  void truncate(std::size_t size);
  void remove();

  /// The file is on the disk, by its name too.
  void sync();
  /// Whether there is a file of that name is on the disk; not what was written into it.
  void syncName();

  [[nodiscard]] Content afterPowerCut(Dice& dice) const;

 private:
  enum class Kind { create, write, truncate, remove };
  struct Change {
    Kind kind{};
    std::size_t at = 0;  // or the size
    std::string bytes{};
  };

  static void apply(Content& content, const Change& change);
  static void applyTorn(Content& content, const Change& write, Dice& dice);
  [[nodiscard]] bool exists() const;

  Content synced_;
  std::vector<Change> changes_;  // since then
};

}  // namespace tests
