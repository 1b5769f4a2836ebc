#pragma once

#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/embedded/Foundation/DefaultsFile.hpp"

namespace Foundation {

/// The content of one store of user defaults, in memory, and the file behind it.
///
/// A file that cannot be used is left alone, which standard error says; the store then keeps its
/// values in memory only.
/// Thread: any, several at the same time.
class DefaultsStore {
 public:
  /// Reads the file, which is made when it is missing. Absent: memory only.
  explicit DefaultsStore(std::optional<std::string> path);

  [[nodiscard]] DefaultsObjectPtr object(std::string_view key) const;
  [[nodiscard]] std::vector<std::string> keys() const;

  /// A null `object` removes the key.
  void set(DefaultsObjectPtr object, std::string_view key);

  /// Stores the changes and takes in what others stored; true when all is on the disk.
  bool synchronize();

 private:
  [[nodiscard]] DefaultsValues takeChanges();
  void putBack(DefaultsValues changes);
  void takeIn(DefaultsValues content);
  void complain(const std::string& problem);

  std::mutex fileMutex_;  // taken before the other one
  std::unique_ptr<DefaultsFile> file_;
  std::string lastProblem_;

  mutable std::shared_mutex mutex_;
  DefaultsValues values_;
  DefaultsValues changes_;
};

}  // namespace Foundation
