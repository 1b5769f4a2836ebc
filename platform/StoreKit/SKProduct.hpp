#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/Foundation/Decimal.hpp"
#include "platform/Foundation/Locale.hpp"
#include "platform/Foundation/NativeObject.hpp"
#include "platform/StoreKit/SKProductDiscount.hpp"
#include "platform/StoreKit/SKProductSubscriptionPeriod.hpp"

namespace StoreKit {

/// Something that the store sells, as it described it in answer to a products request.
///
/// An immutable object, held by `SKProductPtr`. A realisation of the platform makes it from its
/// own product; anybody may make one for a test.
/// Thread: any.
class SKProduct {
 public:
  /// What is known about a product.
  struct Values {
    std::string productIdentifier{};
    /// In the language that the store chose for the user; may be empty.
    std::string localizedTitle{};
    std::string localizedDescription{};
    /// In the currency of `priceLocale`, major units.
    Foundation::Decimal price{};
    Foundation::Locale priceLocale{};
    /// Length of one period of an auto-renewable subscription; absent for everything else.
    std::optional<SKProductSubscriptionPeriod> subscriptionPeriod{};
    std::optional<SKProductDiscount> introductoryPrice{};
    /// Promotional offers of a subscription; empty before iOS 12.2.
    std::vector<SKProductDiscount> discounts{};
    /// The group that a subscription belongs to; absent for everything else and before iOS 12.0.
    std::optional<std::string> subscriptionGroupIdentifier{};
    /// False before iOS 14.0.
    bool isFamilyShareable = false;
    /// Whether the store hosts content for the product.
    bool isDownloadable = false;
    /// Bytes of each piece of hosted content.
    std::vector<std::int64_t> downloadContentLengths{};
    /// Integers with points between them; empty when nothing is hosted.
    std::string downloadContentVersion{};
  };

  /// `native` is the platform's own product and decides equality; without one the object is equal
  /// to itself only.
  explicit SKProduct(Values values,
                     std::shared_ptr<const Foundation::NativeObject> native = nullptr)
      : values_(std::move(values)), native_(std::move(native)) {}
  SKProduct(const SKProduct&) = delete;
  SKProduct& operator=(const SKProduct&) = delete;

  const std::string& productIdentifier() const { return values_.productIdentifier; }
  const std::string& localizedTitle() const { return values_.localizedTitle; }
  const std::string& localizedDescription() const { return values_.localizedDescription; }
  const Foundation::Decimal& price() const { return values_.price; }
  const Foundation::Locale& priceLocale() const { return values_.priceLocale; }
  const std::optional<SKProductSubscriptionPeriod>& subscriptionPeriod() const {
    return values_.subscriptionPeriod;
  }
  const std::optional<SKProductDiscount>& introductoryPrice() const {
    return values_.introductoryPrice;
  }
  const std::vector<SKProductDiscount>& discounts() const { return values_.discounts; }
  const std::optional<std::string>& subscriptionGroupIdentifier() const {
    return values_.subscriptionGroupIdentifier;
  }
  bool isFamilyShareable() const { return values_.isFamilyShareable; }
  bool isDownloadable() const { return values_.isDownloadable; }
  const std::vector<std::int64_t>& downloadContentLengths() const {
    return values_.downloadContentLengths;
  }
  const std::string& downloadContentVersion() const { return values_.downloadContentVersion; }

  /// The platform's own product; null for one that was made without.
  const std::shared_ptr<const Foundation::NativeObject>& native() const { return native_; }

  /// The platform's own hash: of the native product, else of this object's identity.
  [[nodiscard]] std::size_t hash() const;

  /// The platform's own equality: of the native products, else of identity.
  friend bool operator==(const SKProduct& a, const SKProduct& b);

 private:
  Values values_;
  std::shared_ptr<const Foundation::NativeObject> native_;
};

/// How products are held: shared, read-only.
using SKProductPtr = std::shared_ptr<const SKProduct>;

/// Hashes the product that a pointer points to; null has a hash too.
struct SKProductHash {
  std::size_t operator()(const SKProductPtr& product) const {
    return product ? product->hash() : 0;
  }
};

/// Compares the products that two pointers point to; null equals null only.
struct SKProductEqual {
  bool operator()(const SKProductPtr& a, const SKProductPtr& b) const {
    return a == b || (a && b && *a == *b);
  }
};

/// A set of products by the platform's equality, in no promised order.
using SKProductSet = std::unordered_set<SKProductPtr, SKProductHash, SKProductEqual>;

}  // namespace StoreKit
