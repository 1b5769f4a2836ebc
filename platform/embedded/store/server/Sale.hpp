#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/embedded/store/Catalogue.hpp"
#include "platform/embedded/store/Ledger.hpp"

namespace StoreKit {

/// The period of an entry that is known to have bought one.
[[nodiscard]] inline SubscriptionPeriod& periodOf(LedgerEntry& entry) {
  return entry.period ? *entry.period : entry.period.emplace();
}

/// What entries of the ledger become, worked out before any of it is written: purchases that go
/// through, and what they mean for the subscriptions that are running.
///
/// It is made for one commit, from what the ledger holds at that moment.
/// Thread: main.
class Sale {
 public:
  Sale(const Ledger& ledger, const Catalogue& catalogue, int timeRate, Foundation::Date now);

  [[nodiscard]] Foundation::Date now() const { return now_; }

  /// `entry` is bought, now: it becomes a purchased one. Of a subscription it begins a period,
  /// unless that product is running already (then that subscription goes on as it is and is renewed
  /// again) or takes the place of a higher or longer one only with the next renewal.
  void purchase(LedgerEntry entry);

  /// `entry` becomes what it is already.
  void keep(LedgerEntry entry) { changes_.push_back(std::move(entry)); }

  /// Renews the running period of a group: the next one begins at `begin`.
  void renew(const std::string& group, Foundation::Date begin);

  /// The subscription of a group is over: its running period is the last one.
  void end(const std::string& group);

  /// The running period of a group, to be changed in place; null when there is none. Valid until
  /// the next call.
  [[nodiscard]] LedgerEntry* running(const std::string& group);
  [[nodiscard]] std::vector<std::string> runningGroups();

  /// Every entry that changes, for the ledger's `replace`.
  [[nodiscard]] LedgerEntries changes();

 private:
  void load();
  // A promotional offer, by its identifier.
  using Offer = std::optional<std::string>;
  void beginPeriod(LedgerEntry entry, const CatalogueEntry& product, const Offer& offer,
                   Foundation::Date begin);
  [[nodiscard]] Foundation::Date firstEnd(const LedgerEntry& entry, const SKProduct& product,
                                          const Offer& offer, Foundation::Date begin) const;
  void buySubscription(LedgerEntry entry, const CatalogueEntry& product);
  [[nodiscard]] bool waitsForRenewal(const LedgerEntry& running,
                                     const CatalogueEntry& product) const;
  [[nodiscard]] std::optional<std::int64_t> original(const std::string& group) const;

  const Ledger& ledger_;
  const Catalogue& catalogue_;
  int timeRate_;
  Foundation::Date now_;
  bool loaded_ = false;
  LedgerEntries changes_;
  LedgerEntries asLoaded_;                      // running periods as the ledger has them
  std::map<std::string, std::size_t> running_;  // by group, in `changes_`
};

}  // namespace StoreKit
