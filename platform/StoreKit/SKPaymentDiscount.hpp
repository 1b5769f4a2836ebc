#pragma once

#include <cstdint>
#include <string>

namespace StoreKit {

/// A signed promotional offer that a payment makes use of (iOS 12.2 and newer).
///
/// A record of what the application's server signed; nothing is checked here.
struct SKPaymentDiscount {
  /// The offer's identifier, one of those in the product's `discounts`.
  std::string identifier{};
  /// Which of the developer's keys signed.
  std::string keyIdentifier{};
  /// The signed UUID, as text in lower case.
  std::string nonce{};
  /// The signature, base 64.
  std::string signature{};
  /// When it was signed: milliseconds since 1 January 1970 00:00:00 UTC.
  std::int64_t timestamp = 0;
};

}  // namespace StoreKit
