#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Foundation/DefaultsObject.hpp"

namespace Foundation {

/// The user's preferences of an application: values under text keys, which outlive the process.
///
/// Reading and writing work on memory; what was set is stored shortly afterwards, on a thread of
/// the system's, and for certain when `synchronize` returns. What another process stored is seen
/// after `synchronize` and at the next start, at the latest. Of several writers of one key the last
/// one wins.
///
/// Keys and texts are UTF-8; a value with one that is not is not set, which standard error says.
/// Thread: any, several at the same time.
class UserDefaults {
 public:
  class Implementation;

  /// For the realisation, which alone knows what is behind it.
  explicit UserDefaults(std::shared_ptr<Implementation> implementation)
      : implementation_(std::move(implementation)) {}
  UserDefaults(const UserDefaults&) = delete;
  UserDefaults& operator=(const UserDefaults&) = delete;

  /// The application's own store; made on first use, never destroyed.
  [[nodiscard]] static UserDefaults& standardUserDefaults();

  /// A store with a name, which several applications may share. Null for a name that cannot be one,
  /// such as the empty one or the application's own. Two stores of one name have one content.
  [[nodiscard]] static std::shared_ptr<UserDefaults> withSuiteName(std::string_view name);

  /// The value under `key`; null when there is none. It stays as it is when another is set.
  [[nodiscard]] DefaultsObjectPtr object(std::string_view key) const;

  /// Replaces the value under `key`, of whatever kind it was.
  void set(DefaultsObject object, std::string_view key);

  /// Removes the value under `key`, if there is one.
  void remove(std::string_view key);

  /// All keys that have a value, in ascending order.
  [[nodiscard]] std::vector<std::string> keys() const;

  /// Stores what was set and takes in what others stored. True when all of it is on the disk; when
  /// it is not, standard error says why, and it is tried again with the next change.
  bool synchronize();

 private:
  std::shared_ptr<Implementation> implementation_;
};

}  // namespace Foundation
