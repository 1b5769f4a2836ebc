#include "platform/embedded/store/server/Renewals.hpp"

#include <algorithm>

#include "platform/embedded/store/server/TimeRate.hpp"

namespace StoreKit {

namespace {

using Foundation::Date;

Date after(Date date, double seconds) {
  return Date::sinceEpoch(date.timeIntervalSince1970() + seconds);
}

bool hasCome(Date date, Date now) { return !(now < date); }

}  // namespace

Date Renewals::due(const SubscriptionPeriod& period, double retrySeconds) {
  return period.retryingSince ? after(*period.retryingSince, retrySeconds) : period.ends;
}

std::optional<Date> Renewals::nextDue() {
  std::optional<Date> next;
  for (const auto& group : sale_.runningGroups()) {
    const auto date = due(periodOf(*sale_.running(group)), retrySeconds(settings_.timeRate));
    if (!next || date < *next) next = date;
  }
  return next;
}

void Renewals::runDue(Date now) {
  for (const auto& group : sale_.runningGroups()) runDue(group, now);
}

void Renewals::runDue(const std::string& group, Date now) {
  for (int count = 0; count <= kMostRenewals; ++count) {
    auto* const running = sale_.running(group);
    if (running == nullptr) return;
    auto& period = periodOf(*running);
    const bool isDue = hasCome(due(period, retrySeconds(settings_.timeRate)), now);
    if (!isDue && period.retryingSince && !settings_.billingRetryOnRenewalEnabled) {
      resolve(group, now);
      continue;
    }
    if (!isDue) return;
    if (!period.renews || period.asksForPriceIncrease || period.retryingSince) {
      sale_.end(group);
      return;
    }
    if (settings_.billingRetryOnRenewalEnabled) {
      period.retryingSince = period.ends;
      continue;
    }
    sale_.renew(group, count < kMostRenewals ? period.ends : now);
  }
}

bool Renewals::isInGrace(LedgerEntry& running, Date now) const {
  if (!settings_.billingGracePeriodEnabled) return false;
  const auto* const product = catalogue_.find(running.payment.productIdentifier);
  if (product == nullptr) return false;
  const auto& length = product->product->subscriptionPeriod();
  if (!length) return false;
  const double grace = graceSeconds(*length, settings_.timeRate);
  return now < after(periodOf(running).ends, grace);
}

void Renewals::resolve(const std::string& group, Date now) {
  auto* const running = sale_.running(group);
  if (running == nullptr || !periodOf(*running).retryingSince) return;
  const auto begin = isInGrace(*running, now) ? periodOf(*running).ends : now;
  sale_.renew(group, begin);
}

}  // namespace StoreKit
