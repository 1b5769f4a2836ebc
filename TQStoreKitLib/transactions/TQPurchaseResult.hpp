#pragma once

#include <utility>

#include "TQStoreKitLib/detail/TaggedUnion.hpp"
#include "TQStoreKitLib/transactions/TQPurchase.hpp"
#include "TQStoreKitLib/transactions/TQSKError.hpp"

namespace TQStoreKitLib {

/// How a purchase ended, as its completion learns it.
///
///     result.match([](const TQPurchaseDetails& details) { grant(details.productId); },
///                  [](const TQSKError& error) { show(*error.errorDescription()); });
class TQPurchaseResult {
 public:
  enum class Case { success = 0, error = 1 };

  [[nodiscard]] static TQPurchaseResult success(TQPurchaseDetails details) {
    return TQPurchaseResult(Union(std::in_place_index<0>, std::move(details)));
  }
  [[nodiscard]] static TQPurchaseResult error(TQSKError error) {
    return TQPurchaseResult(Union(std::in_place_index<1>, std::move(error)));
  }

  [[nodiscard]] Case tag() const noexcept { return static_cast<Case>(union_.index()); }

  /// The payload of that case; null in the other.
  [[nodiscard]] const TQPurchaseDetails* asSuccess() const noexcept { return union_.get<0>(); }
  [[nodiscard]] const TQSKError* asError() const noexcept { return union_.get<1>(); }

  /// Calls the function that takes this case's payload. A forgotten case does not compile.
  template <class... Functions>
  decltype(auto) match(Functions&&... functions) const {
    return union_.match(std::forward<Functions>(functions)...);
  }

 private:
  using Union = detail::TaggedUnion<TQPurchaseDetails, TQSKError>;
  explicit TQPurchaseResult(Union value) : union_(std::move(value)) {}

  Union union_;
};

}  // namespace TQStoreKitLib
