#include "TQStoreKitLib/products/TQProductsQuery.hpp"

#include <utility>

#include "platform/Dispatch/MainQueue.hpp"

namespace TQStoreKitLib {

namespace {

TQProductsResponse makeResponse(const StoreKit::SKProductsResponse& response) {
  const auto& products = response.products;
  const auto& invalid = response.invalidProductIdentifiers;
  return {detail::LibraryOnly{}, StoreKit::SKProductSet(products.begin(), products.end()),
          TQProductIdentifiers(invalid.begin(), invalid.end()), std::nullopt};
}

}  // namespace

std::shared_ptr<TQProductsQuery> TQProductsQuery::make(const TQProductIdentifiers& productIds,
                                                       TQProductsCallback callback) {
  auto query =
      std::make_shared<TQProductsQuery>(detail::LibraryOnly{}, productIds, std::move(callback));
  query->productsRequest_.setDelegate(query);
  return query;
}

TQProductsQuery::TQProductsQuery(detail::LibraryOnly, const TQProductIdentifiers& productIds,
                                 TQProductsCallback callback)
    : done_(std::move(callback)), productsRequest_(productIds) {}

TQProductsQuery::~TQProductsQuery() { productsRequest_.setDelegate({}); }

void TQProductsQuery::start() { productsRequest_.start(); }
void TQProductsQuery::cancel() { productsRequest_.cancel(); }

void TQProductsQuery::productsRequestDidReceiveResponse(
    const StoreKit::SKProductsResponse& response) {
  Dispatch::mainQueue().async([self = shared_from_this(), response] {
    if (self->done_) self->done_(makeResponse(response));
  });
}

void TQProductsQuery::requestDidFailWithError(const Foundation::NSError& error) {
  Dispatch::mainQueue().async([self = shared_from_this(), error] {
    if (self->done_) self->done_({detail::LibraryOnly{}, {}, {}, error});
  });
}

std::shared_ptr<TQProductsRequest> TQInAppProductQueryRequestBuilder::makeProductsRequest(
    const TQProductIdentifiers& productIds, TQProductsCallback callback) {
  return TQProductsQuery::make(productIds, std::move(callback));
}

}  // namespace TQStoreKitLib
