#pragma once

#include <deque>
#include <optional>

#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKPayment.hpp"
#include "platform/embedded/store/Catalogue.hpp"

namespace StoreKit {

/// How the store is told to misbehave.
struct Scenario {
  bool canMakePayments = true;
  /// Each purchase takes one from the front and fails with it.
  std::deque<Foundation::NSError> purchaseFailures{};
  /// Every purchase fails with this while it is set.
  std::optional<Foundation::NSError> everyPurchaseFails{};
  /// Each products request takes one from the front and fails with it.
  std::deque<Foundation::NSError> productsFailures{};
  /// Products requests are answered on a thread of their own, as recent systems do.
  bool answersProductsInBackground = false;

  /// The error that a purchase of `payment` ends with; absent when it succeeds. Consumes what was
  /// set up for one purchase.
  [[nodiscard]] std::optional<Foundation::NSError> decidePurchase(const SKPayment::Values& payment,
                                                                  const Catalogue& catalogue);
};

/// The most pieces that the store sells at once; the platform's own limit.
inline constexpr std::int64_t kLargestQuantity = 10;

}  // namespace StoreKit
