#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>

#include "TQStoreKitLib/detail/LibraryOnly.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace TQStoreKitLib {

/// Product identifiers; each once, in ascending order.
using TQProductIdentifiers = std::set<std::string>;

/// What the store answered to a request for products.
///
/// Thread: a plain value.
class TQProductsResponse {
 public:
  TQProductsResponse(detail::LibraryOnly, StoreKit::SKProductSet valids,
                     TQProductIdentifiers invalidIDs, std::optional<Foundation::NSError> error)
      : valids_(std::move(valids)), invalidIDs_(std::move(invalidIDs)), error_(std::move(error)) {}

  /// The products that the store knows.
  [[nodiscard]] const StoreKit::SKProductSet& valids() const { return valids_; }
  /// The identifiers that the store does not know.
  [[nodiscard]] const TQProductIdentifiers& invalidIDs() const { return invalidIDs_; }
  /// Why the request failed; absent when it did not. With an error both sets are empty.
  [[nodiscard]] const std::optional<Foundation::NSError>& error() const { return error_; }

 private:
  StoreKit::SKProductSet valids_;
  TQProductIdentifiers invalidIDs_;
  std::optional<Foundation::NSError> error_;
};

}  // namespace TQStoreKitLib
