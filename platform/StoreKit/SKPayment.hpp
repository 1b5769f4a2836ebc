#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Foundation/NativeObject.hpp"
#include "platform/StoreKit/SKPaymentDiscount.hpp"
#include "platform/StoreKit/SKProduct.hpp"

namespace StoreKit {

/// A request to the store to sell something: which product, how many, for whom.
///
/// A value that does not change once it is made; `SKMutablePayment` prepares one. The queue and its
/// transactions hold payments by `SKPaymentPtr`.
/// Thread: any.
class SKPayment {
 public:
  struct Values {
    std::string productIdentifier{};
    /// 1 to 10 is what the store sells at once.
    std::int64_t quantity = 1;
    /// Reserved by the platform.
    std::optional<std::vector<std::byte>> requestData{};
    /// Opaque account identifier of the application's own user. Absent and empty are two things.
    std::optional<std::string> applicationUsername{};
    bool simulatesAskToBuyInSandbox = false;
    /// Only on iOS 12.2 and newer.
    std::optional<SKPaymentDiscount> paymentDiscount{};
  };

  /// `native` is the platform's own payment, when it made this one: it goes back to the queue as
  /// it is when the application adds it later. `product` is what the payment was made for, when
  /// the application made it.
  explicit SKPayment(Values values, SKProductPtr product = nullptr,
                     std::shared_ptr<const Foundation::NativeObject> native = nullptr)
      : values_(std::move(values)), product_(std::move(product)), native_(std::move(native)) {}

  const std::string& productIdentifier() const { return values_.productIdentifier; }
  std::int64_t quantity() const { return values_.quantity; }
  const std::optional<std::vector<std::byte>>& requestData() const { return values_.requestData; }
  const std::optional<std::string>& applicationUsername() const {
    return values_.applicationUsername;
  }
  bool simulatesAskToBuyInSandbox() const { return values_.simulatesAskToBuyInSandbox; }
  const std::optional<SKPaymentDiscount>& paymentDiscount() const {
    return values_.paymentDiscount;
  }

  /// Null for a payment that came from the platform.
  const SKProductPtr& product() const { return product_; }
  /// Null for a payment that the application made.
  const std::shared_ptr<const Foundation::NativeObject>& native() const { return native_; }

 protected:
  Values values_;

 private:
  SKProductPtr product_;
  std::shared_ptr<const Foundation::NativeObject> native_;
};

using SKPaymentPtr = std::shared_ptr<const SKPayment>;

/// A payment in the making. The queue copies it when it is added: what changes afterwards has no
/// effect there.
class SKMutablePayment : public SKPayment {
 public:
  /// A payment for one piece of `product`, which must not be null.
  explicit SKMutablePayment(const SKProductPtr& product)
      : SKPayment(Values{.productIdentifier = product->productIdentifier()}, product) {}

  void setQuantity(std::int64_t quantity) { values_.quantity = quantity; }
  void setRequestData(std::optional<std::vector<std::byte>> data) {
    values_.requestData = std::move(data);
  }
  void setApplicationUsername(std::optional<std::string> name) {
    values_.applicationUsername = std::move(name);
  }
  void setSimulatesAskToBuyInSandbox(bool simulates) {
    values_.simulatesAskToBuyInSandbox = simulates;
  }
  void setPaymentDiscount(std::optional<SKPaymentDiscount> discount) {
    values_.paymentDiscount = std::move(discount);
  }
};

}  // namespace StoreKit
