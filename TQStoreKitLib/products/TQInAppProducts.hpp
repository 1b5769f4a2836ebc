#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "TQStoreKitLib/products/TQProductsRequest.hpp"

namespace TQStoreKitLib {

/// Fetches products, and lets callers who want the same ones at the same time share one request.
///
/// Nothing is cached: once a request was answered, the next call asks the store again.
/// Thread: main. A callback may ask for products and drop the last reference to this object.
class TQInAppProducts final : public std::enable_shared_from_this<TQInAppProducts> {
 public:
  /// `inAppProductRequestBuilder` must not be null.
  [[nodiscard]] static std::shared_ptr<TQInAppProducts> make(
      std::shared_ptr<TQInAppProductRequestBuilder> inAppProductRequestBuilder);

  TQInAppProducts(detail::LibraryOnly,
                  std::shared_ptr<TQInAppProductRequestBuilder> inAppProductRequestBuilder);
  TQInAppProducts(const TQInAppProducts&) = delete;
  TQInAppProducts& operator=(const TQInAppProducts&) = delete;

  /// Asks the store for the products of these identifiers. `completion` runs on the main queue with
  /// the answer; an empty one makes the request all the same.
  ///
  /// A call for the very same set joins a request in flight. Those who wait are called in the order
  /// in which they asked. A call for the set from inside one of these callbacks joins the request
  /// that is just ending, and its `completion` is never called.
  void retrieveProductsInfo(const TQProductIdentifiers& productIds, TQProductsCallback completion);

  /// How many requests wait for their answer.
  [[nodiscard]] std::size_t inflightRequestCount() const { return inflightRequests_.size(); }

 private:
  struct Inflight {
    TQProductIdentifiers productIds;
    std::shared_ptr<TQProductsRequest> request;
    std::vector<TQProductsCallback> callbacks;
  };
  using InflightPtr = std::shared_ptr<Inflight>;

  [[nodiscard]] InflightPtr find(const TQProductIdentifiers& productIds) const;
  void answer(const TQProductIdentifiers& productIds, const TQProductsCallback& completion,
              const TQProductsResponse& response);

  // Few requests are ever in flight, and sets of different sizes differ at a glance: a list that is
  // scanned beats a table that would hash the set.
  std::vector<InflightPtr> inflightRequests_;
  std::shared_ptr<TQInAppProductRequestBuilder> inAppProductRequestBuilder_;
};

}  // namespace TQStoreKitLib
