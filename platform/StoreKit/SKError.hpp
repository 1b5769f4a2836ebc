#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Foundation/NSError.hpp"

namespace StoreKit {

/// The domain of the store's errors.
inline constexpr std::string_view SKErrorDomain = "SKErrorDomain";

/// A store error: the platform's error object, read as one of the store's codes.
///
/// Any error object can be read this way; nothing of it is lost.
/// Thread: any.
class SKError {
 public:
  /// The codes of `SKErrorDomain`. The platform may send numbers that no enumerator has; they
  /// arrive unchanged.
  enum class Code : std::int64_t {
    unknown = 0,
    clientInvalid = 1,
    paymentCancelled = 2,
    paymentInvalid = 3,
    paymentNotAllowed = 4,
    storeProductNotAvailable = 5,
    cloudServicePermissionDenied = 6,
    cloudServiceNetworkConnectionFailed = 7,
    cloudServiceRevoked = 8,
    privacyAcknowledgementRequired = 9,
    unauthorizedRequestData = 10,
    invalidOfferIdentifier = 11,
    invalidSignature = 12,
    missingOfferParams = 13,
    invalidOfferPrice = 14,
    overlayCancelled = 15,
    overlayInvalidConfiguration = 16,
    overlayTimeout = 17,
    ineligibleForOffer = 18,
    unsupportedPlatform = 19,
    overlayPresentedInBackgroundScene = 20,
    paymentMethodBindingConfigurationRequired = 21,
  };

  explicit SKError(const Foundation::NSError& error) : error_(error) {}

  /// A store error with this code and no user info.
  explicit SKError(Code code)
      : error_(std::string(SKErrorDomain), static_cast<std::int64_t>(code)) {}

  /// A store error with this code and description.
  SKError(Code code, std::string description)
      : error_(Foundation::NSError::withDescription(
            std::string(SKErrorDomain), static_cast<std::int64_t>(code), std::move(description))) {}

  [[nodiscard]] Code code() const { return static_cast<Code>(error_.code()); }
  [[nodiscard]] std::string localizedDescription() const { return error_.localizedDescription(); }
  [[nodiscard]] const Foundation::NSError& nsError() const { return error_; }

 private:
  Foundation::NSError error_;
};

}  // namespace StoreKit
