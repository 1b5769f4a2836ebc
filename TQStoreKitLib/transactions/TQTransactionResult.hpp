#pragma once

#include <functional>
#include <utility>

#include "TQStoreKitLib/detail/TaggedUnion.hpp"
#include "TQStoreKitLib/transactions/TQPurchase.hpp"
#include "platform/StoreKit/SKError.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace TQStoreKitLib {

/// How one transaction ended, as a controller hands it to the operation that waits for it.
class TQTransactionResult {
 public:
  enum class Case { purchased = 0, restored = 1, failed = 2 };

  struct Failed {
    /// What was to be bought; null when it is not known.
    StoreKit::SKProductPtr product;
    StoreKit::SKError error;
  };

  [[nodiscard]] static TQTransactionResult purchased(TQPurchaseDetails details) {
    return TQTransactionResult(Union(std::in_place_index<0>, std::move(details)));
  }
  [[nodiscard]] static TQTransactionResult restored(TQPurchase purchase) {
    return TQTransactionResult(Union(std::in_place_index<1>, std::move(purchase)));
  }
  [[nodiscard]] static TQTransactionResult failed(StoreKit::SKProductPtr product,
                                                  StoreKit::SKError error) {
    return TQTransactionResult(
        Union(std::in_place_index<2>, Failed{std::move(product), std::move(error)}));
  }

  [[nodiscard]] Case tag() const noexcept { return static_cast<Case>(union_.index()); }

  /// The payload of that case; null in every other.
  [[nodiscard]] const TQPurchaseDetails* asPurchased() const noexcept { return union_.get<0>(); }
  [[nodiscard]] const TQPurchase* asRestored() const noexcept { return union_.get<1>(); }
  [[nodiscard]] const Failed* asFailed() const noexcept { return union_.get<2>(); }

  /// Calls the function that takes this case's payload (`const TQPurchaseDetails&`,
  /// `const TQPurchase&` or `const Failed&`). A forgotten case does not compile.
  template <class... Functions>
  decltype(auto) match(Functions&&... functions) const {
    return union_.match(std::forward<Functions>(functions)...);
  }

 private:
  using Union = detail::TaggedUnion<TQPurchaseDetails, TQPurchase, Failed>;
  explicit TQTransactionResult(Union value) : union_(std::move(value)) {}

  Union union_;
};

}  // namespace TQStoreKitLib
