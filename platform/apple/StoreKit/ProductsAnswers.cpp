#include "platform/apple/StoreKit/ProductsAnswers.hpp"

#include <utility>

#include "platform/Dispatch/MainQueue.hpp"
#include "platform/apple/ExceptionBarrier.hpp"

namespace StoreKit {

void ProductsAnswers::setDelegate(std::weak_ptr<SKProductsRequestDelegate> delegate) {
  const std::lock_guard lock(mutex_);
  delegate_.swap(delegate);
}

void ProductsAnswers::cancel() {
  const std::lock_guard lock(mutex_);
  cancelled_ = true;
}

void ProductsAnswers::deliver(const Call& call) {
  auto delegate = lockedDelegate();
  if (!delegate) return;
  Foundation::callBack("SKProductsRequestDelegate", [&] { call(*delegate); });
  Dispatch::mainQueue().async([delegate = std::move(delegate)] {});
}

std::shared_ptr<SKProductsRequestDelegate> ProductsAnswers::lockedDelegate() {
  const std::lock_guard lock(mutex_);
  return cancelled_ ? nullptr : delegate_.lock();
}

}  // namespace StoreKit
