#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Foundation {

/// The way from the outermost value to the one that is being coded: "players[2].level".
class CodingPath {
 public:
  /// Steps into a list, before its first element.
  void enterList() { steps_.push_back({.isList = true}); }
  /// Steps into an object, before its first field.
  void enterObject() { steps_.push_back({}); }
  void leave() { steps_.pop_back(); }

  /// The next element of the list that we are in.
  void nextElement() { ++steps_.back().count; }
  /// The next field of the object that we are in. `key` is not copied: it outlives its turn.
  void nextField(std::string_view key) {
    ++steps_.back().count;
    steps_.back().key = key;
  }

  [[nodiscard]] std::size_t depth() const { return steps_.size(); }
  /// Elements or fields so far in the list or object that we are in; 0 outside of all.
  [[nodiscard]] std::size_t count() const { return steps_.empty() ? 0 : steps_.back().count; }

  /// Empty for the outermost value.
  [[nodiscard]] std::string description() const;

 private:
  struct Step {
    bool isList = false;
    std::size_t count = 0;
    std::string_view key{};
  };
  std::vector<Step> steps_;
};

}  // namespace Foundation
