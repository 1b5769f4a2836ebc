#include "tests/crash/programs/KnownTransactions.hpp"

#include "tests/crash/Broken.hpp"

namespace crash {

KnownTransaction& KnownTransactions::learn(std::int64_t number, const std::string& payment) {
  const auto [place, isNew] = all_.try_emplace(number, KnownTransaction{.payment = payment});
  if (isNew) unfinished_.insert(number);
  auto& known = place->second;
  if (known.payment != payment) broken(number, "was " + known.payment + " and is now " + payment);
  return known;
}

void KnownTransactions::learnOutcome(std::int64_t number, const std::string& outcome,
                                     Moment moment) {
  auto& known = at(number);
  if (known.outcome && *known.outcome != outcome) {
    broken(number, "was " + *known.outcome + " and is now " + outcome);
  }
  if (!known.outcome) known.outcomeAt = moment;
  known.outcome = outcome;
}

void KnownTransactions::learnRemoval(std::int64_t number, Moment moment) {
  unfinished_.erase(number);
  auto& known = at(number);
  if (!known.removedAt) known.removedAt = moment;
}

void KnownTransactions::learnUnfinished(const std::set<std::int64_t>& there, Moment moment) {
  for (const auto number : std::set<std::int64_t>(unfinished_)) {
    auto& known = at(number);
    if (!there.contains(number)) {
      if (!known.mayBeFinished) broken(number, "is lost");
      learnRemoval(number, moment);
    }
    known.mayBeFinished = false;
  }
}

KnownTransaction& KnownTransactions::at(std::int64_t number) {
  const auto found = all_.find(number);
  if (found == all_.end()) broken(number, "was never reported");
  return found->second;
}

const KnownTransaction* KnownTransactions::find(std::int64_t number) const {
  const auto found = all_.find(number);
  return found == all_.end() ? nullptr : &found->second;
}

}  // namespace crash
