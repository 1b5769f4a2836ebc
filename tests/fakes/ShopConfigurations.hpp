#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/embedded/store/StoreConfiguration.hpp"

namespace tests {

using StoreKit::ProductType;
using StoreKit::StoreConfiguration;

inline StoreConfiguration::Product product(std::string identifier, ProductType type) {
  StoreConfiguration::Product product;
  product.productID = std::move(identifier);
  product.type = type;
  product.displayPrice = *Foundation::Decimal::fromString("0.99");
  return product;
}

inline StoreConfiguration::Product subscription(std::string identifier) {
  auto subscribed = product(std::move(identifier), ProductType::autoRenewableSubscription);
  subscribed.subscription = StoreConfiguration::Subscription();
  subscribed.subscription->groupID = "readers";
  subscribed.subscription->recurringPeriod = {1, StoreKit::SKProductPeriodUnit::month};
  return subscribed;
}

/// One shop for all: consumables "gems" and "coins", non-consumables "crown" and "cape", the
/// non-renewing "season", the subscription "club".
inline StoreConfiguration shop() {
  StoreConfiguration configuration;
  configuration.products = {product("gems", ProductType::consumable),
                            product("coins", ProductType::consumable),
                            product("crown", ProductType::nonConsumable),
                            product("cape", ProductType::nonConsumable),
                            product("season", ProductType::nonRenewingSubscription),
                            subscription("club")};
  return configuration;
}

}  // namespace tests
