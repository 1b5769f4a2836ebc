#pragma once

#include <functional>
#include <memory>

#include "TQStoreKitLib/products/TQProductsResponse.hpp"

namespace TQStoreKitLib {

/// Receives the answer to a request for products, on the main queue.
using TQProductsCallback = std::function<void(const TQProductsResponse&)>;

/// A request for products that can be started and stopped.
///
/// Thread: main.
class TQProductsRequest {
 public:
  TQProductsRequest() = default;
  TQProductsRequest(const TQProductsRequest&) = delete;
  TQProductsRequest& operator=(const TQProductsRequest&) = delete;
  virtual ~TQProductsRequest() = default;

  virtual void start() = 0;
  virtual void cancel() = 0;
};

/// Makes requests for products.
class TQInAppProductRequestBuilder {
 public:
  virtual ~TQInAppProductRequestBuilder() = default;

  /// A new request that is not started yet; never null. Whoever asks for it keeps it alive until
  /// the answer.
  [[nodiscard]] virtual std::shared_ptr<TQProductsRequest> makeProductsRequest(
      const TQProductIdentifiers& productIds, TQProductsCallback callback) = 0;
};

}  // namespace TQStoreKitLib
