#include "TQStoreKitLib/products/TQInAppProducts.hpp"

#include <algorithm>
#include <utility>

namespace TQStoreKitLib {

std::shared_ptr<TQInAppProducts> TQInAppProducts::make(
    std::shared_ptr<TQInAppProductRequestBuilder> inAppProductRequestBuilder) {
  return std::make_shared<TQInAppProducts>(detail::LibraryOnly{},
                                           std::move(inAppProductRequestBuilder));
}

TQInAppProducts::TQInAppProducts(
    detail::LibraryOnly, std::shared_ptr<TQInAppProductRequestBuilder> inAppProductRequestBuilder)
    : inAppProductRequestBuilder_(std::move(inAppProductRequestBuilder)) {}

void TQInAppProducts::retrieveProductsInfo(const TQProductIdentifiers& productIds,
                                           TQProductsCallback completion) {
  if (const auto inflight = find(productIds)) {
    inflight->callbacks.push_back(std::move(completion));
    return;
  }
  const auto request = inAppProductRequestBuilder_->makeProductsRequest(
      productIds,
      [self = shared_from_this(), productIds, completion](const TQProductsResponse& response) {
        self->answer(productIds, completion, response);
      });
  inflightRequests_.push_back(
      std::make_shared<Inflight>(Inflight{productIds, request, {std::move(completion)}}));
  request->start();
}

TQInAppProducts::InflightPtr TQInAppProducts::find(const TQProductIdentifiers& productIds) const {
  const auto found =
      std::find_if(inflightRequests_.begin(), inflightRequests_.end(),
                   [&](const InflightPtr& entry) { return entry->productIds == productIds; });
  return found == inflightRequests_.end() ? nullptr : *found;
}

void TQInAppProducts::answer(const TQProductIdentifiers& productIds,
                             const TQProductsCallback& completion,
                             const TQProductsResponse& response) {
  const auto self = shared_from_this();
  const auto inflight = find(productIds);
  if (!inflight) {
    if (completion) completion(response);
    return;
  }
  // Who joins from inside a callback is not in this copy, and leaves with the entry unheard.
  const auto callbacks = inflight->callbacks;
  for (const auto& callback : callbacks) {
    if (callback) callback(response);
  }
  std::erase(inflightRequests_, inflight);
}

}  // namespace TQStoreKitLib
