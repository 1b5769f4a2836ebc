#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace StoreKit {

/// The store's answer to a products request. Neither list has a promised order.
struct SKProductsResponse {
  std::vector<SKProductPtr> products{};
  std::vector<std::string> invalidProductIdentifiers{};
};

/// Receives the answer to a products request.
///
/// Callbacks come on: any thread.
class SKProductsRequestDelegate {
 public:
  virtual ~SKProductsRequestDelegate() = default;

  virtual void productsRequestDidReceiveResponse(const SKProductsResponse& response) = 0;
  virtual void requestDidFailWithError(const Foundation::NSError& error) = 0;
};

/// Asks the store about products.
///
/// Whoever makes a request keeps it alive until the answer: one that is destroyed never answers.
/// It does not own its delegate, and locks it for the length of each call; that lock is let go on
/// the main queue.
/// Thread: main.
class SKProductsRequest {
 public:
  /// Copies the identifiers. An empty set is answered with an empty response.
  explicit SKProductsRequest(std::set<std::string> productIdentifiers);
  ~SKProductsRequest();
  SKProductsRequest(const SKProductsRequest&) = delete;
  SKProductsRequest& operator=(const SKProductsRequest&) = delete;

  /// Replaces the delegate. An expired or empty one means none: answers are then dropped.
  void setDelegate(std::weak_ptr<SKProductsRequestDelegate> delegate);

  /// Sends the request. Does nothing on one that was started before.
  void start();

  /// Stops the request for good: no message to the delegate begins afterwards, also when it is
  /// given another one or is started again. On another thread one may just be under way.
  void cancel();

 private:
  class Implementation;
  std::shared_ptr<Implementation> implementation_;
};

}  // namespace StoreKit
