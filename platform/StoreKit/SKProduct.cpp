#include "platform/StoreKit/SKProduct.hpp"

#include <functional>

namespace StoreKit {

std::size_t SKProduct::hash() const {
  return native_ ? native_->hash() : std::hash<const SKProduct*>{}(this);
}

bool operator==(const SKProduct& a, const SKProduct& b) {
  if (&a == &b) return true;
  return a.native_ && b.native_ && a.native_->isEqual(*b.native_);
}

}  // namespace StoreKit
