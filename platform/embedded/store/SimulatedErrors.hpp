#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <utility>

#include "platform/Foundation/NSError.hpp"

namespace StoreKit {

/// As often as it is asked for.
inline constexpr std::size_t kAlways = SIZE_MAX;

/// Errors that were ordered for the next times that something is done, in the order of the orders.
class SimulatedErrors {
 public:
  /// The next `count` times fail with `error`; 0 takes back all orders.
  void order(const Foundation::NSError& error, std::size_t count) {
    if (count == 0) {
      orders_.clear();
    } else {
      orders_.push_back({error, count});
    }
  }

  /// The error of this time; absent when it succeeds.
  [[nodiscard]] std::optional<Foundation::NSError> take() {
    if (orders_.empty()) return std::nullopt;
    auto& order = orders_.front();
    std::optional<Foundation::NSError> error = order.error;
    if (order.left != kAlways) --order.left;
    if (order.left == 0) orders_.pop_front();
    return error;
  }

 private:
  struct Order {
    Foundation::NSError error;
    std::size_t left;
  };
  std::deque<Order> orders_;
};

}  // namespace StoreKit
