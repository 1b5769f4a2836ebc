#pragma once

#include <functional>
#include <memory>
#include <mutex>

#include "platform/StoreKit/SKProductsRequest.hpp"

namespace StoreKit {

/// Where the answers to one products request go: to its delegate, as long as there is one and the
/// request has not been cancelled.
///
/// Shared by the request and by whatever the platform calls, so that neither need outlive the other.
/// Thread: any.
class ProductsAnswers {
 public:
  using Call = std::function<void(SKProductsRequestDelegate&)>;

  void setDelegate(std::weak_ptr<SKProductsRequestDelegate> delegate);

  /// For good: no delivery begins any more.
  void cancel();

  /// Calls the delegate on this thread. It is locked for the call, and let go of in a later turn of
  /// the main queue: should that be its last reference, it ends where its owner expects it to.
  void deliver(const Call& call);

 private:
  [[nodiscard]] std::shared_ptr<SKProductsRequestDelegate> lockedDelegate();

  std::mutex mutex_;
  bool cancelled_ = false;
  std::weak_ptr<SKProductsRequestDelegate> delegate_;
};

}  // namespace StoreKit
