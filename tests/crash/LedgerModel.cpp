#include "tests/crash/LedgerModel.hpp"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "tests/crash/Telling.hpp"

namespace crash {

namespace {

using State = StoreKit::SKPaymentTransactionState;

std::string stateText(State state) { return std::to_string(static_cast<std::int64_t>(state)); }

}  // namespace

void LedgerModel::beginRun(const std::string& name) {
  delivered_ = false;
  name_ = " for " + name + ".";
  lastBegun_ = lastBuyer_ = 0;
  order_.clear();
  for (const auto number : unfinished_) {
    known_[number].toldBegin = known_[number].toldOutcome = false;
  }
}

void LedgerModel::hear(const std::string& line) {
  const auto fields = split(line);
  const auto word = fields.empty() ? "" : fields[0];
  const auto number = fields.size() > 1 ? std::stoll(fields[1]) : 0;
  if (word == "told" && fields.size() == 5) {
    hearTold(number, fields);
  } else if (word == "may") {
    at(number).mayBeFinished = true;
  } else if (word == "removed") {
    auto& known = at(number);
    if (!known.mayBeFinished) broken(number, "was removed, and nobody finished it");
    if (known.removed) broken(number, "was removed twice");
    known.removed = true;
    unfinished_.erase(number);
    ++removals_;
  } else if (word == "delivered") {
    hearDelivered();
  } else if (word != "opened") {
    throw Broken("the application said: " + line);
  }
}

void LedgerModel::hearTold(std::int64_t number, const std::vector<std::string>& fields) {
  if (number < 1) throw Broken("the ledger refused a purchase: " + fields[4]);
  auto& known = learn(number, fields[3]);
  if (known.removed) broken(number, "came back after its removal");
  if (fields[2] == stateText(State::purchasing)) {
    checkBegun(number, known);
    return;
  }
  learnOutcome(number, fields[2] + " " + fields[4]);
  if (std::exchange(known.toldOutcome, true)) broken(number, "had two outcomes in one run");
  if (!delivered_ && !known.toldBegin) order_.push_back(number);
}

// Applications name their buyers in the order in which they add the payments.
void LedgerModel::checkBegun(std::int64_t number, Known& known) {
  if (known.outcome) broken(number, "had an outcome, and is purchasing again");
  if (std::exchange(known.toldBegin, true)) broken(number, "began twice in one run");
  if (number < lastBegun_) broken(number, "began out of its order");
  lastBegun_ = number;
  const auto named = known.payment.find(name_);
  if (named == std::string::npos) return;
  const auto buyer = std::atol(known.payment.c_str() + named + name_.size());
  if (buyer <= lastBuyer_) broken(number, "was added before the one ahead of it");
  lastBuyer_ = buyer;
}

void LedgerModel::hearDelivered() {
  delivered_ = true;
  std::erase_if(unfinished_, [this](std::int64_t number) {
    auto& known = known_[number];
    const bool came = known.outcome ? known.toldOutcome : known.toldBegin;
    if (!came && !known.mayBeFinished) broken(number, "did not come back");
    if (!came) known.removed = true;
    return !came;
  });
  if (!std::is_sorted(order_.begin(), order_.end())) throw Broken("the backlog is out of order");
}

LedgerModel::Known& LedgerModel::learn(std::int64_t number, const std::string& payment) {
  const auto [place, isNew] = known_.try_emplace(number, Known{.payment = payment});
  if (isNew) unfinished_.insert(number);
  if (place->second.payment != payment) {
    broken(number, "was " + place->second.payment + " and is now " + payment);
  }
  return place->second;
}

void LedgerModel::learnOutcome(std::int64_t number, const std::string& outcome) {
  auto& known = at(number);
  if (known.outcome && *known.outcome != outcome) {
    broken(number, "was " + *known.outcome + " and is now " + outcome);
  }
  known.outcome = outcome;
}

LedgerModel::Known& LedgerModel::at(std::int64_t number) {
  const auto found = known_.find(number);
  if (found == known_.end()) broken(number, "was never reported");
  return found->second;
}

void LedgerModel::checkUnfinished(const StoreKit::LedgerEntry& entry) {
  const auto number = entry.identifier;
  const bool begun = known_.contains(number);
  if (begun && at(number).removed) broken(number, "is unfinished after its removal");
  if (!begun && entry.state != State::purchasing && entry.state != State::restored) {
    broken(number, "has an outcome, and was never reported as purchasing");
  }
}

void LedgerModel::check(const StoreKit::Ledger& ledger) {
  std::set<std::int64_t> there;
  for (const auto& entry : ledger.unfinished()) {
    checkUnfinished(entry);
    const auto transaction = seen(entry, ledger);
    (void)learn(entry.identifier, paymentOf(transaction));
    there.insert(entry.identifier);
    if (entry.state != State::purchasing) {
      learnOutcome(entry.identifier, stateText(entry.state) + " " + outcomeOf(transaction));
    } else if (at(entry.identifier).outcome) {
      broken(entry.identifier, "lost its outcome");
    }
  }
  std::erase_if(unfinished_, [&](std::int64_t number) {
    const bool gone = !there.contains(number);
    auto& known = at(number);
    if (gone && !known.mayBeFinished) broken(number, "is lost");
    known.removed = gone;
    return gone;
  });
}

void LedgerModel::checkAll(const StoreKit::Ledger& ledger) {
  check(ledger);
  std::set<std::string> buyers;
  std::set<std::string> identifiers;
  std::size_t found = 0;
  for (const auto& entry : ledger.all()) {
    const auto transaction = seen(entry, ledger);
    const auto& known = at(entry.identifier);
    ++found;
    if (known.payment != paymentOf(transaction)) broken(entry.identifier, "has another payment");
    if (known.outcome && *known.outcome != stateText(entry.state) + " " + outcomeOf(transaction)) {
      broken(entry.identifier, "has another outcome");
    }
    if (known.removed != entry.finished && !known.mayBeFinished) {
      broken(entry.identifier, "is finished, and nobody did that");
    }
    const auto& identifier = entry.transactionIdentifier;
    if (identifier && !identifiers.insert(*identifier).second) broken(entry.identifier, "shares");
    const auto& buyer = entry.payment.applicationUsername;
    const bool named = buyer && !buyer->empty() && entry.state != State::restored;
    if (named && !buyers.insert(*buyer).second) broken(entry.identifier, "is there twice");
  }
  if (found != known_.size()) throw Broken("entries are missing");
}

}  // namespace crash
