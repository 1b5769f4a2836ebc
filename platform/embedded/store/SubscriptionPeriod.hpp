#pragma once

#include <optional>
#include <string>

#include "platform/Foundation/Date.hpp"

namespace StoreKit {

/// What the store knows about one period of an auto-renewable subscription that was bought.
struct SubscriptionPeriod {
  std::string group{};  ///< the subscription group's identifier
  Foundation::Date ends{};
  /// The last period of its subscription: the one that is renewed, retried or let run out. False
  /// once another has followed, or the subscription is over.
  bool running = true;
  bool renews = true;      ///< auto-renewal is switched on
  std::string renewsAs{};  ///< the product of the next period
  /// The promotional offer, by its identifier, that the next period has.
  std::optional<std::string> renewsWithOffer{};
  /// Since when the renewal could not be paid.
  std::optional<Foundation::Date> retryingSince{};
  bool asksForPriceIncrease = false;  ///< without the user's consent it ends with the period

  friend bool operator==(const SubscriptionPeriod&, const SubscriptionPeriod&) = default;
};

}  // namespace StoreKit
