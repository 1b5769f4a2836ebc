#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "platform/Foundation/DefaultsObject.hpp"
#include "platform/embedded/sqlite/SqliteDatabase.hpp"

namespace Foundation {

/// Keys and values; as changes, a null value is a key that is to be removed.
using DefaultsValues = std::map<std::string, DefaultsObjectPtr, std::less<>>;

/// The SQLite file of a store of user defaults.
///
/// Several processes may have one file open. Its transactions are on the disk when they end. It is
/// known by its application id: a file of anybody else, or one that is damaged, is not touched.
/// Thread: one at a time.
class DefaultsFile {
 public:
  struct Opening;
  struct Exchange;

  /// Opens the file `path` and reads it; makes it, and its folder, when it is missing.
  [[nodiscard]] static Opening open(const std::string& path);

  /// Stores `changes` in one transaction; then reads everything anew if others have stored
  /// something since the last time.
  [[nodiscard]] Exchange exchange(const DefaultsValues& changes);

 private:
  explicit DefaultsFile(const std::string& path);

  [[nodiscard]] DefaultsValues readAll();
  void store(const DefaultsValues& changes);
  [[nodiscard]] bool othersHaveStored();

  std::string path_;
  detail::SqliteDatabase database_;
  detail::SqliteStatements statements_;
  std::int64_t lastVersion_ = 0;
};

/// Either a file and its content, or why it can't be used.
struct DefaultsFile::Opening {
  std::unique_ptr<DefaultsFile> file{};
  DefaultsValues content{};
  std::string problem{};
};

/// What became of an exchange.
struct DefaultsFile::Exchange {
  /// Everything, with what others stored; absent when they stored nothing.
  std::optional<DefaultsValues> content{};
  /// False: none of the changes is stored.
  bool isStored = false;
  /// What went wrong; empty when nothing did.
  std::string problem{};
};

}  // namespace Foundation
