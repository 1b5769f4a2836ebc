#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/Foundation/NSError.hpp"
#include "platform/embedded/store/Ledger.hpp"
#include "platform/embedded/store/server/StoreSessionError.hpp"

namespace StoreKit {

class EmbeddedStore;
class Sale;

/// What happens to transactions away from the application: on another device, at the store, in a
/// parent's hands. Everything is committed to the ledger before the call returns, and reported to
/// the observers, of this and of every other program on the ledger, in a later turn.
///
/// When an operation answers with an error (of `StoreSessionError`, or the ledger's), nothing was
/// changed.
/// Thread: main.
class StoreServer {
 public:
  using Failure = std::optional<Foundation::NSError>;

  explicit StoreServer(EmbeddedStore& store) : store_(store) {}

  Failure approve(std::int64_t identifier);
  Failure decline(std::int64_t identifier);
  Failure resolve(std::int64_t identifier);
  Failure refund(std::int64_t identifier);
  Failure remove(std::int64_t identifier);
  Failure clear();
  Failure buy(const std::string& product);
  Failure begin(const std::string& product);
  Failure setAutoRenew(std::int64_t identifier, bool renews);
  Failure requestPriceIncrease(std::int64_t identifier);
  Failure answerPriceIncrease(std::int64_t identifier, bool consents);
  Failure forceRenewal(const std::string& product);
  Failure expire(const std::string& product);

 private:
  using Change = std::function<Failure(LedgerEntry&, Sale&)>;

  // Lets `change` work on what the ledger holds now, as often as somebody else is faster.
  Failure commit(const std::function<Failure(Sale&)>& change);
  Failure changeTransaction(std::int64_t identifier, const Change& change);
  Failure changeSubscription(const std::string& product, const Change& change);
  Failure changeSubscriptionOf(std::int64_t identifier,
                               const std::function<Failure(SubscriptionPeriod&)>& change);

  EmbeddedStore& store_;
};

}  // namespace StoreKit
