#pragma once

#include <cmath>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/fakes/ManualClock.hpp"
#include "tests/fakes/OpenShop.hpp"

namespace tests {

using StoreKit::SKProductDiscountPaymentMode;
using StoreKit::SKProductPeriodUnit;
using StoreKit::SKProductSubscriptionPeriod;
using StoreKit::StoreTransaction;

constexpr SKProductSubscriptionPeriod kWeek{1, SKProductPeriodUnit::week};
constexpr SKProductSubscriptionPeriod kMonth{1, SKProductPeriodUnit::month};
constexpr SKProductSubscriptionPeriod kYear{1, SKProductPeriodUnit::year};

/// A subscription of `group`, on that level of service (1 is the highest).
inline StoreConfiguration::Product subscriptionOf(const std::string& group, std::string identifier,
                                                  std::int64_t level,
                                                  SKProductSubscriptionPeriod length) {
  auto subscribed = subscription(std::move(identifier));
  subscribed.subscription->groupID = group;
  subscribed.subscription->groupNumber = level;
  subscribed.subscription->recurringPeriod = length;
  return subscribed;
}

/// The group "readers": "gold" on level 1; "monthly", "other" (as long) and "yearly" on level 2;
/// "basic" on level 3. The group "runners": "weekly". And "gems", "crown".
inline StoreConfiguration subscriptions() {
  StoreConfiguration configuration;
  configuration.products = {product("gems", ProductType::consumable),
                            product("crown", ProductType::nonConsumable),
                            subscriptionOf("readers", "gold", 1, kMonth),
                            subscriptionOf("readers", "monthly", 2, kMonth),
                            subscriptionOf("readers", "other", 2, kMonth),
                            subscriptionOf("readers", "yearly", 2, kYear),
                            subscriptionOf("readers", "basic", 3, kMonth),
                            subscriptionOf("runners", "weekly", 1, kWeek)};
  return configuration;
}

inline StoreConfiguration::Product& productIn(StoreConfiguration& configuration,
                                              const std::string& identifier) {
  for (auto& each : configuration.products) {
    if (each.productID == identifier) return each;
  }
  throw std::logic_error("nothing is sold as " + identifier);
}

/// A month is this long at the rate that the shop below begins with, a week that long.
constexpr int kFastRate = 13;
constexpr double kFastMonth = 300;
constexpr double kFastWeek = 180;

struct HasClock {
  ManualClock clock{};
};

/// A shop with subscriptions and a clock that stands still, where a month lasts five minutes.
class SubscriptionShop : public HasClock, public OpenShop {
 public:
  explicit SubscriptionShop(StoreConfiguration configuration = subscriptions())
      : OpenShop(fast(std::move(configuration)), clock.sources()) {}

  /// Lets time go by.
  void wait(double seconds) { clock.advance(session, seconds); }

  [[nodiscard]] StoreTransaction transaction(std::int64_t identifier) const {
    for (const auto& each : session.allTransactions()) {
      if (each.identifier == identifier) return each;
    }
    throw std::logic_error("no transaction " + std::to_string(identifier));
  }

  /// Every period that was bought, by its seconds since the start: "monthly 0-300".
  [[nodiscard]] std::vector<std::string> periods() const {
    std::vector<std::string> texts;
    for (const auto& each : session.allTransactions()) {
      if (!each.expirationDate || each.state != StoreKit::SKPaymentTransactionState::purchased) {
        continue;
      }
      texts.push_back(each.productIdentifier + " " + sinceStart(each.purchaseDate) + "-" +
                      sinceStart(each.expirationDate));
    }
    return texts;
  }

  static std::string sinceStart(const std::optional<Foundation::Date>& date) {
    if (!date) return "?";
    return std::to_string(std::llround(date->timeIntervalSince1970() - ManualClock::kStart));
  }

 private:
  static StoreConfiguration fast(StoreConfiguration configuration) {
    configuration.settings.timeRate = kFastRate;
    return configuration;
  }
};

}  // namespace tests
