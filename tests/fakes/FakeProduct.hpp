#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "platform/StoreKit/SKProduct.hpp"

namespace TQStoreKitLib::tests {

/// A native product that equals every other with the same key.
class FakeNativeProduct final : public Foundation::NativeObject {
 public:
  explicit FakeNativeProduct(std::string key) : key_(std::move(key)) {}

  [[nodiscard]] bool isEqual(const NativeObject& other) const override {
    const auto* const fake = dynamic_cast<const FakeNativeProduct*>(&other);
    return fake != nullptr && fake->key_ == key_;
  }
  [[nodiscard]] std::size_t hash() const override { return std::hash<std::string>{}(key_); }

 private:
  std::string key_;
};

/// A product that is equal to itself only.
inline StoreKit::SKProductPtr aProduct(const std::string& identifier) {
  return std::make_shared<const StoreKit::SKProduct>(
      StoreKit::SKProduct::Values{.productIdentifier = identifier});
}

/// A product that the platform counts as equal to all others with the native object `key`.
inline StoreKit::SKProductPtr aNativeProduct(const std::string& identifier,
                                             const std::string& key) {
  return std::make_shared<const StoreKit::SKProduct>(
      StoreKit::SKProduct::Values{.productIdentifier = identifier},
      std::make_shared<const FakeNativeProduct>(key));
}

}  // namespace TQStoreKitLib::tests
