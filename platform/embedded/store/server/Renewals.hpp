#pragma once

#include <optional>

#include "platform/embedded/store/server/Sale.hpp"

namespace StoreKit {

/// What happens to subscriptions as time goes by.
///
/// Thread: main.
class Renewals {
 public:
  Renewals(Sale& sale, const Catalogue& catalogue, const StoreConfiguration::Settings& settings)
      : sale_(sale), catalogue_(catalogue), settings_(settings) {}

  /// Works out everything that is due at `now`: each period that has ended is renewed, as often as
  /// its time has come, or tried again while renewals cannot be paid, or is the last one. After a
  /// long absence a subscription catches up on at most `kMostRenewals`, and goes on from `now`.
  void runDue(Foundation::Date now);

  /// When something becomes due next; absent while no subscription is running.
  [[nodiscard]] std::optional<Foundation::Date> nextDue();

  /// The user's payment works again: the subscription goes on, without a gap in its grace period.
  void resolve(const std::string& group, Foundation::Date now);

 private:
  void runDue(const std::string& group, Foundation::Date now);
  [[nodiscard]] static Foundation::Date due(const SubscriptionPeriod& period, double retrySeconds);
  [[nodiscard]] bool isInGrace(LedgerEntry& running, Foundation::Date now) const;

  Sale& sale_;
  const Catalogue& catalogue_;
  const StoreConfiguration::Settings& settings_;
};

/// As many renewals as three years of weeks have.
inline constexpr int kMostRenewals = 160;

}  // namespace StoreKit
