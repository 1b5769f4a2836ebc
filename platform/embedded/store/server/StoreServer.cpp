#include "platform/embedded/store/server/StoreServer.hpp"

#include <set>
#include <utility>

#include "platform/StoreKit/SKError.hpp"
#include "platform/embedded/store/EmbeddedStore.hpp"
#include "platform/embedded/store/server/Renewals.hpp"
#include "platform/embedded/store/server/Sale.hpp"
#include "platform/embedded/store/server/Verdict.hpp"

namespace StoreKit {

namespace {

using State = SKPaymentTransactionState;
using Failure = StoreServer::Failure;

constexpr int kMostAttempts = 100;

std::string name(const LedgerEntry& entry) {
  return "Transaction " + std::to_string(entry.identifier);
}

Failure invalidAction(const LedgerEntry& entry, const std::string& what) {
  return storeSessionError(StoreSessionError::invalidAction, name(entry) + " " + what);
}

Failure notSold(const std::string& product) {
  return storeSessionError(StoreSessionError::invalidProductIdentifier,
                           "Nothing is sold as " + product + ".");
}

// Whether what the user has confirmed before can still be sold.
Failure unsold(const SKPayment::Values& payment, const Catalogue& catalogue) {
  if (objection(payment, catalogue)) return notSold(payment.productIdentifier);
  return std::nullopt;
}

// Without what a query would still find.
LedgerEntry removed(LedgerEntry entry) {
  entry.deleted = entry.finished = true;
  entry.period.reset();
  entry.cancelDate.reset();
  entry.refundRevision.reset();
  return entry;
}

}  // namespace

Failure StoreServer::commit(const std::function<Failure(Sale&)>& change) {
  store_.renewSubscriptions();
  for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
    auto sale = store_.sale();
    if (auto error = change(sale)) return error;
    auto entries = sale.changes();
    auto written =
        store_.ledger().replace(entries, Ledger::Durability::powerCut, store_.numbering());
    if (written.conflict) continue;
    if (written.error) return written.error;
    store_.queue().absorbLater();
    store_.setAlarm();
    return std::nullopt;
  }
  return storeSessionError(StoreSessionError::serviceUnavailable, "The ledger keeps changing.");
}

Failure StoreServer::changeTransaction(std::int64_t identifier, const Change& change) {
  return commit([&](Sale& sale) -> Failure {
    auto entry = store_.ledger().find(identifier);
    if (entry) return change(*entry, sale);
    return storeSessionError(StoreSessionError::noTransactionFound,
                             "There is no transaction " + std::to_string(identifier) + ".");
  });
}

Failure StoreServer::changeSubscription(const std::string& product, const Change& change) {
  return commit([&](Sale& sale) -> Failure {
    const auto* const sold = store_.catalogue().find(product);
    if (sold == nullptr) return notSold(product);
    if (sold->type != ProductType::autoRenewableSubscription) {
      return storeSessionError(StoreSessionError::invalidProductType,
                               product + " is no auto-renewable subscription.");
    }
    const auto group = sold->product->subscriptionGroupIdentifier().value_or("");
    auto* const running = sale.running(group);
    if (running != nullptr && running->payment.productIdentifier == product) {
      return change(*running, sale);
    }
    return storeSessionError(StoreSessionError::noSubscriptionFound, product + " is not running.");
  });
}

Failure StoreServer::approve(std::int64_t identifier) {
  return changeTransaction(identifier, [this](LedgerEntry& entry, Sale& sale) -> Failure {
    if (entry.state != State::deferred) return invalidAction(entry, "waits for no approval.");
    if (auto error = unsold(entry.payment, store_.catalogue())) return error;
    entry.transactionIdentifier = store_.sources().transactionIdentifier(entry.identifier);
    sale.purchase(std::move(entry));
    return std::nullopt;
  });
}

Failure StoreServer::decline(std::int64_t identifier) {
  return changeTransaction(identifier, [](LedgerEntry& entry, Sale& sale) -> Failure {
    if (entry.state != State::deferred) return invalidAction(entry, "waits for no approval.");
    entry.state = State::failed;
    entry.error = SKError(SKError::Code::paymentCancelled).nsError();
    entry.finished = false;
    sale.keep(std::move(entry));
    return std::nullopt;
  });
}

Failure StoreServer::resolve(std::int64_t identifier) {
  return changeTransaction(identifier, [this](LedgerEntry& entry, Sale& sale) -> Failure {
    if (entry.hasPurchaseIssue) {
      if (auto error = unsold(entry.payment, store_.catalogue())) return error;
      sale.purchase({.payment = entry.payment});
      entry.hasPurchaseIssue = false;
      sale.keep(std::move(entry));
      return std::nullopt;
    }
    auto* const running = entry.period ? sale.running(entry.period->group) : nullptr;
    if (running == nullptr || !periodOf(*running).retryingSince) {
      return invalidAction(entry, "has no issue.");
    }
    Renewals(sale, store_.catalogue(), store_.settings())
        .resolve(periodOf(entry).group, sale.now());
    return std::nullopt;
  });
}

Failure StoreServer::refund(std::int64_t identifier) {
  return changeTransaction(identifier, [](LedgerEntry& entry, Sale& sale) -> Failure {
    if (entry.state != State::purchased) return invalidAction(entry, "was not paid.");
    if (entry.cancelDate) return invalidAction(entry, "was refunded before.");
    auto* const running = entry.period ? sale.running(entry.period->group) : nullptr;
    const bool isRunning = running != nullptr && running->identifier == entry.identifier;
    auto& refunded = isRunning ? *running : entry;
    refunded.cancelDate = sale.now();
    if (isRunning) {
      sale.end(periodOf(entry).group);
    } else {
      sale.keep(std::move(entry));
    }
    return std::nullopt;
  });
}

// With its children: the renewals of a first period, the restored copies of a purchase.
Failure StoreServer::remove(std::int64_t identifier) {
  return changeTransaction(identifier, [&](LedgerEntry& entry, Sale& sale) -> Failure {
    sale.keep(removed(entry));
    for (auto& other : store_.ledger().all()) {
      if (other.original == identifier) sale.keep(removed(std::move(other)));
    }
    return std::nullopt;
  });
}

Failure StoreServer::clear() {
  return commit([this](Sale& sale) -> Failure {
    for (auto& entry : store_.ledger().all()) sale.keep(removed(std::move(entry)));
    return std::nullopt;
  });
}

Failure StoreServer::buy(const std::string& product) {
  return commit([&](Sale& sale) -> Failure {
    LedgerEntry entry{.payment = {.productIdentifier = product}};
    if (auto error = unsold(entry.payment, store_.catalogue())) return error;
    sale.purchase(std::move(entry));
    return std::nullopt;
  });
}

Failure StoreServer::begin(const std::string& product) {
  return commit([&](Sale& sale) -> Failure {
    LedgerEntry entry{.payment = {.productIdentifier = product}, .asksApplication = true};
    if (auto error = unsold(entry.payment, store_.catalogue())) return error;
    sale.keep(std::move(entry));
    return std::nullopt;
  });
}

Failure StoreServer::changeSubscriptionOf(
    std::int64_t identifier, const std::function<Failure(SubscriptionPeriod&)>& change) {
  return changeTransaction(identifier, [&](LedgerEntry& entry, Sale& sale) -> Failure {
    auto* const running = entry.period ? sale.running(entry.period->group) : nullptr;
    if (running == nullptr) {
      return storeSessionError(StoreSessionError::noSubscriptionFound,
                               name(entry) + " belongs to no running subscription.");
    }
    return change(periodOf(*running));
  });
}

Failure StoreServer::setAutoRenew(std::int64_t identifier, bool renews) {
  return changeSubscriptionOf(identifier, [&](SubscriptionPeriod& period) -> Failure {
    period.renews = renews;
    return std::nullopt;
  });
}

Failure StoreServer::requestPriceIncrease(std::int64_t identifier) {
  return changeSubscriptionOf(identifier, [](SubscriptionPeriod& period) -> Failure {
    period.asksForPriceIncrease = true;
    return std::nullopt;
  });
}

Failure StoreServer::answerPriceIncrease(std::int64_t identifier, bool consents) {
  return changeSubscriptionOf(identifier, [&](SubscriptionPeriod& period) -> Failure {
    if (!period.asksForPriceIncrease) {
      return storeSessionError(StoreSessionError::invalidAction,
                               "The subscription of transaction " + std::to_string(identifier) +
                                   " asks for no consent.");
    }
    period.asksForPriceIncrease = false;
    if (!consents) period.renews = false;
    return std::nullopt;
  });
}

Failure StoreServer::forceRenewal(const std::string& product) {
  return changeSubscription(product, [](LedgerEntry& running, Sale& sale) -> Failure {
    periodOf(running).renews = true;
    sale.renew(periodOf(running).group, sale.now());
    return std::nullopt;
  });
}

Failure StoreServer::expire(const std::string& product) {
  return changeSubscription(product, [](LedgerEntry& running, Sale& sale) -> Failure {
    periodOf(running).renews = false;
    if (sale.now() < periodOf(running).ends) periodOf(running).ends = sale.now();
    sale.end(periodOf(running).group);
    return std::nullopt;
  });
}

}  // namespace StoreKit
