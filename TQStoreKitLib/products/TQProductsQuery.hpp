#pragma once

#include <memory>

#include "TQStoreKitLib/products/TQProductsRequest.hpp"
#include "platform/StoreKit/SKProductsRequest.hpp"

namespace TQStoreKitLib {

/// Asks the platform's store for products, once, and hands its answer to one callback.
///
/// The callback runs in a later turn of the main queue, whatever thread the platform answers on,
/// and the query stays alive until it has returned. Each answer of the platform makes one call. A
/// query that is destroyed before the platform answers never calls back.
/// Thread: main.
class TQProductsQuery final : public TQProductsRequest,
                              public StoreKit::SKProductsRequestDelegate,
                              public std::enable_shared_from_this<TQProductsQuery> {
 public:
  /// A query that is not started yet. An empty callback is not called.
  [[nodiscard]] static std::shared_ptr<TQProductsQuery> make(const TQProductIdentifiers& productIds,
                                                             TQProductsCallback callback);

  TQProductsQuery(detail::LibraryOnly, const TQProductIdentifiers& productIds,
                  TQProductsCallback callback);
  ~TQProductsQuery() override;

  void start() override;
  void cancel() override;

  /// May be called on any thread.
  void productsRequestDidReceiveResponse(const StoreKit::SKProductsResponse& response) override;
  /// May be called on any thread.
  void requestDidFailWithError(const Foundation::NSError& error) override;

 private:
  const TQProductsCallback done_;
  StoreKit::SKProductsRequest productsRequest_;
};

/// Makes queries to the platform's store: the builder that the library uses.
class TQInAppProductQueryRequestBuilder final : public TQInAppProductRequestBuilder {
 public:
  [[nodiscard]] std::shared_ptr<TQProductsRequest> makeProductsRequest(
      const TQProductIdentifiers& productIds, TQProductsCallback callback) override;
};

}  // namespace TQStoreKitLib
