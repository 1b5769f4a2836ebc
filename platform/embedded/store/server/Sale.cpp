#include "platform/embedded/store/server/Sale.hpp"

#include <algorithm>
#include <utility>

#include "platform/embedded/store/server/Offers.hpp"
#include "platform/embedded/store/server/TimeRate.hpp"

namespace StoreKit {

namespace {

using State = SKPaymentTransactionState;

// One that is free or paid up front is one long period; otherwise each is a period of its own.
SKProductSubscriptionPeriod firstPeriod(const SKProductDiscount& offer) {
  auto period = offer.subscriptionPeriod;
  if (offer.paymentMode != SKProductDiscountPaymentMode::payAsYouGo) {
    period.numberOfUnits *= std::max<std::uint64_t>(offer.numberOfPeriods, 1);
  }
  return period;
}

std::optional<std::string> offerOf(const SKPayment::Values& payment) {
  if (!payment.paymentDiscount) return std::nullopt;
  return payment.paymentDiscount->identifier;
}

void close(LedgerEntry& running, Foundation::Date end) {
  auto& period = periodOf(running);
  period.running = false;
  if (end < period.ends) period.ends = end;
}

}  // namespace

Sale::Sale(const Ledger& ledger, const Catalogue& catalogue, int timeRate, Foundation::Date now)
    : ledger_(ledger), catalogue_(catalogue), timeRate_(timeRate), now_(now) {}

void Sale::load() {
  if (std::exchange(loaded_, true)) return;
  for (auto& entry : ledger_.runningPeriods()) {
    running_[periodOf(entry).group] = changes_.size();
    asLoaded_.push_back(entry);
    changes_.push_back(std::move(entry));
  }
}

LedgerEntry* Sale::running(const std::string& group) {
  load();
  const auto found = running_.find(group);
  return found == running_.end() ? nullptr : &changes_[found->second];
}

std::vector<std::string> Sale::runningGroups() {
  load();
  std::vector<std::string> groups;
  groups.reserve(running_.size());
  for (const auto& [group, index] : running_) groups.push_back(group);
  return groups;
}

void Sale::purchase(LedgerEntry entry) {
  entry.state = State::purchased;
  entry.owner = std::nullopt;
  entry.finished = false;
  entry.error = std::nullopt;
  entry.transactionDate = now_;
  const auto* const product = catalogue_.find(entry.payment.productIdentifier);
  if (product != nullptr && product->type == ProductType::autoRenewableSubscription) {
    buySubscription(std::move(entry), *product);
  } else {
    keep(std::move(entry));
  }
}

void Sale::buySubscription(LedgerEntry entry, const CatalogueEntry& product) {
  const auto group = product.product->subscriptionGroupIdentifier().value_or("");
  auto* const before = running(group);
  const auto offer = offerOf(entry.payment);
  if (before == nullptr || periodOf(*before).retryingSince) {
    beginPeriod(std::move(entry), product, offer, now_);
    return;
  }
  const bool same = before->payment.productIdentifier == entry.payment.productIdentifier;
  if (!same && !waitsForRenewal(*before, product)) {
    beginPeriod(std::move(entry), product, offer, now_);
    return;
  }
  periodOf(*before).renews = true;
  periodOf(*before).renewsAs = entry.payment.productIdentifier;
  periodOf(*before).renewsWithOffer = offer;
  entry.original = original(group);
  keep(std::move(entry));
}

// A higher level of service begins at once, a lower one with the next period; so does one of the
// same level, unless its periods are as long.
bool Sale::waitsForRenewal(const LedgerEntry& running, const CatalogueEntry& product) const {
  const auto* const before = catalogue_.find(running.payment.productIdentifier);
  if (before == nullptr || product.groupNumber < before->groupNumber) return false;
  const auto& length = product.product->subscriptionPeriod();
  return product.groupNumber > before->groupNumber ||
         length != before->product->subscriptionPeriod();
}

Foundation::Date Sale::firstEnd(const LedgerEntry& entry, const SKProduct& product,
                                const Offer& offer, Foundation::Date begin) const {
  auto length = product.subscriptionPeriod().value_or(SKProductSubscriptionPeriod());
  const auto* const promotion = offer ? findOffer(product, *offer) : nullptr;
  if (promotion != nullptr) {
    length = firstPeriod(*promotion);
  } else if (const auto& introduction = product.introductoryPrice();
             introduction && !entry.original) {
    length = firstPeriod(*introduction);
  }
  return periodEnd(begin, length, timeRate_);
}

void Sale::beginPeriod(LedgerEntry entry, const CatalogueEntry& product, const Offer& offer,
                       Foundation::Date begin) {
  const auto group = product.product->subscriptionGroupIdentifier().value_or("");
  if (auto* const before = running(group)) close(*before, begin);
  entry.original = original(group);
  entry.period = {.group = group,
                  .ends = firstEnd(entry, *product.product, offer, begin),
                  .renewsAs = entry.payment.productIdentifier};
  running_[group] = changes_.size();
  keep(std::move(entry));
}

void Sale::renew(const std::string& group, Foundation::Date begin) {
  auto* const before = running(group);
  if (before == nullptr) return;
  const auto* const product = catalogue_.find(periodOf(*before).renewsAs);
  if (product == nullptr) return end(group);  // it is not sold any more
  LedgerEntry next{.state = State::purchased,
                   .payment = {.productIdentifier = periodOf(*before).renewsAs,
                               .applicationUsername = before->payment.applicationUsername},
                   .transactionDate = begin};
  const auto offer = periodOf(*before).renewsWithOffer;
  beginPeriod(std::move(next), *product, offer, begin);
}

void Sale::end(const std::string& group) {
  if (auto* const last = running(group)) periodOf(*last).running = false;
  running_.erase(group);
}

std::optional<std::int64_t> Sale::original(const std::string& group) const {
  if (const auto first = ledger_.firstPeriod(group)) return first->identifier;
  for (const auto& entry : changes_) {
    if (entry.period && entry.period->group == group) return entry.identifier;
  }
  return std::nullopt;
}

LedgerEntries Sale::changes() {
  const auto untouched = [this](const LedgerEntry& entry) {
    return std::any_of(asLoaded_.begin(), asLoaded_.end(), [&](const LedgerEntry& loaded) {
      return loaded.identifier == entry.identifier && loaded.period == entry.period;
    });
  };
  std::erase_if(changes_, untouched);
  running_.clear();
  return std::exchange(changes_, {});
}

}  // namespace StoreKit
