#include "tests/crash/programs/LedgerComparison.hpp"

#include "tests/crash/Broken.hpp"
#include "tests/crash/Telling.hpp"

namespace crash {

namespace {

using StoreKit::Ledger;
using StoreKit::LedgerEntry;
using State = StoreKit::SKPaymentTransactionState;

bool isSettled(const LedgerEntry& entry) {
  return entry.state != State::purchasing && entry.state != State::deferred;
}

void compareOutcome(ProgramsModel& model, const LedgerEntry& entry, const Ledger& ledger) {
  auto& transactions = model.transactions();
  const auto transaction = seen(entry, ledger);
  const auto& known = transactions.learn(entry.identifier, paymentOf(transaction));
  if (isSettled(entry)) {
    transactions.learnOutcome(entry.identifier,
                              stateText(entry.state) + " " + outcomeOf(transaction), model.now());
  } else if (known.outcome) {
    broken(entry.identifier, "lost its outcome");
  }
}

// A renewal and a restored one have an outcome from the first; a purchase begins, and who carries
// it out has said so.
bool mayBeUnheardOf(const LedgerEntry& entry) {
  return entry.state == State::purchasing || entry.state == State::restored || entry.original;
}

// What must not be there twice.
class Uniqueness {
 public:
  void add(const LedgerEntry& entry) {
    const auto number = entry.identifier;
    const auto& buyer = entry.payment.applicationUsername;
    const bool repeats = entry.original.has_value();
    if (const auto& name = entry.transactionIdentifier; name && !names_.insert(*name).second) {
      broken(number, "shares its identifier");
    }
    if (buyer && !repeats && !buyers_.insert(*buyer).second) broken(number, "is there twice");
    if (!entry.period) return;
    const auto& period = *entry.period;
    if (period.running && !running_.insert(period.group).second) broken(number, "runs as well");
    const auto begin =
        entry.transactionDate ? exact(entry.transactionDate->timeIntervalSince1970()) : "no date";
    if (!begins_.insert(period.group + begin).second) broken(number, "is a renewal made twice");
  }

 private:
  std::set<std::string> names_;
  std::set<std::string> buyers_;
  std::set<std::string> running_;
  std::set<std::string> begins_;
};

}  // namespace

void compareUnfinished(ProgramsModel& model, const Ledger& ledger) {
  std::set<std::int64_t> there;
  for (const auto& entry : ledger.unfinished()) {
    const auto* const known = model.transactions().find(entry.identifier);
    if (known == nullptr && !mayBeUnheardOf(entry)) {
      broken(entry.identifier, "has an outcome, and was never reported as purchasing");
    }
    if (known != nullptr && known->removedAt) {
      broken(entry.identifier, "is unfinished after its removal");
    }
    compareOutcome(model, entry, ledger);
    there.insert(entry.identifier);
  }
  model.transactions().learnUnfinished(there, model.now());
}

void compareAll(ProgramsModel& model, const Ledger& ledger) {
  compareUnfinished(model, ledger);
  Uniqueness uniqueness;
  std::size_t found = 0;
  for (const auto& entry : ledger.all()) {
    const auto& known = model.transactions().at(entry.identifier);
    if (known.removedAt.has_value() != entry.finished) {
      broken(entry.identifier, "is finished, and nobody did that");
    }
    compareOutcome(model, entry, ledger);
    uniqueness.add(entry);
    ++found;
  }
  if (found != model.transactions().size()) throw Broken("entries are missing");
}

void compareSettled(ProgramsModel& model, const Ledger& ledger) {
  compareAll(model, ledger);
  for (const auto& entry : ledger.unfinished()) {
    if (entry.state == State::purchasing) broken(entry.identifier, "is carried on by nobody");
  }
  if (!ledger.untoldRefunds().empty()) throw Broken("a refund waits to be told");
  model.refunds().checkTold(model.now());
}

}  // namespace crash
