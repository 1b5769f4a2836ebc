#pragma once

#include <exception>
#include <optional>
#include <string>

#include "TQStoreKitLib/detail/LibraryOnly.hpp"
#include "platform/Foundation/NSError.hpp"
#include "platform/StoreKit/SKError.hpp"

namespace TQStoreKitLib {

/// A store failure as an application sees it: one message for the user, and nothing else.
///
/// Two errors with the same message cannot be told apart. It can be thrown and caught as a
/// `std::exception`; the library itself never throws it.
///
/// The message of a cancelled purchase speaks of restoring a subscription. Recognise a cancel by
/// the event `cancel` (TQStoreKitEvent.hpp), which is posted just before the completion runs.
/// Thread: a plain value.
class TQSKError : public std::exception {
 public:
  TQSKError(detail::LibraryOnly, std::string msg) : msg_(std::move(msg)) {}

  /// The message, in English; also its own translation key.
  [[nodiscard]] const std::string& msg() const { return msg_; }

  /// The message in the user's language: looked up at each call in the main bundle's default
  /// strings table, with `msg` as the key. Without a translation it is `msg`. Always present.
  [[nodiscard]] std::optional<std::string> errorDescription() const;

  /// `msg`, as long as this object lives.
  [[nodiscard]] const char* what() const noexcept override { return msg_.c_str(); }

  friend bool operator==(const TQSKError& a, const TQSKError& b) { return a.msg_ == b.msg_; }

 private:
  std::string msg_;
};

/// The message for a store error: a fixed sentence for the codes 0 to 8, of whatever domain; the
/// error's own description for every other code, negative ones included.
///
///     0 unknown                             Unknown error. Please contact support
///     1 clientInvalid                       Not allowed to make the payment
///     2 paymentCancelled                    If you’ve purchased a Premium Subscription, you may
///                                           need to restore your subscription to continually
///                                           enjoy the Premium features
///     3 paymentInvalid                      The purchase identifier was invalid
///     4 paymentNotAllowed                   The device is not allowed to make the payment
///     5 storeProductNotAvailable            The product is not available in the current storefront
///     6 cloudServicePermissionDenied        Access to cloud service information is not allowed
///     7 cloudServiceNetworkConnectionFailed Could not connect to the network
///     8 cloudServiceRevoked                 User has revoked permission to use this cloud service
[[nodiscard]] std::string storeErrorMessage(const StoreKit::SKError& error);

/// The error that applications get for `error`: its message is that of `storeErrorMessage`.
[[nodiscard]] TQSKError makeStoreError(const StoreKit::SKError& error);

}  // namespace TQStoreKitLib
