#pragma once

#include <cstddef>
#include <deque>
#include <optional>

#include "platform/Foundation/NSError.hpp"
#include "platform/embedded/store/SimulatedErrors.hpp"

namespace StoreKit {

/// How the store is told to misbehave in this program, beside what its settings say.
struct Scenario {
  /// A restore that is interrupted.
  struct RestoreFailure {
    Foundation::NSError error;
    std::size_t after = 0;  ///< so many transactions are restored before
  };

  SimulatedErrors purchases{};
  SimulatedErrors productsRequests{};
  SimulatedErrors downloads{};
  /// Each restore takes one from the front.
  std::deque<RestoreFailure> restores{};
  /// Products requests are answered on a thread of their own, as recent systems do.
  bool answersProductsInBackground = false;
};

}  // namespace StoreKit
