#pragma once

#include <functional>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "platform/Foundation/Date.hpp"

namespace StoreKit {

/// What the store will do when its clock comes to a moment: slow answers, slow downloads.
///
/// Thread: main.
class Schedule {
 public:
  void add(Foundation::Date moment, std::function<void()> step) {
    steps_.emplace(moment, std::move(step));
  }

  /// When the next step is due.
  [[nodiscard]] std::optional<Foundation::Date> next() const {
    if (steps_.empty()) return std::nullopt;
    return steps_.begin()->first;
  }

  /// Runs what is due at `now`, in the order of the moments; not what that adds.
  void run(Foundation::Date now) {
    decltype(steps_) due;
    while (!steps_.empty() && !(now < steps_.begin()->first)) {
      due.insert(due.end(), steps_.extract(steps_.begin()));
    }
    for (const auto& [moment, step] : due) step();
  }

  /// Everything that is still to come, in the order of the moments; nothing is left.
  [[nodiscard]] std::vector<std::function<void()>> takeAll() {
    std::vector<std::function<void()>> all;
    for (auto& [moment, step] : std::exchange(steps_, {})) all.push_back(std::move(step));
    return all;
  }

 private:
  std::multimap<Foundation::Date, std::function<void()>> steps_;
};

}  // namespace StoreKit
